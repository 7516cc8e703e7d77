#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QVariantMap>

#include <functional>
#include <memory>

class PortalRequest;

/// The desktop's portal on the session bus, which asks the user for programs. It knows a program by
/// its connection, and keeps what the user has allowed under the name that the connection has
/// registered first of all; so there is one connection for all calls, which nobody else uses.
///
/// Nothing here waits: a portal that is only being started may take half a minute.
class Portal : public QObject
{
    Q_OBJECT
public:
    /// Null if the session bus has no portal and can't start one. Asks only the bus itself.
    static std::shared_ptr<Portal> find();
    ~Portal() override;

    /// Whether it runs. It is started by the first question.
    bool isRunning() const { return m_isRunning; }
    /// Whether it knows this program by its application id.
    bool isRegistered() const { return m_isRegistered; }
    static QString applicationId();

    /// How a question ended.
    struct Answer {
        enum class How {
            Given,   ///< the portal has answered, with a code
            Absent,  ///< it has no such interface, or nothing that serves it
            Lost,    ///< it ended meanwhile, or failed
        };
        enum Code : uint { Done = 0, Cancelled = 1, Other = 2 };

        How how = How::Lost;
        uint code = Other;
        QVariantMap results{};
    };
    using Hears = std::function<void(const Answer &)>;

    /// Asks what the portal may have to ask the user, with `options` as the last argument. `hears`
    /// is called once, from the event loop, if the request still lives; it may delete it. There is
    /// no limit.
    std::unique_ptr<PortalRequest> ask(const QString &interface, const QString &method,
                                       const QVariantList &arguments, QVariantMap options,
                                       Hears hears);
    /// Calls a method, of the portal or of a service beside it. `done` gets the reply, which may be
    /// an error, from the event loop, unless `context` is gone by then.
    void call(const QDBusMessage &message, QObject *context,
              std::function<void(const QDBusMessage &)> done);
    /// A call of one of the portal's methods, or of those that one of its objects has.
    static QDBusMessage method(const QString &interface, const QString &name,
                               const QString &path = {});
    /// Has a slot called for each signal of one of the portal's interfaces, whichever of its
    /// objects sends it.
    void listen(const QString &interface, const QString &signal, QObject *receiver,
                const char *slot);

    /// Whether an error says that what was asked does not exist.
    static bool isAbsence(const QDBusMessage &error);

signals:
    /// It has been started, by whomever.
    void appeared();
    /// It has ended; all that it knew of this program is forgotten.
    void gone();

private slots:
    void lose();

private:
    friend class PortalRequest;

    explicit Portal(const QDBusConnection &connection, bool isRunning);
    void send(const QDBusMessage &message, std::function<void(const QDBusMessage &)> done);
    void onceRegistered(const std::function<void()> &run);
    void close(const QString &request);

    enum class Registration { Due, Asked, Over };

    QDBusConnection m_connection;
    bool m_isRunning;
    Registration m_registration = Registration::Due;
    bool m_isRegistered = false;
    QList<std::function<void()>> m_waiting;  // for the registration
    int m_requests = 0;                      // so far
    /// Requests, by their paths, that nobody wants any more, but that the portal is only beginning.
    QSet<QString> m_dropped;
};

/// A question to the portal. If it is deleted before the answer, the question is withdrawn, and a
/// dialog that asks the user closes.
class PortalRequest : public QObject
{
    Q_OBJECT
public:
    ~PortalRequest() override;

private slots:
    void respond(uint code, const QVariantMap &results);

private:
    friend class Portal;

    PortalRequest(Portal &portal, QString path, Portal::Hears hears);
    void end(const Portal::Answer &answer);

    QPointer<Portal> m_portal;
    QString m_path;
    Portal::Hears m_hears;  // null once it has been called
    bool m_isAsked = false;
    bool m_isBegun = false;  // the portal knows it
};
