// The program in a session: its icon in the tray, and the session's end.

#include "snapworkbench.h"

#include <QFile>
#include <QSet>
#include <QTest>

#include <csignal>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

const QRect s_screen(0, 0, 1600, 1000);

}  // namespace

class TestSession : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void trayIcon_data();
    void trayIcon();
    void trayWithADialog_data();
    void trayWithADialog();
    void signalKeepsSettings_data();
    void signalKeepsSettings();
    void refusedInAWaylandSession();

private:
    bool startTray();
    QRect find(const std::function<bool(const TestDesktop::Window &)> &isIt);
    QRect trayIconArea();
    bool waitForTrayIcon();  ///< with a picture in it
    QRect trayMenuArea();
    /// Opens the menu by a click; gives its area.
    QRect openTrayMenu(int button = 1);

    std::unique_ptr<TestDesktop> m_desktop;
    std::unique_ptr<SnapWorkbench> m_program;
};

void TestSession::init()
{
    m_desktop = std::make_unique<TestDesktop>(TestDesktop::Options{});
    QVERIFY(m_desktop->isReady());
    m_program = std::make_unique<SnapWorkbench>(*m_desktop);
}

void TestSession::cleanup()
{
    m_program.reset();
    m_desktop.reset();
}

void TestSession::trayIcon_data()
{
    QTest::addColumn<QByteArray>("picture");
    QTest::newRow("the skin's") << QByteArray("skin/BtnIcon_normal.png");
    QTest::newRow("one that is missing") << QByteArray("skin/missing.png");
    QTest::newRow("one that is none") << QByteArray("SnapWorkbench.xml");
}

bool TestSession::startTray()
{
    return m_desktop->start(
        u"trayer"_s,
        u"--edge top --align left --widthtype pixel --width 120 --height 24"_s.split(u' '),
        m_desktop->environment());
}

QRect TestSession::find(const std::function<bool(const TestDesktop::Window &)> &isIt)
{
    const QList<TestDesktop::Window> windows = m_desktop->windows();
    const auto window = std::find_if(windows.begin(), windows.end(), isIt);
    return window == windows.end() ? QRect() : window->area;
}

QRect TestSession::trayIconArea()
{
    return find([](const TestDesktop::Window &window) {
        return window.viewable && window.title == u"SnapWorkbench"_s && window.area.width() > 10;
    });
}

bool TestSession::waitForTrayIcon()
{
    return waitFor([&] {
        const QRect area = trayIconArea();
        if (!area.isValid())
            return false;
        const QImage icon = m_desktop->screenshot().copy(area);
        QSet<QRgb> colours;
        for (int i = 0; i < icon.width(); ++i)
            colours.insert(icon.pixel(i, icon.height() / 2));
        return colours.size() > 5;
    });
}

QRect TestSession::trayMenuArea()
{
    const QPoint at = trayIconArea().center();
    return find([&](const TestDesktop::Window &window) {
        return window.viewable && window.overrideRedirect && window.area.height() > 100 &&
               window.area.adjusted(-1, -1, 1, 1).contains(at);
    });
}

QRect TestSession::openTrayMenu(int button)
{
    if (trayMenuArea().isValid())
        return {};
    // A dialog that is just opening may take the first click for one beside it.
    waitFor([&] {
        m_desktop->click(trayIconArea().center(), button);
        return waitFor([&] { return trayMenuArea().isValid(); }, 3000);
    });
    return trayMenuArea();
}

// The menu answers the left button as the right one, and its commands work from there.
void TestSession::trayIcon()
{
    QVERIFY(startTray());
    QFETCH(QByteArray, picture);
    m_program->writeSettings({});
    QFile skin(m_program->resourceFile());
    QVERIFY(skin.open(QIODevice::ReadWrite));
    const QByteArray text = skin.readAll().replace("skin/BtnIcon_normal.png", picture);
    QVERIFY(text.contains("NormalImg=\"" + picture + '"'));
    QVERIFY(skin.resize(0) && skin.write(text) == text.size());
    skin.close();
    QVERIFY(m_program->startAndWait());
    QVERIFY(waitForTrayIcon());
    for (const int button : {1, 3}) {
        QVERIFY(openTrayMenu(button).isValid());
        m_desktop->key(XK_Escape);
        QVERIFY(waitFor([&] { return !trayMenuArea().isValid(); }));
    }
    QVERIFY(openTrayMenu().isValid());
    m_desktop->key(XK_Down);
    m_desktop->key(XK_Return);
    QVERIFY(waitFor([&] { return m_program->hasOverlay(s_screen); }));
    m_desktop->key(XK_Escape);
    QVERIFY(waitFor([&] { return !m_program->hasOverlay(s_screen); }));
}

void TestSession::trayWithADialog_data()
{
    using Keys = QList<xcb_keysym_t>;
    QTest::addColumn<Keys>("keys");  // the first one held with the second
    QTest::addColumn<QString>("theme");
    const Keys open{XK_Control_L, XK_o};
    QTest::newRow("open a file") << open << QString();
    QTest::newRow("open a file, GTK's dialog") << open << u"gtk3"_s;
    QTest::newRow("colour") << Keys{XK_Control_L, XK_k} << QString();
    QTest::newRow("colour, GTK's dialog") << Keys{XK_Control_L, XK_k} << u"gtk3"_s;
    QTest::newRow("save changes?") << Keys{XK_Control_L, XK_w} << QString();
    QTest::newRow("about") << Keys{XK_Alt_L, XK_s} << QString();  // first in that menu
}

// "Show" brings the dialog to the front; "Quit" cancels it, asks about the picture, and quits.
void TestSession::trayWithADialog()
{
    QFETCH(QList<xcb_keysym_t>, keys);
    QFETCH(QString, theme);
    QVERIFY(startTray());
    QVERIFY(m_program->startAndWait({{u"QT_QPA_PLATFORMTHEME"_s, theme}}));
    const QString title = u"untitled * - Snap Workbench"_s;
    QVERIFY(m_desktop->waitForFocus(m_program->mainWindow()));
    m_desktop->key('s', {XK_Control_L, XK_Alt_L});
    QVERIFY(m_program->waitForTitle(title));
    QVERIFY(m_desktop->waitForFocus(m_program->mainWindow()));
    const xcb_window_t before = m_desktop->activeWindow();
    m_desktop->key(keys[1], {keys[0]});
    if (keys[0] == XK_Alt_L)
        m_desktop->key(XK_Return);
    xcb_window_t dialog = XCB_NONE;
    QVERIFY(waitFor([&] {
        dialog = m_desktop->activeWindow();
        return dialog != XCB_NONE && dialog != before;
    }));

    QVERIFY(m_desktop->startPattern({300, 200, 700, 500}));
    QVERIFY(waitForTrayIcon());
    QVERIFY(openTrayMenu().isValid());
    m_desktop->key(XK_Up);
    m_desktop->key(XK_Up);
    m_desktop->key(XK_Return);
    QVERIFY(waitFor([&] { return m_desktop->activeWindow() == dialog; }));

    // Another button: two clicks of the same may be one double click.
    const QRect menu = openTrayMenu(3);
    QVERIFY(menu.isValid());
    const QList<TestDesktop::Window> windows = m_desktop->windows();
    m_desktop->click(menu.bottomLeft() + QPoint(40, -12));
    const TestDesktop::Window question = m_desktop->waitForNewWindow(windows);
    QVERIFY(m_desktop->waitForFocus(question));
    // From "Cancel" to "Discard".
    m_desktop->key(XK_Left);
    m_desktop->key(XK_space);
    QVERIFY(waitFor([&] { return m_program->process()->state() == QProcess::NotRunning; }));
    QCOMPARE(m_program->process()->exitStatus(), QProcess::NormalExit);
}

void TestSession::signalKeepsSettings_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<QString>("during");
    QTest::newRow("the session ends") << SIGTERM << QString();
    QTest::newRow("the terminal closes") << SIGHUP << QString();
    QTest::newRow("while marking") << SIGTERM << u"overlay"_s;
    QTest::newRow("while counting down") << SIGTERM << u"countdown"_s;
    QTest::newRow("while asking") << SIGTERM << u"prompt"_s;
}

// Whatever waits in a loop of its own then: the program ends, and what was set is there again.
void TestSession::signalKeepsSettings()
{
    QFETCH(int, signal);
    QFETCH(QString, during);
    m_program->writeSettings({{u"ScreenTimer"_s, u"1000"_s}, {u"AutoShow"_s, u"1"_s}});
    QVERIFY(m_program->startAndWait());
    const QRect area(137, 71, 1003, 701);
    m_desktop->placeWindow(m_program->mainWindow(), area);
    QVERIFY(waitFor([&] { return m_program->mainWindow().area == area; }));
    QVERIFY(m_desktop->waitForFocus(m_program->mainWindow()));
    if (during == u"overlay"_s) {
        QVERIFY(m_program->openOverlay(s_screen));
    } else if (during == u"countdown"_s) {
        const qsizetype before = m_desktop->windows().size();
        m_desktop->key(XK_t, {XK_Control_L, XK_Alt_L});
        QVERIFY(waitFor([&] { return m_desktop->windows().size() > before; }));
    } else if (during == u"prompt"_s) {
        m_desktop->key(XK_s, {XK_Control_L, XK_Alt_L});
        QVERIFY(m_program->waitForTitle(u"untitled * - Snap Workbench"_s));
        const QList<TestDesktop::Window> before = m_desktop->windows();
        m_desktop->closeWindow(m_program->mainWindow());
        QVERIFY(m_desktop->waitForNewWindow(before).id != XCB_NONE);
    }
    QCOMPARE(kill(static_cast<pid_t>(m_program->process()->processId()), signal), 0);
    QVERIFY(waitFor([&] { return m_program->process()->state() == QProcess::NotRunning; }));
    QCOMPARE(m_program->process()->exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program->setting(u"WindowLeft"_s), QString::number(area.x()));
    QCOMPARE(m_program->setting(u"WindowWidth"_s), QString::number(area.width()));
}

// No grab opens anything, and each one says why in the same words.
void TestSession::refusedInAWaylandSession()
{
    QVERIFY(m_program->startAndWait({{u"XDG_SESSION_TYPE"_s, u"wayland"_s}}));
    QVERIFY(m_desktop->waitForFocus(m_program->mainWindow()));
    const QRect window = m_program->mainWindow().area;
    // The bar, as the lower half of the picture area shows it: the only thing there that is dark.
    QImage shown;
    const auto bar = [&] {
        shown = m_desktop->screenshot().copy(window.adjusted(20, window.height() / 2, -20, -60));
        QRect area;
        const bool isPainted = qGray(shown.pixel(0, 0)) > 200;
        for (int y = 0; isPainted && y < shown.height(); ++y) {
            for (int x = 0; x < shown.width(); ++x) {
                if (qGray(shown.pixel(x, y)) < 60)
                    area |= QRect(x, y, 1, 1);
            }
        }
        return area;
    };
    QVERIFY(waitFor([&] { return !bar().isEmpty(); }));
    const QImage told = shown;
    const QPoint close =
        window.topLeft() + QPoint(20, window.height() / 2) + bar().topRight() + QPoint(-24, 24);
    const auto isTold = [&] { return waitFor([&] { return !bar().isEmpty() && shown == told; }); };
    const auto isClosed = [&] {
        m_desktop->click(close);
        m_desktop->movePointer({5, 5});
        return waitFor([&] { return bar().isEmpty(); });
    };
    for (const xcb_keysym_t letter : {XK_r, XK_e, XK_a, XK_l, XK_w, XK_s, XK_t, XK_v}) {
        QVERIFY(isClosed());
        m_desktop->key(letter, {XK_Control_L, XK_Alt_L});
        QVERIFY(isTold());
        QCOMPARE(m_program->grabState(), u"Idle"_s);
    }
    QVERIFY(isClosed());
    const QVariantList windows{u"capture-windows"_s, QVariantList(), QVariantMap()};
    m_program->call(u"org.freedesktop.Application"_s, u"ActivateAction"_s, windows);
    QVERIFY(isTold());
    QVERIFY(m_program->waitForTitle(u"Snap Workbench"_s));  // no tab
    QVERIFY(m_program->quit());
}

QTEST_GUILESS_MAIN(TestSession)
#include "test_session.moc"
