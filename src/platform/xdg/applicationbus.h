#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>

#include <functional>

/// The program on the session bus, as `org.freedesktop.Application` has it, with an interface of
/// its own that tells what it is at. Where there is no bus, nothing ever calls.
class ApplicationBus : public QObject
{
    Q_OBJECT

public:
    /// What others ask for. Each runs from the event loop, once its caller has had the answer: a
    /// grab takes as long as the user does.
    struct Handlers {
        std::function<void()> activate{};
        std::function<void(const QStringList &)> open{};  ///< paths of local files
        QHash<QString, std::function<void()>> actions{};  ///< by the names that callers use
    };

    /// What became of the name.
    enum class Claim { Owned, OwnedByAnother, NoBus };

    explicit ApplicationBus(Handlers handlers);

    /// Takes the program's name. One that another has comes to this program when that one ends. May
    /// be called again.
    Claim claim();
    /// Asks the owner of the name to come to the front; waits for the answer, two seconds at the
    /// most. False when there was none.
    static bool activateOwner();

    /// What others read as the property `GrabState`; each change is told to those who listen,
    /// before this returns or shortly after, and in order. "Idle" at first.
    void setGrabState(const QString &state);
    const QString &grabState() const { return m_grabState; }

    const Handlers &handlers() const { return m_handlers; }

private:
    Handlers m_handlers;
    bool m_isRegistered = false;
    QString m_grabState = QStringLiteral("Idle");
};
