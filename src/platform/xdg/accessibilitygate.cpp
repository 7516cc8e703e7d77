#include "platform/xdg/accessibilitygate.h"

#include "platform/x11/x11desktop.h"

#include <QAccessible>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QVariantMap>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_patience = 1000;  // milliseconds
constexpr auto s_override = "AT_SPI_BUS_ADDRESS";

// Nobody is started for the question: the bridge starts nobody either.
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

// What the bridge is about to ask, in its order.
bool AccessibilityGate::isAnswered()
{
    QString address = qEnvironmentVariable(s_override);
    if (address.isEmpty()) {
        QDBusPendingReply<QVariantMap> status = m_status;
        status.waitForFinished();
        if (isSilence(status.error()))
            return false;
        address = accessibilityBusOfX11();
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
    // The bridge takes this address for the only one, once, when it is made; programs that are
    // started from here are not to see it.
    const QByteArray before = qgetenv(s_override);
    qputenv(s_override, "unix:path=/nonexistent");
    QAccessible::isActive();
    if (before.isNull())
        qunsetenv(s_override);
    else
        qputenv(s_override, before);
}
