#pragma once

#include "platform/xdg/grabcall.h"

#include <QHash>
#include <QObject>
#include <QStringList>

#include <functional>

/// This program on the session bus: the interface `org.freedesktop.Application`, and one of its own
/// that takes pictures for other programs and reports the state of a grab. Without a bus it is
/// never called.
class ApplicationBus : public QObject
{
    Q_OBJECT

public:
    /// What other programs can request. Each handler is called from the event loop, and where it
    /// answers nothing itself after the caller has got its reply, because a grab lasts as long as
    /// the user takes.
    struct Handlers {
        std::function<void()> activate{};
        /// Paths of local files. The answer has what is wrong with each that can't be shown, and
        /// comes when all have been read.
        std::function<void(const QStringList &,
                           const std::function<void(const QStringList &troubles)> &answer)>
            open{};
        QHash<QString, std::function<void()>> actions{};  ///< by the names that callers use
        std::function<void(const GrabCall &)> grab{};     ///< whose caller waits for the answer
    };

    /// The result of claiming the bus name.
    enum class Claim { Owned, OwnedByAnother, NoBus };

    explicit ApplicationBus(Handlers handlers);

    /// What a shell runs to request one of the actions.
    static QString commandFor(const QString &action);

    /// Claims the program's bus name. If another process owns it, this process gets the name when
    /// the owner ends. May be called again.
    Claim claim();
    /// Asks the owner of the bus name to come to the front, with these files if there are any, and
    /// waits for the reply for two seconds at most. Returns false if there was none.
    static bool activateOwner(const QStringList &paths);

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
