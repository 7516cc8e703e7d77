#include "platform/xdg/portal.h"

#include "base/log.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>
#include <QDBusServiceWatcher>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const auto s_connection = "portal"_L1;
const auto s_service = "org.freedesktop.portal.Desktop"_L1;
const auto s_path = "/org/freedesktop/portal/desktop"_L1;
const auto s_request = "org.freedesktop.portal.Request"_L1;

}  // namespace

std::shared_ptr<Portal> Portal::find()
{
    const QDBusConnection connection =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, s_connection);
    const auto made = [&](bool isRunning) {
        return std::shared_ptr<Portal>(new Portal(connection, isRunning));
    };
    if (connection.isConnected()) {
        QDBusConnectionInterface &bus = *connection.interface();
        if (bus.isServiceRegistered(s_service))
            return made(true);
        if (bus.activatableServiceNames().value().contains(s_service))
            return made(false);
    }
    QDBusConnection::disconnectFromBus(s_connection);
    return nullptr;
}

Portal::Portal(const QDBusConnection &connection, bool isRunning)
    : m_connection(connection), m_isRunning(isRunning)
{
    auto *names = new QDBusServiceWatcher(s_service, m_connection,
                                          QDBusServiceWatcher::WatchForRegistration |
                                              QDBusServiceWatcher::WatchForUnregistration,
                                          this);
    connect(names, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        m_isRunning = true;
        // Not where the registration itself has started it.
        if (m_registration == Registration::Over)
            m_registration = Registration::Due;
        emit appeared();
    });
    connect(names, &QDBusServiceWatcher::serviceUnregistered, this, &Portal::lose);
    m_connection.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
                         u"Disconnected"_s, this, SLOT(lose()));
}

Portal::~Portal() { QDBusConnection::disconnectFromBus(s_connection); }

QString Portal::applicationId() { return u"org.example.brenvale.SnapWorkbench"_s; }

QDBusMessage Portal::method(const QString &interface, const QString &name, const QString &path)
{
    return QDBusMessage::createMethodCall(s_service, path.isEmpty() ? QString(s_path) : path,
                                          interface, name);
}

bool Portal::isAbsence(const QDBusMessage &error)
{
    static constexpr std::array absences{QDBusError::UnknownMethod, QDBusError::UnknownInterface,
                                         QDBusError::UnknownObject, QDBusError::ServiceUnknown};
    return std::find(absences.begin(), absences.end(), QDBusError(error).type()) !=
               absences.end() ||
           error.errorName().startsWith(u"org.freedesktop.DBus.Error.Spawn"_s);
}

void Portal::lose()
{
    if (!m_isRunning)
        return;
    m_isRunning = m_isRegistered = false;
    if (m_registration == Registration::Over)
        m_registration = Registration::Due;
    emit gone();
}

void Portal::send(const QDBusMessage &message, std::function<void(const QDBusMessage &)> done)
{
    auto *reply = new QDBusPendingCallWatcher(m_connection.asyncCall(message), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this,
            [reply, member = message.member(), done = std::move(done)] {
                reply->deleteLater();
                if (reply->isError())
                    qCInfo(logBus) << "portal:" << member << reply->error().message();
                done(reply->reply());
            });
}

// Older portals register nobody, and one that finds no desktop entry of that name refuses. Both
// serve all the same.
void Portal::onceRegistered(const std::function<void()> &run)
{
    if (m_registration == Registration::Over) {
        run();
        return;
    }
    m_waiting.append(run);
    if (std::exchange(m_registration, Registration::Asked) == Registration::Asked)
        return;
    QDBusMessage call = method(u"org.freedesktop.host.portal.Registry"_s, u"Register"_s);
    call << applicationId() << QVariantMap();
    send(call, [this](const QDBusMessage &reply) {
        m_registration = Registration::Over;
        m_isRegistered = reply.type() == QDBusMessage::ReplyMessage;
        for (const auto &waits : std::exchange(m_waiting, {}))
            waits();
    });
}

void Portal::call(const QDBusMessage &message, QObject *context,
                  std::function<void(const QDBusMessage &)> done)
{
    onceRegistered([this, message, context = QPointer(context), done = std::move(done)] {
        if (!context)
            return;
        send(message, [context, done](const QDBusMessage &reply) {
            if (context)
                done(reply);
        });
    });
}

void Portal::listen(const QString &interface, const QString &signal, QObject *receiver,
                    const char *slot)
{
    m_connection.connect(s_service, {}, interface, signal, receiver, slot);
}

// The answer is a signal, which may come before the call has returned; so it is waited for at a
// path that the portal is told.
std::unique_ptr<PortalRequest> Portal::ask(const QString &interface, const QString &name,
                                           const QVariantList &arguments, QVariantMap options,
                                           Hears hears)
{
    const QString token = u"snapworkbench%1"_s.arg(++m_requests);
    const QString sender = m_connection.baseService().mid(1).replace(u'.', u'_');
    const QString path = u"%1/request/%2/%3"_s.arg(s_path, sender, token);
    options.insert(u"handle_token"_s, token);
    QDBusMessage message = method(interface, name);
    message.setArguments(arguments + QVariantList{options});

    std::unique_ptr<PortalRequest> request(new PortalRequest(*this, path, std::move(hears)));
    onceRegistered([this, message, path, asked = QPointer(request.get())] {
        if (!asked)
            return;
        asked->m_isAsked = true;
        send(message, [this, path, asked](const QDBusMessage &reply) {
            const bool isError = reply.type() == QDBusMessage::ErrorMessage;
            if (m_dropped.remove(path) && !isError)
                close(path);
            if (!asked)
                return;
            asked->m_isBegun = true;
            if (isError)
                asked->end({.how = isAbsence(reply) ? Answer::How::Absent : Answer::How::Lost});
        });
    });
    return request;
}

void Portal::close(const QString &request)
{
    QDBusMessage call = method(s_request, u"Close"_s, request);
    call.setAutoStartService(false);
    m_connection.send(call);
}

PortalRequest::PortalRequest(Portal &portal, QString path, Portal::Hears hears)
    : m_portal(&portal), m_path(std::move(path)), m_hears(std::move(hears))
{
    connect(m_portal, &Portal::gone, this, [this] { end({.how = Portal::Answer::How::Lost}); });
    m_portal->m_connection.connect(s_service, m_path, s_request, u"Response"_s, this,
                                   SLOT(respond(uint, QVariantMap)));
}

// What the portal does not know yet can't be closed there.
PortalRequest::~PortalRequest()
{
    if (!m_hears || !m_portal || !m_isAsked)
        return;
    if (m_isBegun)
        m_portal->close(m_path);
    else
        m_portal->m_dropped.insert(m_path);
}

void PortalRequest::respond(uint code, const QVariantMap &results)
{
    end({.how = Portal::Answer::How::Given, .code = code, .results = results});
}

void PortalRequest::end(const Portal::Answer &answer)
{
    if (const auto hears = std::exchange(m_hears, nullptr))
        hears(answer);
}
