#include "platform/xdg/grabcall.h"

#include "base/log.h"

#include <QDBusArgument>
#include <QDBusConnection>

#include <array>

using namespace Qt::StringLiterals;

QVariantMap GrabCall::options() const
{
    return qdbus_cast<QVariantMap>(m_message.arguments().value(0));
}

void GrabCall::refuse(Error error, const QString &reason) const
{
    static constexpr std::array names{"GivenUp", "Busy", "Refused", "BadOption"};
    const auto name = QLatin1StringView(names.at(static_cast<size_t>(error)));
    qCInfo(logBus) << "no picture for a caller:" << name << reason;
    QDBusConnection::sessionBus().send(
        m_message.createErrorReply(u"org.example.brenvale.SnapWorkbench.Error."_s + name, reason));
}

void GrabCall::answer(const QDBusUnixFileDescriptor &picture, const QVariantMap &result) const
{
    QDBusConnection::sessionBus().send(
        m_message.createReply({QVariant::fromValue(picture), result}));
}
