// Ellipse, polygon and magnifier on real desktops.

#include "pattern.h"
#include "snapworkbench.h"

#include <QPainterPath>
#include <QTest>

#include <algorithm>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

using Variables = QMap<QString, QString>;
using Options = TestDesktop::Options;

const QStringList s_compositing{u"xfwm4"_s, u"--compositor=on"_s};
const QStringList s_openbox{u"openbox"_s};
// The compositor of xfwm4 shows nothing on monitors that the server was only told of.
const QStringList s_picom{u"picom"_s, u"--backend"_s, u"xrender"_s, u"--config"_s, u"/dev/null"_s};

const QList<QStringList> s_twoMonitors{{u"L"_s, u"800/250x1000/300+0+0"_s, u"screen"_s},
                                       {u"R"_s, u"800/250x1000/300+800+0"_s, u"none"_s}};
const QList<QStringList> s_leftOfPrimary{{u"L"_s, u"800/250x1000/300+0+0"_s, u"none"_s},
                                         {u"*R"_s, u"800/250x1000/300+800+0"_s, u"screen"_s}};

const QRect s_whole(0, 0, 1600, 1000);
const QRect s_patternArea(503, 151, 701, 503);

// The pattern's part at `box`, in global coordinates, transparent outside `shape`.
QImage cutPattern(const QRect &box, const QPainterPath &shape)
{
    QImage result = pattern(s_patternArea.size())
                        .copy(box.translated(-s_patternArea.topLeft()))
                        .convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < result.height(); ++y) {
        for (int x = 0; x < result.width(); ++x) {
            if (!shape.contains(QPointF(x, y)))
                result.setPixel(x, y, 0);
        }
    }
    return result;
}

// What the program shows without a frame: overlays, the magnifier, menus.
QList<QRect> unmanaged(TestDesktop &desktop)
{
    QList<QRect> result;
    for (const TestDesktop::Window &window : desktop.windows()) {
        // Window managers have such windows too, out of sight.
        if (window.viewable && window.overrideRedirect && window.area.intersects(s_whole) &&
            window.area.width() > 1)
            result.append(window.area);
    }
    return result;
}

QRect magnifier(TestDesktop &desktop, QSize size)
{
    for (const QRect &area : unmanaged(desktop)) {
        if (area.size() == size)
            return area;
    }
    return {};
}

}  // namespace

Q_DECLARE_METATYPE(TestDesktop::Options)

class TestShapes : public QObject
{
    Q_OBJECT

private slots:
    void savedPicture_data();
    void savedPicture();
    void magnifierFollows_data();
    void magnifierFollows();
    void escapeLeavesNothing_data();
    void escapeLeavesNothing();
    void fromTheMenus();
};

void TestShapes::savedPicture_data()
{
    QTest::addColumn<Options>("options");
    QTest::addColumn<Variables>("variables");
    QTest::addColumn<bool>("ellipse");
    const Variables scaled{{u"QT_SCALE_FACTOR"_s, u"1.5"_s}};
    for (const bool ellipse : {true, false}) {
        const auto row = [&](const char *name) -> QTestData & {
            return QTest::addRow("%s: %s", ellipse ? "ellipse" : "polygon", name);
        };
        row("compositing") << Options{.windowManager = s_compositing} << Variables{} << ellipse;
        row("scale 1.5, no compositor") << Options{.windowManager = s_openbox} << scaled << ellipse;
        row("two monitors, across both")
            << Options{.windowManager = s_openbox, .compositor = s_picom, .monitors = s_twoMonitors}
            << Variables{} << ellipse;
        row("a monitor left of the primary")
            << Options{.windowManager = s_openbox, .monitors = s_leftOfPrimary} << Variables{}
            << ellipse;
    }
}

void TestShapes::savedPicture()
{
    QFETCH(Options, options);
    QFETCH(Variables, variables);
    QFETCH(bool, ellipse);
    TestDesktop desktop(options);
    QVERIFY(desktop.isReady());
    SnapWorkbench program(desktop);
    program.writeSettings({{u"RunMinimized"_s, u"1"_s}, {u"AutoShow"_s, u"1"_s}});
    QVERIFY(program.startAndWait(variables));
    QVERIFY(desktop.startPattern(s_patternArea));
    QVERIFY(program.openOverlay(s_whole, ellipse ? XK_e : XK_a));

    QRect box(601, 253, 401, 301);
    QPainterPath shape;
    if (ellipse) {
        const QPoint centre = box.center();
        const QRgb before = desktop.pixel(centre);
        QVERIFY(desktop.drag(box.topLeft(), box.topLeft() + QPoint(401, 301),
                             [&] { return qRed(desktop.pixel(centre)) > qRed(before) + 100; }));
        shape.addEllipse(0, 0, 401, 301);
    } else {
        desktop.click(box.topLeft());
        // Command puts the next vertex level with the first, at the same distance.
        desktop.keyDown(XK_Control_L);
        desktop.click(box.topLeft() + QPoint(399, 40));
        desktop.keyUp(XK_Control_L);
        desktop.click(box.topLeft() + QPoint(401, 120));
        desktop.click(box.topLeft() + QPoint(200, 60));
        desktop.click(box.topLeft() + QPoint(50, 301));
        shape.addPolygon(QPolygonF({{0, 0}, {401, 0}, {401, 120}, {200, 60}, {50, 301}}));
    }
    desktop.key(XK_Return);
    QVERIFY(program.waitForTitle(u"untitled * - Snap Workbench"_s));
    QCOMPARE(unmanaged(desktop), QList<QRect>());

    const QString path = desktop.home() + u"/shape.png"_s;
    QVERIFY(!program.saveAs(path).isNull());
    QCOMPARE(QImage(path).convertToFormat(QImage::Format_ARGB32), cutPattern(box, shape));
}

void TestShapes::magnifierFollows_data()
{
    QTest::addColumn<Options>("options");
    QTest::addColumn<int>("scale");
    QTest::addColumn<QRect>("screen");
    const QRect left(0, 0, 800, 1000);
    const QRect right(800, 0, 800, 1000);
    QTest::newRow("compositing") << Options{.windowManager = s_compositing} << 1 << s_whole;
    QTest::newRow("scale 2, no compositor") << Options{.windowManager = s_openbox} << 2 << s_whole;
    QTest::newRow("the right one of two monitors")
        << Options{.windowManager = s_openbox, .compositor = s_picom, .monitors = s_twoMonitors}
        << 1 << right;
    QTest::newRow("left of the primary")
        << Options{.windowManager = s_openbox, .monitors = s_leftOfPrimary} << 1 << left;
}

void TestShapes::magnifierFollows()
{
    QFETCH(Options, options);
    QFETCH(int, scale);
    QFETCH(QRect, screen);
    TestDesktop desktop(options);
    QVERIFY(desktop.isReady());
    SnapWorkbench program(desktop);
    // So small a factor that the view reaches further than the distance that it keeps.
    const int multiple = 3;
    program.writeSettings({{u"RunMinimized"_s, u"1"_s}, {u"Magnification"_s, u"3"_s}});
    QVERIFY(program.startAndWait({{u"QT_SCALE_FACTOR"_s, QString::number(scale)}}));
    QVERIFY(desktop.startPattern(s_whole));
    const QPoint first = screen.topLeft() + QPoint(151, 207);
    desktop.movePointer(first);
    QVERIFY(program.openOverlay(s_whole));
    const QImage shown = pattern(s_whole.size());
    const QSize size = QSize(300, 314) * scale;

    // The magnifier is in that corner of the screen, and shows the pixels around the pointer.
    const auto shows = [&](QPoint pointer, Qt::Corner corner) {
        QRect place(QPoint(), size);
        if (corner == Qt::TopLeftCorner)
            place.moveTopLeft(screen.topLeft());
        else
            place.moveBottomRight(screen.bottomRight());
        const int block = (184 * scale / multiple - 1) / 2;  // the middle one, each way
        const QPoint centre = QPoint(block, block) * multiple + QPoint(1, 1);
        const QPoint origin = place.topLeft() + QPoint(4, 4) * scale + centre;
        return waitFor([&] {
            desktop.movePointer(pointer);
            const QList<QPoint> probes{{0, 0}, {7, -9}, {-10, 10}, {29, 29}};
            return magnifier(desktop, size) == place &&
                   std::all_of(probes.begin(), probes.end(), [&](QPoint probe) {
                       return desktop.pixel(origin + probe * multiple) ==
                              shown.pixel(pointer + probe);
                   });
        });
    };
    // In the opposite corner, and it stays there.
    const QPoint near = screen.bottomRight() - QPoint(size.width() + 22, size.height() + 22);
    QVERIFY(shows(first, Qt::BottomRightCorner));
    QVERIFY(shows(near, Qt::BottomRightCorner));
    // It flees, also from a pointer that is on it at once.
    QVERIFY(shows(screen.bottomRight() - QPoint(61, 73), Qt::TopLeftCorner));
    QVERIFY(shows(screen.topLeft() + QPoint(45, 45), Qt::BottomRightCorner));
    desktop.key(XK_Escape);
    QVERIFY(waitFor([&] { return unmanaged(desktop).isEmpty(); }));
}

void TestShapes::escapeLeavesNothing_data()
{
    QTest::addColumn<QStringList>("windowManager");
    QTest::addColumn<uint>("hotKey");
    QTest::newRow("ellipse, compositing") << s_compositing << uint(XK_e);
    QTest::newRow("polygon, compositing") << s_compositing << uint(XK_a);
    QTest::newRow("ellipse, no compositor") << s_openbox << uint(XK_e);
    QTest::newRow("polygon, no compositor") << s_openbox << uint(XK_a);
}

void TestShapes::escapeLeavesNothing()
{
    QFETCH(QStringList, windowManager);
    QFETCH(uint, hotKey);
    TestDesktop desktop({.windowManager = windowManager});
    QVERIFY(desktop.isReady());
    SnapWorkbench program(desktop);
    program.writeSettings({{u"RunMinimized"_s, u"1"_s}});
    QVERIFY(program.startAndWait());
    QVERIFY(desktop.startPattern(s_patternArea));
    const QPoint at = s_patternArea.center();
    const QList<std::function<void()>> states{
        [] {},
        [&] {  // in the middle of a drag
            desktop.movePointer(at);
            desktop.press();
            desktop.movePointer(at + QPoint(90, 60));
        },
        [&] {  // something marked
            desktop.click(at);
            desktop.drag(at, at + QPoint(90, 60), [] { return true; });
        },
        [&] {  // the menu open
            const qsizetype before = unmanaged(desktop).size();
            desktop.click(at + QPoint(20, 20), 3);
            QVERIFY(waitFor([&] { return unmanaged(desktop).size() > before; }));
            desktop.key(XK_Escape);
            QVERIFY(waitFor([&] { return unmanaged(desktop).size() == before; }));
        },
        [&] {  // keys on nothing
            for (const uint key : {XK_Left, XK_Down, XK_BackSpace, XK_Return})
                desktop.key(key, {XK_Alt_L});
        }};
    for (const auto &enter : states) {
        QVERIFY(program.openOverlay(s_whole, hotKey));
        QVERIFY(waitFor([&] { return unmanaged(desktop).size() == 2; }));  // with the magnifier
        enter();
        desktop.key(XK_Escape);
        QVERIFY(waitFor([&] { return unmanaged(desktop).isEmpty(); }));
        desktop.release();
        QVERIFY(waitFor([&] { return desktop.activeTitle() == u"pattern"; }));
    }
    // And the next grab works: a polygon is closed by a click near its first vertex.
    QVERIFY(program.openOverlay(s_whole, hotKey));
    const QPoint first = at - QPoint(100, 100);
    if (hotKey == XK_a) {
        for (const QPoint vertex : {first, at, at + QPoint(-80, 50)})
            desktop.click(vertex);
        const QPoint onLine = first + QPoint(50, 50);
        const QRgb plain = pattern(s_patternArea.size()).pixel(onLine - s_patternArea.topLeft());
        QVERIFY(waitFor([&] { return qRed(desktop.pixel(onLine)) > qRed(plain) * 0.6 + 20; }));
        const QRgb before = desktop.pixel(first - QPoint(0, 5));
        desktop.movePointer(first + QPoint(3, 3));
        // The circle tells that a click closes.
        QVERIFY(
            waitFor([&] { return qRed(desktop.pixel(first - QPoint(0, 5))) > qRed(before) + 20; }));
        desktop.press();
        desktop.release();
    } else {
        const QRgb before = desktop.pixel(at);
        desktop.drag(first, at + QPoint(60, 60),
                     [&] { return qRed(desktop.pixel(at)) > qRed(before) + 20; });
        desktop.key(XK_Return);
    }
    QVERIFY(program.waitForTitle(u"untitled * - Snap Workbench"_s));
}

// From the menu bar, and from the tray with the left button.
void TestShapes::fromTheMenus()
{
    TestDesktop desktop({.windowManager = s_openbox});
    QVERIFY(desktop.isReady());
    QVERIFY(desktop.start(u"trayer"_s,
                          {u"--edge"_s, u"top"_s, u"--align"_s, u"right"_s, u"--widthtype"_s,
                           u"request"_s, u"--height"_s, u"28"_s},
                          desktop.environment()));
    SnapWorkbench program(desktop);
    QVERIFY(program.startAndWait());
    // The tray's icon has no frame either.
    QVERIFY(waitFor([&] { return unmanaged(desktop).size() == 1; }));
    const QRect icon = unmanaged(desktop).first();
    QVERIFY(desktop.waitForFocus(program.mainWindow()));
    const QPoint centre = s_whole.center();
    const auto menuIsOpen = [&] { return unmanaged(desktop).size() == 2; };
    // A menu is out of the way and the overlay there, with its magnifier.
    const auto choose = [&](int item) {
        for (int i = 0; i < item; ++i)
            desktop.key(XK_Down);
        desktop.key(XK_Return);
        return waitFor(
            [&] { return program.hasOverlay(s_whole) && unmanaged(desktop).size() == 3; });
    };
    desktop.key(XK_c, {XK_Alt_L});
    QVERIFY(waitFor(menuIsOpen));
    QVERIFY(choose(1));
    const QRgb before = desktop.pixel(centre);
    QVERIFY(desktop.drag(centre - QPoint(150, 100), centre + QPoint(151, 101),
                         [&] { return desktop.pixel(centre) != before; }));
    desktop.key(XK_Return);
    QVERIFY(program.waitForTitle(u"untitled * - Snap Workbench"_s));
    const QString path = desktop.home() + u"/ellipse.png"_s;
    program.saveAs(path);
    const QImage ellipse(path);
    QCOMPARE(ellipse.size(), QSize(301, 201));
    QCOMPARE(qAlpha(ellipse.pixel(20, 20)), 0);
    QCOMPARE(qAlpha(ellipse.pixel(150, 2)), 255);

    desktop.click(icon.center());
    QVERIFY(waitFor(menuIsOpen));
    QVERIFY(choose(3));
    for (const QPoint vertex : {QPoint(0, -100), QPoint(100, 100), QPoint(-100, 100)})
        desktop.click(centre + vertex);
    desktop.key(XK_Return);
    QVERIFY(program.waitForTitle(u"untitled 1 * - Snap Workbench"_s));
}

QTEST_GUILESS_MAIN(TestShapes)
#include "test_shapes.moc"
