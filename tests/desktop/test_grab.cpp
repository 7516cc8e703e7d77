// The main job on real desktops: hot key, rectangle, picture, file.

#include "pattern.h"
#include "snapworkbench.h"

#include <QTest>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

using Variables = QMap<QString, QString>;

const QStringList s_compositing{u"xfwm4"_s, u"--compositor=on"_s};
const QStringList s_plain{u"xfwm4"_s, u"--compositor=off"_s};
const QStringList s_openbox{u"openbox"_s};
// The compositor of xfwm4 shows nothing on monitors that the server was only told of.
const QStringList s_picom{u"picom"_s, u"--backend"_s, u"xrender"_s, u"--config"_s, u"/dev/null"_s};

// What the overlay's black at 60 % leaves of a colour, and what its white makes of it.
bool isDimmed(QRgb shown, QRgb colour)
{
    return qAbs(qRed(shown) - qRed(colour) * 0.4) < 3 &&
           qAbs(qGreen(shown) - qGreen(colour) * 0.4) < 3 &&
           qAbs(qBlue(shown) - qBlue(colour) * 0.4) < 3;
}

bool isLit(QRgb shown, QRgb colour)
{
    return qAbs(qRed(shown) - qRed(colour) * 0.4 - 153) < 3 &&
           qAbs(qGreen(shown) - qGreen(colour) * 0.4 - 153) < 3;
}

const QRect s_patternArea(203, 151, 701, 503);

// Marks a rectangle inside the pattern at its usual place.
bool markPattern(TestDesktop &desktop)
{
    const QPoint corner(480, 380);
    const QRgb colour = pattern(s_patternArea.size()).pixel(corner - s_patternArea.topLeft());
    return desktop.drag({300, 200}, {500, 400},
                        [&] { return isLit(desktop.pixel(corner), colour); });
}

}  // namespace

Q_DECLARE_METATYPE(TestDesktop::Options)

class TestGrab : public QObject
{
    Q_OBJECT

private slots:
    void rectangle_data();
    void rectangle();
    void focusFollowsTheSetting_data();
    void focusFollowsTheSetting();
    void hotKeys_data();
    void hotKeys();
    void wholeDesktop();
};

void TestGrab::rectangle_data()
{
    QTest::addColumn<TestDesktop::Options>("options");
    QTest::addColumn<Variables>("variables");
    QTest::addColumn<QRect>("patternArea");

    const QRect &area = s_patternArea;
    const QList<QStringList> two{{u"L"_s, u"800/250x1000/300+0+0"_s, u"screen"_s},
                                 {u"R"_s, u"800/250x1000/300+800+0"_s, u"none"_s}};
    const auto row = [](const char *name) -> QTestData & { return QTest::newRow(name); };
    using Options = TestDesktop::Options;
    row("compositing") << Options{.windowManager = s_compositing} << Variables{} << area;
    row("no compositor") << Options{.windowManager = s_plain} << Variables{} << area;
    row("openbox") << Options{.windowManager = s_openbox} << Variables{} << area;
    row("no window manager") << Options{.windowManager = {}} << Variables{} << area;
    row("two monitors, across both")
        << Options{.windowManager = s_openbox, .compositor = s_picom, .monitors = two}
        << Variables{} << QRect(503, 151, 701, 503);
    row("odd desktop, scale 1.5") << Options{.size = {1601, 1003}, .windowManager = s_compositing}
                                  << Variables{{u"QT_SCALE_FACTOR"_s, u"1.5"_s}} << area;
    row("scale 2, no compositor") << Options{.windowManager = s_openbox}
                                  << Variables{{u"QT_SCALE_FACTOR"_s, u"2"_s}} << area;
    row("144 dpi, no compositor") << Options{.windowManager = s_openbox, .xftDpi = "144"}
                                  << Variables{} << area;
    row("192 dpi, two monitors") << Options{.windowManager = s_plain,
                                            .monitors = two,
                                            .xftDpi = "192"}
                                 << Variables{} << QRect(503, 151, 701, 503);
}

void TestGrab::rectangle()
{
    QFETCH(TestDesktop::Options, options);
    QFETCH(Variables, variables);
    QFETCH(QRect, patternArea);
    TestDesktop desktop(options);
    QVERIFY(desktop.isReady());
    SnapWorkbench program(desktop);
    program.writeSettings(
        {{u"RunMinimized"_s, u"1"_s}, {u"AutoShow"_s, u"1"_s}, {u"ShowMagnification"_s, u"0"_s}});
    QVERIFY(program.startAndWait(variables));
    QVERIFY(desktop.startPattern(patternArea));
    const QImage expected = pattern(patternArea.size());
    const auto colourAt = [&](QPoint at) { return expected.pixel(at - patternArea.topLeft()); };

    const QRect whole(QPoint(), options.size);
    QVERIFY(program.openOverlay(whole));
    const QPoint from = patternArea.topLeft() + QPoint(127, 121);
    const QPoint to = from + QPoint(281, 207);
    const QPoint inside = from + QPoint(30, 30);
    const QPoint outside = from - QPoint(30, 30);
    QVERIFY(waitFor([&] { return isDimmed(desktop.pixel(outside), colourAt(outside)); }));
    const QPoint corner = to - QPoint(20, 20);
    QVERIFY(desktop.drag(from, to, [&] { return isLit(desktop.pixel(corner), colourAt(corner)); }));
    QVERIFY(isLit(desktop.pixel(inside), colourAt(inside)));
    QVERIFY(isDimmed(desktop.pixel(outside), colourAt(outside)));

    // The handle at the far corner, then one step with an arrow key.
    const QPoint further = to + QPoint(30, 24);
    const QPoint added = to + QPoint(12, -40);
    QVERIFY(
        desktop.drag(to, further, [&] { return isLit(desktop.pixel(added), colourAt(added)); }));
    desktop.key(XK_Right);
    const QPoint leftEdge = from + QPoint(0, 60);
    QVERIFY(waitFor([&] {
        return isDimmed(desktop.pixel(leftEdge - QPoint(1, 0)), colourAt(leftEdge - QPoint(1, 0)));
    }));
    desktop.key(XK_Return);
    QVERIFY(program.waitForTitle(u"untitled * - Snap Workbench"_s));
    QVERIFY(!program.hasOverlay(whole));

    const QImage saved = program.saveAs(desktop.home() + u"/grab.png"_s);
    const QRect marked(from + QPoint(1, 0), further + QPoint(1, 0) - QPoint(1, 1));
    QCOMPARE(saved.size(), marked.size());
    QCOMPARE(saved, expected.copy(marked.translated(-patternArea.topLeft())));
}

void TestGrab::focusFollowsTheSetting_data()
{
    QTest::addColumn<QStringList>("windowManager");
    QTest::addColumn<QString>("autoShow");
    QTest::addColumn<QString>("active");
    QTest::newRow("stays there: xfwm4") << s_compositing << u"0"_s << u"pattern"_s;
    QTest::newRow("stays there: openbox") << s_openbox << u"0"_s << u"pattern"_s;
    QTest::newRow("comes here: xfwm4")
        << s_compositing << u"1"_s << u"untitled * - Snap Workbench"_s;
    QTest::newRow("comes here: openbox") << s_openbox << u"1"_s << u"untitled * - Snap Workbench"_s;
}

void TestGrab::focusFollowsTheSetting()
{
    QFETCH(QStringList, windowManager);
    QFETCH(QString, autoShow);
    QFETCH(QString, active);
    TestDesktop desktop({.windowManager = windowManager});
    QVERIFY(desktop.isReady());
    SnapWorkbench program(desktop);
    program.writeSettings({{u"AutoShow"_s, autoShow}});
    QVERIFY(program.startAndWait());
    QProcess *other = desktop.startPattern(s_patternArea);
    QVERIFY(other);

    const QRect whole(0, 0, 1600, 1000);
    QVERIFY(program.openOverlay(whole));
    QVERIFY(markPattern(desktop));
    desktop.key(XK_Return);
    QVERIFY(program.waitForTitle(u"untitled * - Snap Workbench"_s));
    QVERIFY(waitFor([&] { return desktop.activeTitle() == active; }));

    // The keyboard follows: the other program hears a key only where it is the active one.
    other->readAll();
    desktop.key(XK_x);
    const auto heard = [&] { return other->readAll().contains("key 88"); };
    QCOMPARE(waitFor(heard, active == u"pattern" ? 20000 : 300), active == u"pattern");

    // An overlay that is given up leaves things as they were.
    const bool wasThere = desktop.activeTitle() == u"pattern";
    QVERIFY(program.openOverlay(whole));
    desktop.key(XK_Escape);
    QVERIFY(waitFor([&] { return !program.hasOverlay(whole); }));
    QVERIFY(waitFor([&] { return (desktop.activeTitle() == u"pattern") == wasThere; }));
}

void TestGrab::hotKeys_data()
{
    QTest::addColumn<QList<uint>>("locks");
    QTest::newRow("no lock") << QList<uint>{};
    QTest::newRow("Caps Lock") << QList<uint>{XK_Caps_Lock};
    QTest::newRow("Num Lock") << QList<uint>{XK_Num_Lock};
    QTest::newRow("both") << QList<uint>{XK_Caps_Lock, XK_Num_Lock};
}

void TestGrab::hotKeys()
{
    QFETCH(QList<uint>, locks);
    TestDesktop desktop({.windowManager = s_compositing});
    QVERIFY(desktop.isReady());
    SnapWorkbench program(desktop);
    program.writeSettings({{u"RunMinimized"_s, u"1"_s}});
    QVERIFY(program.startAndWait());
    QVERIFY(desktop.startPattern(s_patternArea));
    for (const uint lock : locks)
        desktop.key(lock);

    const QRect whole(0, 0, 1600, 1000);
    QVERIFY(program.openOverlay(whole));
    // Keys that would start a grab start nothing while one runs.
    desktop.key(XK_s, {XK_Control_L, XK_Alt_L});
    desktop.key(XK_r, {XK_Control_L, XK_Alt_L});
    QVERIFY(markPattern(desktop));
    desktop.key(XK_Escape);
    QVERIFY(waitFor([&] { return !program.hasOverlay(whole); }));
    QVERIFY(waitFor([&] { return desktop.activeTitle() == u"pattern"; }));
    QVERIFY(program.waitForTitle(u"Snap Workbench"_s));
    // And the next grab is the first.
    QVERIFY(program.openOverlay(whole));
    QVERIFY(markPattern(desktop));
    desktop.key(XK_Return);
    QVERIFY(program.waitForTitle(u"untitled * - Snap Workbench"_s));
}

void TestGrab::wholeDesktop()
{
    TestDesktop desktop({.windowManager = s_compositing});
    QVERIFY(desktop.isReady());
    SnapWorkbench program(desktop);
    program.writeSettings({{u"RunMinimized"_s, u"1"_s}, {u"AutoShow"_s, u"1"_s}});
    QVERIFY(program.startAndWait());
    QVERIFY(desktop.startPattern(s_patternArea));
    const QImage before = desktop.screenshot();
    desktop.key(XK_s, {XK_Control_L, XK_Alt_L});
    QVERIFY(program.waitForTitle(u"untitled * - Snap Workbench"_s));
    QVERIFY(waitFor([&] { return desktop.activeTitle() == u"untitled * - Snap Workbench"; }));
    QCOMPARE(program.saveAs(desktop.home() + u"/whole.png"_s), before);
}

QTEST_GUILESS_MAIN(TestGrab)
#include "test_grab.moc"
