#include "platform/xdg/notification.h"

#include "base/log.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_answerLimit = 2000;  // milliseconds
constexpr uint s_replacesNone = 0;
constexpr int s_usualTime = -1;

}  // namespace

void showNotification(const QString &title, const QString &text)
{
    const QString service = u"org.freedesktop.Notifications"_s;
    QDBusMessage call = QDBusMessage::createMethodCall(service, u"/org/freedesktop/Notifications"_s,
                                                       service, u"Notify"_s);
    // The text is escaped, because notifications may contain markup.
    call << title << s_replacesNone << u"snapworkbench"_s << title << text.toHtmlEscaped()
         << QStringList() << QVariantMap() << s_usualTime;
    const QDBusMessage answer =
        QDBusConnection::sessionBus().call(call, QDBus::Block, s_answerLimit);
    if (answer.type() == QDBusMessage::ErrorMessage)
        qCInfo(logBus) << "nobody shows notifications:" << answer.errorMessage() << text;
}
