// Pictures by KWin's service for them, with a service of the test's own on a bus of its own: what
// it answers, late, wrongly or never, and what comes of it.

#include "numbered.h"
#include "platform/wayland/kwinroute.h"
#include "rows.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <optional>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_limit = 300;  // ms

// Writes the picture after it has told of it, as KWin does.
class FakeKWin : public QDBusVirtualObject
{
public:
    QString error{};  ///< instead of a picture
    bool isSilent = false;
    QVariantMap told{};
    QList<QByteArray> parts{};
    QVariantMap options{};

    explicit FakeKWin(const QDBusConnection &bus) : m_bus(bus)
    {
        m_bus.registerVirtualObject(u"/org/kde/KWin/ScreenShot2"_s, this);
        m_bus.registerService(u"org.kde.KWin"_s);
    }
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        options = qdbus_cast<QVariantMap>(message.arguments().value(1));
        if (isSilent) {
            message.setDelayedReply(true);
            return true;
        }
        m_bus.send(error.isEmpty() ? message.createReply(told)
                                   : message.createErrorReply(error, u"no"_s));
        const auto pipe = message.arguments().value(2).value<QDBusUnixFileDescriptor>();
        for (const QByteArray &part : std::as_const(parts)) {
            // Who wants none of it has closed the pipe.
            const auto length = static_cast<size_t>(part.size());
            if (!error.isEmpty() || write(pipe.fileDescriptor(), part.constData(), length) < 0)
                break;
            QTest::qWait(1);
        }
        return true;
    }

private:
    QDBusConnection m_bus;
};

}  // namespace

class TestKWinRoute : public QObject
{
    Q_OBJECT

private slots:
    void outcomes()
    {
        using enum PictureRoute::Outcome;
        std::signal(SIGPIPE, SIG_IGN);
        QProcess daemon;
        daemon.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address=1"_s});
        QVERIFY(daemon.waitForReadyRead());
        const QString address = QString::fromLatin1(daemon.readLine().trimmed());
        FakeKWin kwin(QDBusConnection::connectToBus(address, u"kwin"_s));
        const QDBusConnection bus = QDBusConnection::connectToBus(address, u"test"_s);
        QVERIFY(KWinRoute::isThere(bus));
        KWinRoute route(bus, s_limit);

        const QSize size(40, 30);
        const ScreenLayout layout({{.name = u"A"_s, .logical = {QPoint(), size}, .pixels = size}});
        std::optional<PictureRoute::Result> result;
        const auto take = [&] {
            result.reset();
            route.take(layout, [&](const auto &taken) { result = taken; });
        };
        const auto give = [&](const QImage &image) {
            kwin.error.clear();
            kwin.told = {{u"type"_s, u"raw"_s},
                         {u"format"_s, uint(image.format())},
                         {u"width"_s, uint(image.width())},
                         {u"height"_s, uint(image.height())},
                         {u"stride"_s, uint(image.bytesPerLine())}};
            const QByteArray bytes(reinterpret_cast<const char *>(image.constBits()),
                                   image.sizeInBytes());
            kwin.parts = {bytes.left(1001), bytes.mid(1001)};
        };
        const auto check = [&](const QByteArray &row, PictureRoute::Outcome outcome,
                               const QString &word = {}) {
            take();
            QTRY_VERIFY2(result.has_value(), row);
            expect(row, result->outcome, outcome);
            QVERIFY2(result->trouble.contains(word), row + result->trouble.toUtf8());
            // Whatever it was, the next one is a new question.
            kwin.isSilent = false;
            give(numbered(size));
            take();
            QTRY_VERIFY2(result.has_value(), row);
            expect(row, result->outcome, Taken);
            expect(row, result->pictures.value(0) == numbered(size), true);
            QVERIFY(kwin.options.value(u"native-resolution"_s).toBool());
        };
        const auto spoil = [&](const QString &key, uint value) {
            give(numbered(size));
            kwin.told.insert(key, value);
        };
        kwin.error = u"org.kde.KWin.ScreenShot2.Error.NoAuthorized"_s;
        check("refused", Absent, u"desktop entry"_s);
        kwin.error = u"org.freedesktop.DBus.Error.UnknownObject"_s;
        check("without a service", Absent);
        kwin.error = u"org.kde.KWin.ScreenShot2.Error.InvalidScreen"_s;
        check("fails", Failed);
        kwin.isSilent = true;
        check("silent", Failed, u"in time"_s);
        give(numbered(size));
        kwin.parts.removeLast();
        check("a part only", Failed, u"in time"_s);
        for (const auto &[key, value] :
             {std::pair(u"format"_s, 1U), std::pair(u"width"_s, 0U),
              std::pair(u"height"_s, 1U << 31), std::pair(u"stride"_s, 4U)}) {
            spoil(key, value);
            check("no picture: " + key.toUtf8(), Failed);
        }
        // A row and a column that were lost with the logical size.
        give(numbered({39, 29}));
        take();
        QTRY_VERIFY(result.has_value());
        const QImage wide = result->pictures.value(0);
        QCOMPARE(wide.size(), size);
        QCOMPARE(wide.copy(0, 0, 39, 29), numbered({39, 29}));
        QCOMPARE(wide.pixel(39, 29), qRgb(38, 28, 0));
        // What was given up does not answer.
        take();
        route.drop();
        QTest::qWait(20);
        QVERIFY(!result.has_value());
        QDBusConnection::disconnectFromBus(u"test"_s);
        QDBusConnection::disconnectFromBus(u"kwin"_s);
        daemon.kill();
        daemon.waitForFinished();
    }
};

QTEST_GUILESS_MAIN(TestKWinRoute)
#include "test_kwinroute.moc"
