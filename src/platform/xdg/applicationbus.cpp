#include "platform/xdg/applicationbus.h"

#include "base/log.h"
#include "platform/services.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusUnixFileDescriptor>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

// The desktop entry, the service file and the program's own interface have the same name.
const auto s_name = "org.example.brenvale.SnapWorkbench"_L1;
const auto s_path = "/org/example/brenvale/SnapWorkbench"_L1;
const auto s_interface = "org.freedesktop.Application"_L1;
constexpr int s_answerLimit = 2000;  // milliseconds

// Of what callers pass on from the desktop, the right to the focus. Those of older desktops call it
// otherwise.
QByteArray tokenOf(const QVariantMap &desktop)
{
    for (const auto &key : {u"activation-token"_s, u"desktop-startup-id"_s}) {
        if (QByteArray token = desktop.value(key).toByteArray(); !token.isEmpty())
            return token;
    }
    return {};
}

// Those of files; others are left out.
QStringList pathsOf(const QStringList &uris)
{
    QStringList paths;
    for (const QString &uri : uris) {
        const QString path = QUrl(uri).toLocalFile();
        if (!path.isEmpty())
            paths.append(path);
        else
            qCInfo(logBus) << uri << "is no file of this machine";
    }
    return paths;
}

// Runs it when the caller has its reply, with the right to the focus that came along.
void later(ApplicationBus &bus, const QVariantMap &desktop, const std::function<void()> &run)
{
    QMetaObject::invokeMethod(
        &bus,
        [token = tokenOf(desktop), run] {
            services().watch->useToken(token);
            run();
        },
        Qt::QueuedConnection);
}

class ApplicationAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(ApplicationBus &bus) : QDBusAbstractAdaptor(&bus), m_bus(bus) {}

public slots:
    void Activate(const QVariantMap &desktop)
    {
        later(m_bus, desktop, [this] { m_bus.handlers().activate(); });
    }

    void Open(const QStringList &uris, const QVariantMap &desktop)
    {
        later(m_bus, desktop, [this, paths = pathsOf(uris)] {
            m_bus.handlers().open(paths, [](const QStringList &) {});
        });
    }

    void ActivateAction(const QString &name, const QVariantList &, const QVariantMap &desktop,
                        const QDBusMessage &message)
    {
        if (const auto run = m_bus.handlers().actions.value(name)) {
            later(m_bus, desktop, run);
            return;
        }
        qCInfo(logBus) << "there is no action" << name;
        message.setDelayedReply(true);
        QDBusConnection::sessionBus().send(message.createErrorReply(
            QDBusError::InvalidArgs, u"There is no action \"%1\""_s.arg(name)));
    }

private:
    ApplicationBus &m_bus;
};

class GrabAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.example.brenvale.SnapWorkbench")
    Q_PROPERTY(QString GrabState READ grabState)

public:
    explicit GrabAdaptor(ApplicationBus &bus) : QDBusAbstractAdaptor(&bus), m_bus(bus) {}

    QString grabState() const { return m_bus.grabState(); }

public slots:
    // The options are read from the message, and what is returned here is not sent.
    QDBusUnixFileDescriptor Grab(const QVariantMap & /*options*/, const QDBusMessage &message,
                                 QVariantMap & /*result*/)
    {
        QMetaObject::invokeMethod(
            &m_bus, [this, call = GrabCall(message)] { m_bus.handlers().grab(call); },
            Qt::QueuedConnection);
        return {};
    }

    // As the desktop's own method, for those who want to know what has come of it.
    void OpenFiles(const QStringList &uris, const QVariantMap &desktop, const QDBusMessage &message)
    {
        message.setDelayedReply(true);
        later(m_bus, desktop, [this, paths = pathsOf(uris), message] {
            m_bus.handlers().open(paths, [message](const QStringList &troubles) {
                QDBusConnection::sessionBus().send(
                    troubles.isEmpty() ? message.createReply()
                                       : message.createErrorReply(s_name + ".Error.Refused"_L1,
                                                                  troubles.join(u'\n')));
            });
        });
    }

private:
    ApplicationBus &m_bus;
};

}  // namespace

ApplicationBus::ApplicationBus(Handlers handlers) : m_handlers(std::move(handlers))
{
    new ApplicationAdaptor(*this);
    new GrabAdaptor(*this);
}

QString ApplicationBus::commandFor(const QString &action)
{
    return u"gdbus call --session --dest %1 --object-path %2 --method %3.ActivateAction %4 '[]' '{}'"_s
        .arg(s_name, s_path, s_interface, action);
}

ApplicationBus::Claim ApplicationBus::claim()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    // The object is registered before the name, because callers that find the name call at once.
    if (!m_isRegistered)
        m_isRegistered = bus.isConnected() && bus.registerObject(s_path, this);
    if (!m_isRegistered) {
        qCInfo(logBus) << "no session bus:" << bus.lastError().message();
        return Claim::NoBus;
    }
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus.interface()->registerService(s_name, QDBusConnectionInterface::QueueService);
    if (!reply.isValid())
        return Claim::NoBus;
    return reply.value() == QDBusConnectionInterface::ServiceRegistered ? Claim::Owned
                                                                        : Claim::OwnedByAnother;
}

bool ApplicationBus::activateOwner(const QStringList &paths)
{
    QDBusMessage call = QDBusMessage::createMethodCall(s_name, s_path, s_interface,
                                                       paths.isEmpty() ? u"Activate"_s : u"Open"_s);
    QStringList uris;
    for (const QString &path : paths)
        uris.append(QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded));
    if (!uris.isEmpty())
        call << uris;
    // What the desktop gave this start is the other's.
    QVariantMap desktop;
    if (const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN"); !token.isEmpty())
        desktop.insert(u"activation-token"_s, token);
    call << desktop;
    // If nobody answers, no third process must be started.
    call.setAutoStartService(false);
    const QDBusMessage answer =
        QDBusConnection::sessionBus().call(call, QDBus::Block, s_answerLimit);
    const bool isAnswered = answer.type() == QDBusMessage::ReplyMessage;
    if (!isAnswered)
        qCInfo(logBus) << "the running program does not answer:" << answer.errorMessage();
    return isAnswered;
}

// The toolkit's bus thread sends the signal, even if this thread is busy afterwards.
void ApplicationBus::setGrabState(const QString &state)
{
    if (state == m_grabState)
        return;
    m_grabState = state;
    QDBusMessage changed = QDBusMessage::createSignal(s_path, u"org.freedesktop.DBus.Properties"_s,
                                                      u"PropertiesChanged"_s);
    changed << QString(s_name) << QVariantMap{{u"GrabState"_s, state}} << QStringList();
    QDBusConnection::sessionBus().send(changed);
}

#include "applicationbus.moc"
