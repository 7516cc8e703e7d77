#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>

#include <functional>

/// This program on the session bus: the interface `org.freedesktop.Application`, and one of its own
/// that reports the state of a grab. Without a bus it is never called.
class ApplicationBus : public QObject
{
    Q_OBJECT

public:
    /// What other programs can request. Each handler is called from the event loop after the caller
    /// has got its reply, because a grab lasts as long as the user takes.
    struct Handlers {
        std::function<void()> activate{};
        std::function<void(const QStringList &)> open{};  ///< paths of local files
        QHash<QString, std::function<void()>> actions{};  ///< by the names that callers use
    };

    /// The result of claiming the bus name.
    enum class Claim { Owned, OwnedByAnother, NoBus };

    explicit ApplicationBus(Handlers handlers);

    /// What a shell runs to request one of the actions.
    static QString commandFor(const QString &action);

    /// Claims the program's bus name. If another process owns it, this process gets the name when
    /// the owner ends. May be called again.
    Claim claim();
    /// Asks the owner of the bus name to come to the front, and waits for the reply for two seconds
    /// at most. Returns false if there was none.
    static bool activateOwner();

    /// Sets the property `GrabState`, which is "Idle" at first. Each change is signalled, in order,
    /// before this function returns or shortly after.
    void setGrabState(const QString &state);
    const QString &grabState() const { return m_grabState; }

    const Handlers &handlers() const { return m_handlers; }

private:
    Handlers m_handlers;
    bool m_isRegistered = false;
    QString m_grabState = QStringLiteral("Idle");
};
