#include "platform/xdg/accessibilitygate.h"

#include "platform/services.h"

#include <QAccessible>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QScopeGuard>
#include <QVariantMap>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_patience = 1000;  // milliseconds
constexpr auto s_override = "AT_SPI_BUS_ADDRESS";

// Starts no service for the call, because the bridge does not either.
QDBusPendingCall ask(const QString &interface, const QString &method, const QVariantList &arguments)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, interface, method);
    call.setArguments(arguments);
    call.setAutoStartService(false);
    return QDBusConnection::sessionBus().asyncCall(call, s_patience);
}

bool isSilence(const QDBusError &error)
{
    return error.type() == QDBusError::NoReply || error.type() == QDBusError::TimedOut ||
           error.type() == QDBusError::Timeout;
}

bool isOn(const QVariantMap &status)
{
    return status.value(u"IsEnabled"_s).toBool() ||
           status.value(u"ScreenReaderEnabled"_s).toBool() ||
           qEnvironmentVariableIsSet("QT_LINUX_ACCESSIBILITY_ALWAYS_ON");
}

// The first address in a list, if it is a local socket.
std::optional<sockaddr_un> socketOf(const QString &address)
{
    const QByteArray first = address.section(u';', 0, 0).toUtf8();
    if (!first.startsWith("unix:"))
        return {};
    for (const QByteArray &part : first.mid(5).split(',')) {
        const QByteArray value = QByteArray::fromPercentEncoding(part.mid(part.indexOf('=') + 1));
        const bool isAbstract = part.startsWith("abstract=");
        sockaddr_un result{};
        result.sun_family = AF_UNIX;
        if ((!isAbstract && !part.startsWith("path=")) ||
            value.size() + 1 >= qsizetype(sizeof(result.sun_path)))
            continue;
        std::copy(value.begin(), value.end(), result.sun_path + (isAbstract ? 1 : 0));
        return result;
    }
    return {};
}

// Whether the bus replies to the first line of the handshake. True if it is no local socket or
// refuses the connection: then connecting does not hang.
bool isBusAwake(const QString &address, int limit)
{
    const std::optional<sockaddr_un> target = socketOf(address);
    const int client = target ? socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0) : -1;
    if (client < 0)
        return true;
    const auto close = qScopeGuard([client] { ::close(client); });
    // The length of an abstract name does not include a terminator, the length of a path does.
    const auto length =
        static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) +
                               (target->sun_path[0] != 0 ? strlen(target->sun_path) + 1
                                                         : 1 + strlen(target->sun_path + 1)));
    if (connect(client, reinterpret_cast<const sockaddr *>(&*target), length) != 0)
        return errno != EAGAIN;  // the queue of clients is full, so nobody seems to answer
    const QByteArray words =
        QByteArray(1, '\0') + "AUTH EXTERNAL " + QByteArray::number(getuid()).toHex() + "\r\n";
    if (send(client, words.constData(), words.size(), MSG_NOSIGNAL) < 0)
        return true;
    pollfd wait{.fd = client, .events = POLLIN, .revents = 0};
    return poll(&wait, 1, limit) != 0;
}

}  // namespace

AccessibilityGate::AccessibilityGate()
    : m_limit(s_patience),
      m_status(ask(u"org.freedesktop.DBus.Properties"_s, u"GetAll"_s, {u"org.a11y.Status"_s})),
      m_address(ask(u"org.a11y.Bus"_s, u"GetAddress"_s, {}))
{
}

int AccessibilityGate::remaining() const
{
    return std::max(1, static_cast<int>(m_limit.remainingTime()));
}

// Asks what the bridge will ask, in the same order.
bool AccessibilityGate::isAnswered()
{
    QString address = qEnvironmentVariable(s_override);
    if (address.isEmpty()) {
        QDBusPendingReply<QVariantMap> status = m_status;
        status.waitForFinished();
        if (isSilence(status.error()))
            return false;
        address = accessibilityBusOfDesktop();
        if (address.isEmpty() && isOn(status.value())) {
            QDBusPendingReply<QString> reply = m_address;
            reply.waitForFinished();
            if (isSilence(reply.error()))
                return false;
            address = reply.value();
        }
    }
    if (address.isEmpty())
        return true;
    // Connecting to a bus has no timeout, so the bus is tested before.
    if (!isBusAwake(address, remaining()))
        return false;
    const QString name = u"accessibility gate"_s;
    const QDBusMessage call =
        QDBusMessage::createMethodCall(u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/registry"_s,
                                       u"org.a11y.atspi.Registry"_s, u"GetRegisteredEvents"_s);
    const QDBusMessage answer =
        QDBusConnection::connectToBus(address, name).call(call, QDBus::Block, remaining());
    QDBusConnection::disconnectFromBus(name);
    return !isSilence(QDBusError(answer));
}

void AccessibilityGate::decide()
{
    if (isAnswered())
        return;
    // The bridge reads this address once, when it is created. The variable is restored afterwards,
    // because programs that are started from here must not inherit it.
    const QByteArray before = qgetenv(s_override);
    qputenv(s_override, "unix:path=/nonexistent");
    QAccessible::isActive();
    if (before.isNull())
        qunsetenv(s_override);
    else
        qputenv(s_override, before);
}
