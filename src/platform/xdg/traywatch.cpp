#include "platform/xdg/traywatch.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

using namespace Qt::StringLiterals;

namespace {

const auto s_tray = "org.kde.StatusNotifierWatcher"_L1;
const auto s_path = "/StatusNotifierWatcher"_L1;

}  // namespace

// The name on the bus is taken some time before there is anything that shows icons.
TrayWatch::TrayWatch(QObject *parent) : QObject(parent)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    auto *names =
        new QDBusServiceWatcher(s_tray, bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(names, &QDBusServiceWatcher::serviceRegistered, this, &TrayWatch::ask);
    bus.connect(s_tray, s_path, s_tray, u"StatusNotifierHostRegistered"_s, this,
                SIGNAL(appeared()));
    ask();
}

void TrayWatch::ask()
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        s_tray, s_path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question << QString(s_tray) << u"IsStatusNotifierHostRegistered"_s;
    question.setAutoStartService(false);
    auto *answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        if (QDBusPendingReply<QVariant>(*answer).value().toBool())
            emit appeared();
    });
}
