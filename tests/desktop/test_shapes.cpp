// Ellipse, polygon and magnifier on real desktops.

#include "pattern.h"
#include "snapworkbench.h"

#include <QPainterPath>
#include <QTest>

#include <algorithm>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

const QRect s_patternArea(503, 151, 701, 503);
const QList<QStringList> s_leftOfPrimary{{u"L"_s, u"800/250x1000/300+0+0"_s, u"none"_s},
                                         {u"*R"_s, u"800/250x1000/300+800+0"_s, u"screen"_s}};

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

}  // namespace

class TestShapes : public DesktopTest
{
    Q_OBJECT

private slots:
    void cleanup() { finish(); }

    void savedPicture()
    {
        using Options = TestDesktop::Options;
        const auto check = [this](const char *row, const Options &options, const Values &variables,
                                  bool ellipse) {
            QVERIFY(begin({.row = row,
                           .desktop = options,
                           .settings = {{u"RunMinimized"_s, u"1"_s}, {u"AutoShow"_s, u"1"_s}},
                           .variables = variables}));
            QVERIFY(m_desktop->startPattern(s_patternArea));
            QVERIFY(m_program->openOverlay(s_screen, ellipse ? XK_e : XK_a));
            const QRect box(601, 253, 401, 301);
            const QPoint corner = box.topLeft();
            QPainterPath shape;
            if (ellipse) {
                const QRgb before = m_desktop->pixel(box.center());
                QVERIFY(m_desktop->drag(corner, corner + QPoint(401, 301), [&] {
                    return qRed(m_desktop->pixel(box.center())) > qRed(before) + 100;
                }));
                shape.addEllipse(0, 0, 401, 301);
            } else {
                m_desktop->click(corner);
                // Command puts the next vertex level with the first, at the same distance.
                m_desktop->keyDown(XK_Control_L);
                m_desktop->click(corner + QPoint(399, 40));
                m_desktop->keyUp(XK_Control_L);
                for (const QPoint vertex : {QPoint(401, 120), QPoint(200, 60), QPoint(50, 301)})
                    m_desktop->click(corner + vertex);
                shape.addPolygon(QPolygonF({{0, 0}, {401, 0}, {401, 120}, {200, 60}, {50, 301}}));
            }
            m_desktop->key(XK_Return);
            QVERIFY(isTitled(u"untitled *"_s) && isClear());
            const QString path = m_desktop->home() + u"/shape.png"_s;
            QVERIFY(!m_program->saveAs(path).isNull());
            QVERIFY(QImage(path).convertToFormat(QImage::Format_ARGB32) == cutPattern(box, shape));
        };
        const Values scaled{{u"QT_SCALE_FACTOR"_s, u"1.5"_s}};
        const Options acrossBoth{
            .windowManager = s_openbox, .compositor = s_picom, .monitors = s_twoMonitors};
        const Options besides{.windowManager = s_openbox, .monitors = s_leftOfPrimary};
        check("ellipse, scale 1.5", {.windowManager = s_openbox}, scaled, true);
        check("ellipse, across both monitors", acrossBoth, {}, true);
        check("polygon, scale 1.5, compositing", {}, scaled, false);
        check("polygon, a monitor left of the primary", besides, {}, false);
    }

    void magnifierFollows()
    {
        // So small a factor that the view reaches further than the distance that it keeps.
        const int multiple = 3;
        const int scale = 2;
        QVERIFY(begin({.desktop = {.windowManager = s_openbox,
                                   .compositor = s_picom,
                                   .monitors = s_twoMonitors},
                       .settings = {{u"RunMinimized"_s, u"1"_s}, {u"Magnification"_s, u"3"_s}},
                       .variables = {{u"QT_SCALE_FACTOR"_s, QString::number(scale)}}}));
        QVERIFY(m_desktop->startPattern(s_screen));
        const QRect right(800, 0, 800, 1000);
        const QPoint first = right.topLeft() + QPoint(151, 207);
        m_desktop->movePointer(first);
        QVERIFY(m_program->openOverlay(s_screen));
        const QImage shown = pattern(s_screen.size());
        const QSize size = QSize(300, 314) * scale;

        // The magnifier is there, and shows the pixels around the pointer.
        const auto shows = [&](QPoint pointer, QPoint place) {
            const int block = (184 * scale / multiple - 1) / 2;  // the middle one, each way
            const QPoint centre = QPoint(block, block) * multiple + QPoint(1, 1);
            const QPoint origin = place + QPoint(4, 4) * scale + centre;
            return waitFor([&] {
                m_desktop->movePointer(pointer);
                const QList<QPoint> probes{{0, 0}, {7, -9}, {-10, 10}, {29, 29}};
                return unmanaged().contains(QRect(place, size)) &&
                       std::all_of(probes.begin(), probes.end(), [&](QPoint probe) {
                           return m_desktop->pixel(origin + probe * multiple) ==
                                  shown.pixel(pointer + probe);
                       });
            });
        };
        // In the opposite corner; and it flees, also from a pointer that is on it at once.
        const QPoint far = right.bottomRight() - QPoint(size.width() - 1, size.height() - 1);
        QVERIFY(shows(first, far));
        QVERIFY(shows(right.bottomRight() - QPoint(61, 73), right.topLeft()));
        QVERIFY(shows(right.topLeft() + QPoint(45, 45), far));
    }

    void escapeLeavesNothing()
    {
        for (const xcb_keysym_t key : {XK_e, XK_a}) {
            QVERIFY(
                begin({.desktop = key == XK_e ? TestDesktop::Options{}
                                              : TestDesktop::Options{.windowManager = s_openbox},
                       .settings = {{u"RunMinimized"_s, u"1"_s}}}));
            QVERIFY(m_desktop->startPattern(s_patternArea));
            const QPoint at = s_patternArea.center();
            const auto isOpen = [&] {
                // With the magnifier.
                return m_program->openOverlay(s_screen, key) &&
                       waitFor([&] { return unmanaged().size() == 2; });
            };
            const QList<std::function<void()>> states{
                [&] {  // in the middle of a drag
                    m_desktop->movePointer(at);
                    m_desktop->press();
                    m_desktop->movePointer(at + QPoint(90, 60));
                },
                [&] {  // the menu was open, over something marked
                    m_desktop->click(at);
                    m_desktop->drag(at, at + QPoint(90, 60), [] { return true; });
                    m_desktop->click(at + QPoint(20, 20), 3);
                    QVERIFY(waitFor([&] { return unmanaged().size() > 2; }));
                    m_desktop->key(XK_Escape);
                    QVERIFY(waitFor([&] { return unmanaged().size() == 2; }));
                }};
            for (const auto &enter : states) {
                QVERIFY(isOpen());
                enter();
                m_desktop->key(XK_Escape);
                QVERIFY(waitFor([&] { return isClear(); }));
                m_desktop->release();
                QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"pattern"; }));
            }
            QVERIFY(isOpen());
        }
        // And the next grab works: a polygon is closed by a click near its first vertex.
        const QPoint at = s_patternArea.center();
        const QPoint first = at - QPoint(100, 100);
        for (const QPoint vertex : {first, at, at + QPoint(-80, 50)})
            m_desktop->click(vertex);
        const QPoint onLine = first + QPoint(50, 50);
        const QRgb plain = pattern(s_patternArea.size()).pixel(onLine - s_patternArea.topLeft());
        QVERIFY(waitFor([&] { return qRed(m_desktop->pixel(onLine)) > qRed(plain) * 0.6 + 20; }));
        const QPoint circle = first - QPoint(0, 5);
        const QRgb before = m_desktop->pixel(circle);
        m_desktop->movePointer(first + QPoint(3, 3));
        // The circle tells that a click closes.
        QVERIFY(waitFor([&] { return qRed(m_desktop->pixel(circle)) > qRed(before) + 20; }));
        m_desktop->press();
        m_desktop->release();
        QVERIFY(isTitled(u"untitled *"_s));
    }
};

QTEST_GUILESS_MAIN(TestShapes)
#include "test_shapes.moc"
