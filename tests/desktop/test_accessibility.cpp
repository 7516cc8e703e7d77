// What other programs tell of the areas that scroll in them, asked over a real accessibility bus,
// and what this one tells of itself.

#include "platform/xdg/busaccessibility.h"
#include "scrollprogram.h"
#include "snapworkbench.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDir>
#include <QElapsedTimer>
#include <QScopeGuard>
#include <QTest>
#include <QTimer>

#include <optional>

#include <X11/keysym.h>
#include <signal.h>

using namespace Qt::StringLiterals;

namespace {

// A search gives up after a second; the rest is for a loaded machine.
constexpr int s_answerLimit = 3000;

// The toolkit would wait for most of a minute.
constexpr int s_startLimit = 10000;
const QString s_registry = u"org.a11y.atspi.Registry"_s;

}  // namespace

class TestAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void areaOfAnotherProgram_data();
    void areaOfAnotherProgram();
    void stuckPrograms();
    void ownWindows_data();
    void ownWindows();
    void busThatWasReplaced();

private:
    bool start(const QString &toolkit = u"qt"_s, const QStringList &arguments = {u"list"_s},
               qreal scale = 1);
    /// At a point of the program's window, in logical pixels.
    Accessibility::Place place(QPoint logical, bool known = true);
    std::optional<QRect> ask(const Accessibility::Place &place);
    QRect waitForArea(bool known = true);
    QRect global(const QRect &logical) const;
    bool findWindow();

    std::unique_ptr<TestDesktop> m_desktop{};
    std::unique_ptr<BusAccessibility> m_service{};
    ScrollProgram m_other{};
    qreal m_scale = 1;
    QRect m_client{};
    QRect m_frame{};
};

void TestAccessibility::initTestCase()
{
    m_desktop =
        std::make_unique<TestDesktop>(TestDesktop::Options{.windowManager = {u"openbox"_s}});
    QVERIFY(m_desktop->isReady());
    // This process asks on the desktop's buses, not on those of who runs the test.
    qputenv("DBUS_SESSION_BUS_ADDRESS",
            m_desktop->environment().value(u"DBUS_SESSION_BUS_ADDRESS"_s).toLatin1());
    QVERIFY(QDBusConnection::sessionBus().isConnected());
    m_service = std::make_unique<BusAccessibility>();
}

void TestAccessibility::cleanup()
{
    if (!m_other.process)
        return;
    m_other.process->kill();
    m_other.process->waitForFinished();
    m_other = {};
    QVERIFY(waitFor([&] { return !findWindow(); }));
}

bool TestAccessibility::findWindow()
{
    const QList<TestDesktop::Window> windows = m_desktop->windows();
    m_client = {};
    for (const TestDesktop::Window &window : windows) {
        // The one in front, which is the last one that was started.
        if (m_client.isNull() && window.viewable && window.title == u"scroll")
            m_client = window.area;
    }
    // A bare window is its own frame.
    m_frame = m_client;
    const QRect largest = m_client.adjusted(-50, -50, 50, 50);
    for (const TestDesktop::Window &window : windows) {
        if (window.viewable && window.area.contains(m_frame) && largest.contains(window.area))
            m_frame = window.area;
    }
    return !m_client.isNull();
}

bool TestAccessibility::start(const QString &toolkit, const QStringList &arguments, qreal scale)
{
    m_service->enable();
    m_scale = scale;
    m_other = ScrollProgram::start(*m_desktop, toolkit, arguments, true, scale);
    return m_other.process && waitFor([&] { return findWindow(); });
}

Accessibility::Place TestAccessibility::place(QPoint logical, bool known)
{
    return {.point = global({logical, QSize(1, 1)}).topLeft(),
            .window = m_frame,
            .process = known ? uint(m_other.process->processId()) : 0,
            .title = u"scroll"_s};
}

QRect TestAccessibility::global(const QRect &logical) const
{
    return QRect((QPointF(logical.topLeft()) * m_scale).toPoint(),
                 (QSizeF(logical.size()) * m_scale).toSize())
        .translated(m_client.topLeft());
}

std::optional<QRect> TestAccessibility::ask(const Accessibility::Place &place)
{
    std::optional<QRect> result;
    m_service->findScrollingArea(place, [&](const QRect &area) { result = area; });
    waitFor([&] { return result.has_value(); }, s_answerLimit);
    m_service->dropQuestion();
    return result;
}

// A program is on the accessibility bus some time after its window is on the screen, and the window
// manager may have moved it since.
QRect TestAccessibility::waitForArea(bool known)
{
    QRect result;
    waitFor([&] {
        result =
            findWindow() ? ask(place(m_other.view.center(), known)).value_or(QRect()) : QRect();
        return !result.isNull();
    });
    return result;
}

void TestAccessibility::areaOfAnotherProgram_data()
{
    QTest::addColumn<QString>("toolkit");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<bool>("known");
    QTest::newRow("Qt list among many, scaled")
        << u"qt"_s << QStringList{u"list"_s, u"crowd"_s} << 1.5 << true;
    QTest::newRow("Qt list, no scroll bar told, process unknown")
        << u"qt"_s << QStringList{u"list"_s} << 1.0 << false;
    QTest::newRow("GTK list, process unknown")
        << u"gtk"_s << QStringList{u"list"_s, u"bar"_s, u"status"_s} << 1.0 << false;
    // A frame of an odd number of pixels is told in rounded ones where each of them is two.
    QTest::newRow("GTK text, scaled")
        << u"gtk"_s << QStringList{u"editor"_s, u"bar"_s, u"bare"_s} << 2.0 << true;
}

void TestAccessibility::areaOfAnotherProgram()
{
    QFETCH(QString, toolkit);
    QFETCH(QStringList, arguments);
    QFETCH(qreal, scale);
    QFETCH(bool, known);
    QVERIFY(start(toolkit, arguments, scale));
    // Another one asks the desktop, too.
    QVERIFY(BusAccessibility().isEnabled());
    QCOMPARE(waitForArea(known), global(m_other.view));
    // The scroll bar does not scroll.
    QCOMPARE(ask(place(m_other.view.center() + QPoint(m_other.view.width() / 2 + 5, 0))), QRect());
}

// A program that does not answer, asked for itself or, where the process is not known, with all
// others.
void TestAccessibility::stuckPrograms()
{
    QVERIFY(start());
    const QRect area = waitForArea();
    QVERIFY(!area.isNull());
    QProcess *stuck = m_other.process;
    QCOMPARE(kill(pid_t(stuck->processId()), SIGSTOP), 0);
    int ticks = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, [&] { ++ticks; });
    timer.start(20);
    QCOMPARE(ask(place(m_other.view.center())), QRect());
    // Events ran while the answer was waited for.
    QVERIFY2(ticks >= 5, qPrintable(QString::number(ticks)));
    QVERIFY(start());
    const QRect known = waitForArea(true);
    const QRect unknown = waitForArea(false);
    stuck->kill();
    stuck->waitForFinished();
    QVERIFY(!known.isNull());
    QCOMPARE(unknown, known);
}

void TestAccessibility::ownWindows_data()
{
    QTest::addColumn<QString>("stuck");
    QTest::newRow("a registry that answers") << QString();
    QTest::newRow("one that never does") << s_registry;
    QTest::newRow("a bus that never does") << u"org.freedesktop.DBus"_s;
}

void TestAccessibility::ownWindows()
{
    QFETCH(QString, stuck);
    m_service->enable();
    const QDBusReply<QString> address =
        QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
            u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s));
    QVERIFY(address.isValid());
    QDBusConnection bus = QDBusConnection::connectToBus(address, u"programs"_s);
    const auto programs = [&] {
        QDBusMessage count =
            QDBusMessage::createMethodCall(s_registry, u"/org/a11y/atspi/accessible/root"_s,
                                           u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
        count << u"org.a11y.atspi.Accessible"_s << u"ChildCount"_s;
        return bus.call(count).arguments().value(0).value<QDBusVariant>().variant().toInt();
    };
    const int before = programs();
    const auto pid =
        pid_t(bus.interface()->servicePid(stuck.isEmpty() ? s_registry : stuck).value());
    QVERIFY(pid > 0);
    if (!stuck.isEmpty())
        QCOMPARE(kill(pid, SIGSTOP), 0);
    const auto goOn = qScopeGuard([&] {
        kill(pid, SIGCONT);
        QDBusConnection::disconnectFromBus(bus.name());
    });
    SnapWorkbench program(*m_desktop);
    // What an earlier one took would come back.
    QDir(program.dataFolder() + u"/recovery"_s).removeRecursively();
    QElapsedTimer timer;
    timer.start();
    QVERIFY(program.startAndWait());
    m_other.process = program.process();
    m_desktop->key('s', {XK_Control_L, XK_Alt_L});
    QVERIFY(program.waitForTitle(u"untitled * - Snap Workbench"_s, s_startLimit));
    QVERIFY2(timer.elapsed() < s_startLimit, qPrintable(QString::number(timer.elapsed())));
    if (stuck.isEmpty())
        QVERIFY(waitFor([&] { return programs() == before + 1; }));
}

void TestAccessibility::busThatWasReplaced()
{
    QVERIFY(start());
    QVERIFY(!waitForArea().isNull());
    const QString service = u"org.a11y.Bus"_s;
    QDBusConnectionInterface *session = QDBusConnection::sessionBus().interface();
    const uint keeper = session->servicePid(service);
    QVERIFY(keeper > 0);
    QCOMPARE(kill(pid_t(keeper), SIGTERM), 0);
    QVERIFY(waitFor([&] { return !session->isServiceRegistered(service); }));
    QVERIFY(!m_service->isEnabled());
    cleanup();
    QVERIFY(start());
    QVERIFY(!waitForArea().isNull());
}

QTEST_GUILESS_MAIN(TestAccessibility)
#include "test_accessibility.moc"
