// Windows as a whole: the browser, and the full screen after a countdown.

#include "pattern.h"
#include "snapworkbench.h"

#include <QTest>

#include <algorithm>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

const QStringList s_compositing{u"xfwm4"_s, u"--compositor=on"_s};
const QStringList s_openbox{u"openbox"_s};

const QRect s_whole(0, 0, 1600, 1000);
const QString s_browser = u"All Windows"_s;
const QByteArray s_escape("key 16777216");
const QString s_idleTitle = u"Snap Workbench"_s;

using Windows = QList<TestDesktop::Window>;

// The countdown has no title but the program's, and is no speck.
bool hasCountdown(TestDesktop &desktop)
{
    const Windows windows = desktop.windows();
    return std::any_of(windows.begin(), windows.end(), [](const TestDesktop::Window &window) {
        return window.viewable && window.title == u"SnapWorkbench" && window.area.width() >= 120;
    });
}

void pressHotKey(TestDesktop &desktop, xcb_keysym_t letter)
{
    desktop.key(letter, {XK_Control_L, XK_Alt_L});
}

bool openBrowser(TestDesktop &desktop, SnapWorkbench &program)
{
    if (!program.waitForState(u"Idle"_s))
        return false;
    pressHotKey(desktop, XK_l);
    return program.waitForState(u"Browsing"_s) &&
           waitFor([&] { return desktop.activeTitle() == s_browser; });
}

bool openCountdown(TestDesktop &desktop, SnapWorkbench &program)
{
    if (!program.waitForState(u"Idle"_s))
        return false;
    pressHotKey(desktop, XK_t);
    return program.waitForState(u"Counting"_s) && waitFor([&] { return hasCountdown(desktop); });
}

}  // namespace

class TestWindows : public QObject
{
    Q_OBJECT

private slots:
    void browserTakesCoveredWindows_data();
    void browserTakesCoveredWindows();
    void countdown_data();
    void countdown();
    void everyStateEnds();
    void pressedTwice();
    void doubleClickStaysHere();
};

void TestWindows::browserTakesCoveredWindows_data()
{
    QTest::addColumn<QStringList>("windowManager");
    QTest::addColumn<QString>("scale");
    QTest::addColumn<QSize>("size");
    QTest::newRow("compositing") << s_compositing << u"1"_s << s_whole.size();
    QTest::newRow("openbox, scale 2") << s_openbox << u"2"_s << QSize(3200, 2000);
}

void TestWindows::browserTakesCoveredWindows()
{
    QFETCH(QStringList, windowManager);
    QFETCH(QString, scale);
    QFETCH(QSize, size);
    TestDesktop desktop({.size = size, .windowManager = windowManager});
    QVERIFY(desktop.isReady());
    SnapWorkbench program(desktop);
    program.writeSettings({{u"RunMinimized"_s, u"1"_s}});
    QVERIFY(program.startAndWait({{u"QT_SCALE_FACTOR"_s, scale}}));
    const QRect first(20, 60, 270, 500);
    const QRect second(size.width() - 310, 150, 301, 203);
    QVERIFY(desktop.startPattern(first, u"First"_s, true));
    QVERIFY(desktop.startPattern(second, u"Second"_s));
    QProcess *cover = desktop.startPattern({{0, 0}, size - QSize(3, 3)}, u"Cover"_s);
    QVERIFY(cover);

    // The front one is current; the two behind it are taken.
    QVERIFY(openBrowser(desktop, program));
    desktop.key(XK_Right);
    desktop.key(XK_Right, {XK_Shift_L});
    desktop.key(XK_Return);
    const auto title = [](const QString &name) { return name + u" * - Snap Workbench"_s; };
    QVERIFY(program.waitForTitle(title(u"First"_s)));
    QVERIFY(waitFor([&] { return desktop.activeTitle() == title(u"First"_s); }));
    const QImage framed = program.saveAs(desktop.home() + u"/first.png"_s);

    // What the screen shows of it once nothing lies above, but for the corners.
    cover->terminate();
    QRect frame;
    for (const TestDesktop::Window &window : desktop.windows()) {
        if (window.area.size() == framed.size() && window.area.contains(first.center()))
            frame = window.area;
    }
    QVERIFY(frame.height() > first.height());
    const QRect upright(frame.topLeft() + QPoint(12, 0), frame.size() - QSize(24, 0));
    QVERIFY(waitFor([&] {
        return desktop.screenshot().copy(upright) ==
               framed.copy(upright.translated(-frame.topLeft()));
    }));

    desktop.key(XK_w, {XK_Control_L});
    QVERIFY(program.waitForTitle(title(u"Second"_s)));
    QCOMPARE(program.saveAs(desktop.home() + u"/second.png"_s), pattern(second.size()));
}

void TestWindows::countdown_data()
{
    QTest::addColumn<QStringList>("windowManager");
    QTest::addColumn<QString>("scale");
    QTest::newRow("compositing, scale 1.5") << s_compositing << u"1.5"_s;
    QTest::newRow("openbox") << s_openbox << u"1"_s;
    QTest::newRow("no window manager") << QStringList{} << u"1"_s;
}

void TestWindows::countdown()
{
    QFETCH(QStringList, windowManager);
    QFETCH(QString, scale);
    TestDesktop desktop({.windowManager = windowManager});
    QVERIFY(desktop.isReady());
    SnapWorkbench program(desktop);
    program.writeSettings(
        {{u"RunMinimized"_s, u"1"_s}, {u"AutoShow"_s, u"0"_s}, {u"ScreenTimer"_s, u"2"_s}});
    QVERIFY(program.startAndWait({{u"QT_SCALE_FACTOR"_s, scale}}));
    // All of the desktop: without a window manager the program's window can't be minimised.
    QProcess *other = desktop.startPattern(s_whole);
    QVERIFY(other);
    const QImage before = desktop.screenshot();

    QVERIFY(openCountdown(desktop, program));
    QVERIFY(waitFor([&] {
        desktop.key(XK_Escape);
        return !hasCountdown(desktop);
    }));
    // The other program hears keys again.
    QVERIFY(waitFor([&] {
        desktop.key(XK_x);
        return waitFor([&] { return other->readAll().contains("key 88"); }, 200);
    }));
    QVERIFY(program.waitForTitle(s_idleTitle));

    QVERIFY(openCountdown(desktop, program));
    QVERIFY(waitFor([&] { return desktop.screenshot() != before; }));
    QVERIFY(program.waitForTitle(u"untitled * - Snap Workbench"_s));
    QVERIFY(!hasCountdown(desktop));
    if (windowManager.isEmpty())
        return;
    QVERIFY(waitFor([&] { return desktop.activeTitle() == u"pattern"; }));
    // Brings the program forward; what it grabbed does not show that.
    QVERIFY(openBrowser(desktop, program));
    desktop.key(XK_Escape);
    QVERIFY(waitFor([&] { return desktop.activeTitle() == u"untitled * - Snap Workbench"; }));
    QCOMPARE(program.saveAs(desktop.home() + u"/whole.png"_s), before);
}

// Whatever is pressed or closed in between, nothing stays behind, and the next grab begins.
void TestWindows::everyStateEnds()
{
    TestDesktop desktop({.windowManager = s_compositing});
    QVERIFY(desktop.isReady());
    SnapWorkbench program(desktop);
    program.writeSettings({{u"ScreenTimer"_s, u"1000"_s}});
    QVERIFY(program.startAndWait());
    QProcess *other = desktop.startPattern({100, 100, 500, 400});
    QVERIFY(other);

    QVERIFY(openBrowser(desktop, program));
    // The list shows the next item once the keys before have been heard.
    const QImage before = desktop.screenshot();
    for (const xcb_keysym_t letter : {XK_r, XK_s, XK_l, XK_t})
        pressHotKey(desktop, letter);
    desktop.key(XK_Right);
    QVERIFY(waitFor([&] { return desktop.screenshot() != before; }));
    QCOMPARE(program.grabState(), u"Browsing"_s);
    desktop.key(XK_Escape);
    QVERIFY(program.waitForState(u"Idle"_s));

    QVERIFY(openBrowser(desktop, program));
    const Windows windows = desktop.windows();
    const auto browser =
        std::find_if(windows.begin(), windows.end(),
                     [](const TestDesktop::Window &window) { return window.title == s_browser; });
    desktop.closeWindow(*browser);
    QVERIFY(program.waitForState(u"Idle"_s));

    // The last press of those in a countdown runs after it, but the countdown's own key.
    QVERIFY(openCountdown(desktop, program));
    for (const xcb_keysym_t letter : {XK_l, XK_r, XK_t})
        pressHotKey(desktop, letter);
    // Another program has the keyboard, and gets every Escape as well.
    desktop.click({300, 300});
    QVERIFY(waitFor([&] { return desktop.activeTitle() == u"pattern"; }));
    desktop.key(XK_Escape);
    QVERIFY(waitFor([&] { return other->readAll().contains(s_escape); }));
    QCOMPARE(program.grabState(), u"Counting"_s);
    QVERIFY(waitFor([&] {
        desktop.key(XK_Escape);
        desktop.key(XK_Escape);
        return waitFor([&] { return program.grabState() != u"Counting"; }, 500);
    }));
    QVERIFY(program.waitForState(u"Marking"_s));
    QVERIFY(program.waitForTitle(s_idleTitle));
    desktop.key(XK_Escape);
    QVERIFY(program.waitForState(u"Idle"_s));

    // The end of the program ends a count that has long to go.
    QVERIFY(openCountdown(desktop, program));
    QVERIFY(program.quit());
}

// The window comes to the front after each grab, but not into the next one, which was asked for
// before the first was over.
void TestWindows::pressedTwice()
{
    TestDesktop desktop({.windowManager = s_compositing});
    QVERIFY(desktop.isReady());
    SnapWorkbench program(desktop);
    program.writeSettings({{u"RunMinimized"_s, u"1"_s}});
    QVERIFY(program.startAndWait());
    QVERIFY(desktop.startPattern({100, 100, 500, 400}));
    const QImage before = desktop.screenshot();
    pressHotKey(desktop, XK_s);
    QVERIFY(program.waitForState(u"Ending"_s));
    // The second one must not look like the first one held down.
    QVERIFY(waitFor([&] {
        pressHotKey(desktop, XK_s);
        return program.waitForTitle(u"untitled 1 * - Snap Workbench"_s, 100);
    }));
    QVERIFY(program.waitForState(u"Idle"_s));
    QVERIFY(waitFor([&] { return desktop.activeTitle() == program.mainWindow().title; }));
    QCOMPARE(program.saveAs(desktop.home() + u"/second.png"_s), before);
}

// The second click of a double click comes when the overlay has gone.
void TestWindows::doubleClickStaysHere()
{
    TestDesktop desktop({.windowManager = s_compositing});
    QVERIFY(desktop.isReady());
    SnapWorkbench program(desktop);
    program.writeSettings({{u"RunMinimized"_s, u"1"_s}});
    QVERIFY(program.startAndWait());
    QProcess *other = desktop.startPattern(s_whole);
    QVERIFY(other);
    // A loaded machine may be too slow for a double click.
    bool isDouble = false;
    for (int attempt = 0; attempt < 5 && !isDouble; ++attempt) {
        QVERIFY(program.openOverlay(s_whole));
        QVERIFY(desktop.drag({200, 200}, {700, 500}, [&] {
            return qRed(desktop.pixel({600, 400})) > 140;
        }));
        // The button lies right below the marked rectangle's right end.
        const QPoint button(660, 536);
        QVERIFY(waitFor([&] { return desktop.pixel(button) != desktop.pixel({100, 536}); }));
        desktop.click(button);
        QVERIFY(waitFor([&] { return !program.hasOverlay(s_whole); }));
        if (desktop.isPointerTaken()) {
            desktop.click(button);
            isDouble = desktop.isPointerTaken();
        }
        QVERIFY(program.waitForState(u"Idle"_s));
        desktop.key(XK_m, {XK_Control_L});
        QVERIFY(waitFor([&] { return desktop.activeTitle() == u"pattern"; }));
    }
    QVERIFY(isDouble);
    // It hears clicks: this one is the first.
    desktop.click({50, 60});
    QByteArray heard;
    QVERIFY(waitFor([&] {
        heard += other->readAll();
        return heard.contains("press 50,60");
    }));
    QCOMPARE(heard.count("press"), 1);
}

QTEST_GUILESS_MAIN(TestWindows)
#include "test_windows.moc"
