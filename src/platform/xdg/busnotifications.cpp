#include "platform/xdg/busnotifications.h"

#include "base/log.h"
#include "config/applicationrecord.h"
#include "platform/services.h"
#include "platform/xdg/portal.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_answerLimit = 5000;  // ms
constexpr uint s_replacesNone = 0;
constexpr int s_usualTime = -1;
constexpr int s_roughly = 4;  // times the longest side, to which a quick way leads

const QString s_service = u"org.freedesktop.Notifications"_s;
const QString s_path = u"/org/freedesktop/Notifications"_s;
const QString s_click = u"default"_s;  // the service's word for a click beside the buttons

// A picture as the service takes it: rows from the top, red first.
struct SentPicture {
    QImage image{};
};

QDBusArgument &operator<<(QDBusArgument &argument, const SentPicture &sent)
{
    const QImage &image = sent.image;
    const bool hasAlpha = image.hasAlphaChannel();
    argument.beginStructure();
    argument << image.width() << image.height() << static_cast<int>(image.bytesPerLine())
             << hasAlpha << 8 << (hasAlpha ? 4 : 3)
             << QByteArray(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes());
    argument.endStructure();
    return argument;
}

// Nobody sends one here, but the toolkit registers both ways together.
const QDBusArgument &operator>>(const QDBusArgument &argument, SentPicture & /*sent*/)
{
    return argument;
}

SentPicture small(QImage image)
{
    constexpr int most = BusNotifications::s_longestSide;
    constexpr int rough = most * s_roughly;
    if (std::max(image.width(), image.height()) > rough)
        image = image.scaled(rough, rough, Qt::KeepAspectRatio);
    if (std::max(image.width(), image.height()) > most)
        image = image.scaled(most, most, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return {std::move(image).convertToFormat(image.hasAlphaChannel() ? QImage::Format_RGBA8888
                                                                     : QImage::Format_RGB888)};
}

}  // namespace

Q_DECLARE_METATYPE(SentPicture)

void BusNotifications::show(const Notification &notification,
                            std::function<void(bool isShown)> shown)
{
    if (!m_bus)
        m_bus = QDBusConnection::sessionBus();
    listen();
    // Another service may have taken the place of the one that was asked last.
    ask(u"GetCapabilities"_s, {},
        [this, notification, shown = std::move(shown)](const QDBusMessage &answer) {
            if (answer.type() == QDBusMessage::ReplyMessage)
                send(notification, answer.arguments().value(0).toStringList(), shown);
            else
                shown(false);
        });
}

void BusNotifications::ask(const QString &method, const QVariantList &arguments,
                           const std::function<void(const QDBusMessage &answer)> &answered)
{
    QDBusMessage call = QDBusMessage::createMethodCall(s_service, s_path, s_service, method);
    call.setArguments(arguments);
    auto *watcher = new QDBusPendingCallWatcher(m_bus->asyncCall(call, s_answerLimit), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, method, answered] {
        watcher->deleteLater();
        const QDBusMessage answer = watcher->reply();
        if (answer.type() == QDBusMessage::ErrorMessage)
            qCInfo(logBus) << "notifications:" << method << answer.errorMessage();
        answered(answer);
    });
}

void BusNotifications::send(const Notification &notification, const QStringList &abilities,
                            const std::function<void(bool isShown)> &shown)
{
    qDBusRegisterMetaType<SentPicture>();
    QStringList actions;
    if (abilities.contains(u"actions"_s)) {
        if (notification.click)
            actions << s_click << QString();
        for (qsizetype i = 0; i < notification.actions.size(); ++i)
            actions << QString::number(i) << notification.actions[i].text;
    }
    QVariantMap hints{{u"desktop-entry"_s, Portal::applicationId()}};
    if (!notification.picture.isNull())
        hints.insert(u"image-data"_s, QVariant::fromValue(small(notification.picture)));
    const bool readsMarkup = abilities.contains(u"body-markup"_s);
    const QString text = readsMarkup ? notification.text.toHtmlEscaped() : notification.text;
    ask(u"Notify"_s,
        {QString::fromWCharArray(g_AppName), s_replacesNone, u"snapworkbench"_s, notification.title,
         text, actions, hints, s_usualTime},
        [this, notification, hasActions = !actions.isEmpty(), shown](const QDBusMessage &answer) {
            const bool isShown = answer.type() == QDBusMessage::ReplyMessage;
            if (isShown && hasActions)
                keep(answer.arguments().value(0).toUInt(), notification);
            shown(isShown);
        });
}

void BusNotifications::keep(uint id, const Notification &notification)
{
    Shown kept{id, notification};
    kept.notification.picture = {};
    m_shown.append(std::move(kept));
    if (m_shown.size() > s_mostKept)
        ask(u"CloseNotification"_s, {m_shown.takeFirst().id}, [](const QDBusMessage &) {});
}

void BusNotifications::listen()
{
    if (std::exchange(m_listens, true))
        return;
    const auto hear = [this](const QString &signal, const char *slot) {
        m_bus->connect(s_service, s_path, s_service, signal, this, slot);
    };
    hear(u"ActionInvoked"_s, SLOT(hearAction(uint, QString)));
    hear(u"NotificationClosed"_s, SLOT(hearClosed(uint, uint)));
    hear(u"ActivationToken"_s, SLOT(hearToken(uint, QString)));
}

BusNotifications::Shown *BusNotifications::find(uint id)
{
    const auto found = std::find_if(m_shown.begin(), m_shown.end(),
                                    [id](const Shown &shown) { return shown.id == id; });
    return found == m_shown.end() ? nullptr : &*found;
}

void BusNotifications::hearAction(uint id, const QString &key)
{
    const Shown *shown = find(id);
    if (!shown)
        return;
    bool isNumber = false;
    const int index = key.toInt(&isNumber);
    // What it runs may show another one.
    std::function<void()> run;
    if (key == s_click)
        run = shown->notification.click;
    else if (isNumber && index >= 0 && index < shown->notification.actions.size())
        run = shown->notification.actions[index].run;
    if (run)
        run();
}

void BusNotifications::hearClosed(uint id, uint /*reason*/)
{
    m_shown.removeIf([id](const Shown &shown) { return shown.id == id; });
}

// It comes just before the action whose window is to get the focus.
void BusNotifications::hearToken(uint id, const QString &token)
{
    if (find(id))
        services().watch->useToken(token.toUtf8());
}
