// Notifications with a service of the test's own on a bus of its own: what is sent, what comes of
// the user's answers, and a service that does less or is not there.

#include "fakedesktop.h"
#include "platform/xdg/busnotifications.h"
#include "rows.h"
#include "solid.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

class FakeService : public QDBusVirtualObject
{
public:
    QStringList abilities{u"actions"_s, u"body"_s};
    QList<QVariantList> shown{};
    QList<uint> closed{};

    explicit FakeService(const QDBusConnection &bus) : m_bus(bus)
    {
        m_bus.registerVirtualObject(u"/org/freedesktop/Notifications"_s, this);
        m_bus.registerService(u"org.freedesktop.Notifications"_s);
    }
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        QVariantList answer;
        if (message.member() == u"GetCapabilities") {
            answer = {abilities};
        } else if (message.member() == u"Notify") {
            if (message.signature() != u"susssasa{sv}i")
                return false;
            shown.append(message.arguments());
            answer = {uint(shown.size())};
        } else {
            closed.append(message.arguments().value(0).toUInt());
        }
        return m_bus.send(message.createReply(answer));
    }
    void tell(const QString &signal, const QVariantList &arguments)
    {
        QDBusMessage told = QDBusMessage::createSignal(u"/org/freedesktop/Notifications"_s,
                                                       u"org.freedesktop.Notifications"_s, signal);
        told.setArguments(arguments);
        m_bus.send(told);
    }
    void leave() { m_bus.unregisterService(u"org.freedesktop.Notifications"_s); }

private:
    QDBusConnection m_bus;
};

}  // namespace

class TestBusNotifications : public QObject
{
    Q_OBJECT

private slots:
    void service()
    {
        const FakeDesktop desktop;
        QProcess daemon;
        daemon.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address=1"_s});
        QVERIFY(daemon.waitForReadyRead());
        const QString address = QString::fromLatin1(daemon.readLine().trimmed());
        FakeService service(QDBusConnection::connectToBus(address, u"service"_s));
        BusNotifications notifications(QDBusConnection::connectToBus(address, u"test"_s));
        QStringList ran;
        const auto show = [&](const QPixmap &picture = {}) {
            std::optional<bool> isShown;
            const auto note = [&ran](const QString &what) { return [&ran, what] { ran << what; }; };
            notifications.show(
                {.title = u"Taken"_s,
                 .text = u"a <b> & c"_s,
                 .picture = picture.toImage(),
                 .actions = {{u"Copy"_s, note(u"copy"_s)}, {u"Show"_s, note(u"show"_s)}},
                 .click = note(u"click"_s)},
                [&](bool is) { isShown = is; });
            [&] { QTRY_VERIFY(isShown); }();
            return isShown.value_or(false);
        };

        QPixmap wide = solid({2000, 500}, QColor(255, 10, 20));
        QVERIFY(show(wide));
        const QVariantList sent = service.shown.value(0);
        QCOMPARE(sent.value(3).toString(), u"Taken"_s);
        QCOMPARE(sent.value(4).toString(), u"a <b> & c"_s);
        QCOMPARE(sent.value(5).toStringList(),
                 (QStringList{u"default"_s, {}, u"0"_s, u"Copy"_s, u"1"_s, u"Show"_s}));
        const auto hints = qdbus_cast<QVariantMap>(sent.value(6));
        const auto picture = hints.value(u"image-data"_s).value<QDBusArgument>();
        QCOMPARE(picture.currentSignature(), u"(iiibiiay)"_s);
        QSize size;
        int stride = 0;
        QSize depth;  // bits of a channel, and channels
        bool hasAlpha = true;
        QByteArray bytes;
        picture.beginStructure();
        picture >> size.rwidth() >> size.rheight() >> stride >> hasAlpha >> depth.rwidth() >>
            depth.rheight() >> bytes;
        picture.endStructure();
        QCOMPARE(size, QSize(256, 64));
        QCOMPARE(depth, QSize(8, 3));
        QVERIFY(!hasAlpha && bytes.size() == qsizetype{stride} * size.height());
        QCOMPARE(bytes.left(3), QByteArray::fromHex("ff0a14"));

        // What the user does, each with the notification that it belongs to; a token comes first.
        service.tell(u"ActionInvoked"_s, {7U, u"0"_s});
        service.tell(u"ActivationToken"_s, {1U, u"go"_s});
        service.tell(u"ActionInvoked"_s, {1U, u"1"_s});
        service.tell(u"ActionInvoked"_s, {1U, u"9"_s});
        service.tell(u"ActionInvoked"_s, {1U, u"default"_s});
        service.tell(u"NotificationClosed"_s, {1U, 2U});
        service.tell(u"ActionInvoked"_s, {1U, u"0"_s});
        for (int i = 0; i < BusNotifications::s_mostKept; ++i)
            QVERIFY(show());
        QCOMPARE(ran, (QStringList{u"show"_s, u"click"_s}));
        QCOMPARE(desktop.watch->token, "go");
        QVERIFY(service.closed.isEmpty());
        QVERIFY(show());
        QTRY_COMPARE(service.closed, QList<uint>{2});

        service.abilities = {u"body"_s, u"body-markup"_s};
        QVERIFY(show());
        QCOMPARE(service.shown.last().value(4).toString(), u"a &lt;b&gt; &amp; c"_s);
        QVERIFY(service.shown.last().value(5).toStringList().isEmpty());
        service.leave();
        QVERIFY(!show());
        daemon.kill();
        daemon.waitForFinished();
    }
};

QTEST_MAIN(TestBusNotifications)
#include "test_busnotifications.moc"
