// What other programs tell of the areas that scroll in them, asked over a real accessibility bus,
// and what this one tells of itself.

#include "platform/xdg/busaccessibility.h"
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

// Of the programs' windows, in logical pixels.
const QRect s_pane(20, 30, 300, 200);
constexpr int s_bar = 20;
const QPoint s_inside(60, 70);
const QPoint s_fitting(60, 270);  // in a pane without a scroll bar

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
    void switchIsTurnedOn();
    void areaOfAnotherProgram_data();
    void areaOfAnotherProgram();
    void programThatIsStuck();
    void strangerThatIsStuck();
    void ownWindows_data();
    void ownWindows();
    void busThatWasReplaced();

private:
    bool start(const QString &program, const QStringList &arguments, qreal scale = 1);
    Accessibility::Place place(QPoint logical, bool known = true);
    std::optional<QRect> ask(const Accessibility::Place &place);
    QRect waitForArea(bool known = true);
    QRect global(const QRect &logical) const;
    bool findWindow();

    std::unique_ptr<TestDesktop> m_desktop{};
    std::unique_ptr<BusAccessibility> m_service{};
    QProcess *m_program = nullptr;
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
    if (!m_program)
        return;
    m_program->kill();
    m_program->waitForFinished();
    m_program = nullptr;
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

bool TestAccessibility::start(const QString &program, const QStringList &arguments, qreal scale)
{
    m_service->enable();
    m_scale = scale;
    QProcessEnvironment environment = m_desktop->environment();
    environment.remove(u"NO_AT_BRIDGE"_s);
    environment.insert(u"QT_SCALE_FACTOR"_s, QString::number(scale));
    environment.insert(u"GDK_SCALE"_s, QString::number(scale));
    m_program = m_desktop->start(program, arguments, environment);
    return m_program && waitFor([&] { return findWindow(); });
}

Accessibility::Place TestAccessibility::place(QPoint logical, bool known)
{
    return {.point = global({logical, QSize(1, 1)}).topLeft(),
            .window = m_frame,
            .process = known ? uint(m_program->processId()) : 0,
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
        result = findWindow() ? ask(place(s_inside, known)).value_or(QRect()) : QRect();
        return !result.isNull();
    });
    return result;
}

void TestAccessibility::switchIsTurnedOn()
{
    QVERIFY(!m_service->isEnabled());
    m_service->enable();
    QVERIFY(m_service->isEnabled());
    // Another one asks the desktop, too.
    QVERIFY(BusAccessibility().isEnabled());
}

void TestAccessibility::areaOfAnotherProgram_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("kind");
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<bool>("known");
    const QString qt = QStringLiteral(SNAP_SCROLL);
    const QString gtk = QStringLiteral(SNAP_SCROLL_GTK);
    QTest::newRow("Qt area") << qt << QStringList{u"area"_s} << 1.0 << true;
    QTest::newRow("Qt area, scaled") << qt << QStringList{u"area"_s} << 1.5 << true;
    QTest::newRow("Qt area among many") << qt << QStringList{u"crowd"_s} << 1.0 << true;
    QTest::newRow("Qt text, process unknown") << qt << QStringList{u"text"_s} << 1.0 << false;
    QTest::newRow("Qt list, no scroll bar told") << qt << QStringList{u"list"_s} << 1.0 << true;
    QTest::newRow("GTK text") << gtk << QStringList{u"text"_s} << 1.0 << true;
    QTest::newRow("GTK box, process unknown") << gtk << QStringList{u"box"_s} << 1.0 << false;
    QTest::newRow("GTK text, scaled") << gtk << QStringList{u"text"_s, u"bare"_s} << 2.0 << true;
}

void TestAccessibility::areaOfAnotherProgram()
{
    QFETCH(QString, program);
    QFETCH(QStringList, kind);
    QFETCH(qreal, scale);
    QFETCH(bool, known);
    int bar = s_bar;
    if (program.endsWith(u".py")) {
        // The system's own, which has the toolkit's modules.
        QVERIFY(start(u"/usr/bin/python3"_s, QStringList{program} + kind, scale));
        QVERIFY(waitFor([&] { return m_program->canReadLine(); }));
        bar = m_program->readLine().trimmed().toInt();
        QVERIFY(bar > 0);
    } else {
        QVERIFY(start(program, kind, scale));
    }
    const QRect area = waitForArea(known);
    QCOMPARE(area, global(s_pane.adjusted(0, 0, -bar, 0)));
    // Neither the scroll bar nor what lies outside scrolls.
    QCOMPARE(ask(place({s_pane.right() - bar / 2, s_inside.y()})), QRect());
    QCOMPARE(ask(place(s_fitting)), QRect());
}

void TestAccessibility::programThatIsStuck()
{
    QVERIFY(start(QStringLiteral(SNAP_SCROLL), {u"area"_s}));
    const QRect area = waitForArea();
    QVERIFY(!area.isNull());
    QCOMPARE(kill(pid_t(m_program->processId()), SIGSTOP), 0);
    int ticks = 0;
    QTimer timer;
    connect(&timer, &QTimer::timeout, [&] { ++ticks; });
    timer.start(20);
    const std::optional<QRect> answer = ask(place(s_inside));
    QCOMPARE(kill(pid_t(m_program->processId()), SIGCONT), 0);
    QCOMPARE(answer, QRect());
    // Events ran while the answer was waited for.
    QVERIFY2(ticks >= 5, qPrintable(QString::number(ticks)));
    QCOMPARE(waitForArea(), area);
}

// Where the process is not known all programs are asked, and one of them never answers.
void TestAccessibility::strangerThatIsStuck()
{
    QVERIFY(start(QStringLiteral(SNAP_SCROLL), {u"area"_s}));
    QVERIFY(!waitForArea().isNull());
    QProcess *stranger = m_program;
    QCOMPARE(kill(pid_t(stranger->processId()), SIGSTOP), 0);
    QVERIFY(start(QStringLiteral(SNAP_SCROLL), {u"area"_s}));
    const QRect known = waitForArea(true);
    const QRect unknown = waitForArea(false);
    stranger->kill();
    stranger->waitForFinished();
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
    m_program = program.process();
    m_desktop->key('s', {XK_Control_L, XK_Alt_L});
    QVERIFY(program.waitForTitle(u"untitled * - Snap Workbench"_s, s_startLimit));
    QVERIFY2(timer.elapsed() < s_startLimit, qPrintable(QString::number(timer.elapsed())));
    if (stuck.isEmpty())
        QVERIFY(waitFor([&] { return programs() == before + 1; }));
}

void TestAccessibility::busThatWasReplaced()
{
    QVERIFY(start(QStringLiteral(SNAP_SCROLL), {u"area"_s}));
    QVERIFY(!waitForArea().isNull());
    const QString service = u"org.a11y.Bus"_s;
    QDBusConnectionInterface *session = QDBusConnection::sessionBus().interface();
    const uint keeper = session->servicePid(service);
    QVERIFY(keeper > 0);
    QCOMPARE(kill(pid_t(keeper), SIGTERM), 0);
    QVERIFY(waitFor([&] { return !session->isServiceRegistered(service); }));
    QVERIFY(!m_service->isEnabled());
    cleanup();
    QVERIFY(start(QStringLiteral(SNAP_SCROLL), {u"area"_s}));
    QVERIFY(!waitForArea().isNull());
}

QTEST_GUILESS_MAIN(TestAccessibility)
#include "test_accessibility.moc"
