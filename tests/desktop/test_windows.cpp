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
const QString s_idleTitle = u"Snap Workbench"_s;

using Windows = QList<TestDesktop::Window>;

bool isShown(TestDesktop &desktop, const QString &title)
{
    const Windows windows = desktop.windows();
    return std::any_of(windows.begin(), windows.end(), [&](const TestDesktop::Window &window) {
        return window.viewable && window.title == title;
    });
}

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

bool openBrowser(TestDesktop &desktop)
{
    pressHotKey(desktop, XK_l);
    return waitFor([&] { return desktop.activeTitle() == s_browser; });
}

// A grab that has been given up takes a moment to give the focus back; until then hot keys start
// nothing.
bool openCountdown(TestDesktop &desktop)
{
    return waitFor([&] {
        pressHotKey(desktop, XK_t);
        return waitFor([&] { return hasCountdown(desktop); }, 500);
    });
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
    QVERIFY(openBrowser(desktop));
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

    QVERIFY(openCountdown(desktop));
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

    QVERIFY(openCountdown(desktop));
    QVERIFY(waitFor([&] { return desktop.screenshot() != before; }));
    QVERIFY(program.waitForTitle(u"untitled * - Snap Workbench"_s));
    QVERIFY(!hasCountdown(desktop));
    if (windowManager.isEmpty())
        return;
    QVERIFY(waitFor([&] { return desktop.activeTitle() == u"pattern"; }));
    // Brings the program forward; what it grabbed does not show that.
    QVERIFY(openBrowser(desktop));
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
    QVERIFY(desktop.startPattern({100, 100, 500, 400}));

    const auto pressAll = [&] {
        for (const xcb_keysym_t letter : {XK_r, XK_s, XK_l, XK_t})
            pressHotKey(desktop, letter);
    };
    const auto isGone = [&] {
        return waitFor([&] { return !isShown(desktop, s_browser) && !hasCountdown(desktop); });
    };
    QVERIFY(openBrowser(desktop));
    // The list shows the next item once the keys before have been heard.
    const QImage before = desktop.screenshot();
    pressAll();
    desktop.key(XK_Right);
    QVERIFY(waitFor([&] { return desktop.screenshot() != before; }));
    QVERIFY(!program.hasOverlay(s_whole) && !hasCountdown(desktop));
    desktop.key(XK_Escape);
    QVERIFY(isGone());

    QVERIFY(openBrowser(desktop));
    const Windows windows = desktop.windows();
    const auto browser =
        std::find_if(windows.begin(), windows.end(),
                     [](const TestDesktop::Window &window) { return window.title == s_browser; });
    desktop.closeWindow(*browser);
    QVERIFY(isGone());

    QVERIFY(openCountdown(desktop));
    pressAll();
    QVERIFY(!program.hasOverlay(s_whole) && !isShown(desktop, s_browser));
    QVERIFY(waitFor([&] {
        desktop.key(XK_Escape);
        return !hasCountdown(desktop);
    }));
    QVERIFY(program.waitForTitle(s_idleTitle));

    QVERIFY(program.openOverlay(s_whole));
    desktop.key(XK_Escape);
    QVERIFY(waitFor([&] { return !program.hasOverlay(s_whole); }));
    // The end of the program ends a count that has long to go.
    QVERIFY(openCountdown(desktop));
    QVERIFY(program.quit());
}

QTEST_GUILESS_MAIN(TestWindows)
#include "test_windows.moc"
