// What the main window looks like and how it is taken hold of: skins, corners, the pointer on the
// frame, its place on the screens, and what is there again at the next start.

#include "pattern.h"
#include "snapworkbench.h"

#include <QFile>
#include <QPainter>
#include <QTest>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

const QRect s_place(101, 83, 1000, 700);
const QRgb s_body = qRgb(35, 40, 45);

// Of the window around what stands in it; its corners lie within.
constexpr int s_rim = 5;
constexpr int s_leastClear = 4 * 5;

// In the window: free of widgets, and in the caption above its letters.
const QPoint s_bodyPoint(300, 1);
const QPoint s_captionPoint(500, 7);

const QMap<QString, QString> s_settings{{u"WindowLeft"_s, QString::number(s_place.x())},
                                        {u"WindowTop"_s, QString::number(s_place.y())},
                                        {u"WindowWidth"_s, QString::number(s_place.width())},
                                        {u"WindowHeight"_s, QString::number(s_place.height())}};

// The middle of all pixels of a colour; (-1, -1) where there is none.
QPoint find(const QImage &image, QRgb colour)
{
    QRect found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if ((image.pixel(x, y) | 0xff000000) == colour)
                found |= QRect(x, y, 1, 1);
        }
    }
    return found.isEmpty() ? QPoint(-1, -1) : found.center();
}

}  // namespace

class TestFace : public DesktopTest
{
    Q_OBJECT

private slots:
    void cleanup() { finish(); }

    // Round in both ways; only a compositor can mix an edge from the window and what is behind.
    void corners()
    {
        QVERIFY(begin({.desktop = {.windowManager = s_openbox}, .settings = s_settings}));
        QVERIFY(m_program->quit() && m_desktop->startPattern(s_screen));
        QVERIFY(m_program->startAndWait());
        QVERIFY(showsCorners(false));
        QProcess *compositor =
            m_desktop->start(s_picom.first(), s_picom.mid(1), m_desktop->environment());
        QVERIFY(compositor);
        QVERIFY(showsCorners(true));
        QVERIFY(m_program->quit() && m_program->startAndWait());
        QVERIFY(showsCorners(true));
        compositor->terminate();
        QVERIFY(showsCorners(false));
    }

    // Another skin needs no code: every place that has a picture takes it from the resource file.
    void swappedSkin()
    {
        const QStringList inWindow =
            u"Background_topleft Background_topright Background_bottomleft Background_bottomright "
            "PictureBackground_topleft PictureBackground_topright PictureBackground_bottomleft "
            "PictureBackground_bottomright ToolBackground_left ToolBackground_tile "
            "ToolBackground_right CommBackground_normal LineWidth_thin LineWidth_thick Sep_normal "
            "Icon_normal"_s.split(u' ');
        const QStringList later =
            u"DrawRect_normal DrawRect_over DrawRect_down DrawRect_Sel_over TabClose_normal "
            "Close_disabled CaptureRegion_width CaptureRegion_height"_s.split(u' ');
        const QTemporaryDir folder;
        QMap<QString, QRgb> colours;
        Values pictures;
        for (const QString &name : inWindow + later) {
            const int number = int(colours.size());
            colours[name] = qRgb(255 - number, 7 * number, 255 - 5 * number);
            const QString path = folder.filePath(name + u".png"_s);
            pictures[u"Btn"_s + name] = path;
            // Some places take the edge's colour for the ground, and leave it out.
            QImage picture(56, 56, QImage::Format_RGB32);
            picture.fill(Qt::black);
            QPainter(&picture).fillRect(2, 2, 52, 52, QColor(colours[name]));
            QVERIFY(picture.save(path));
        }
        QVERIFY(begin(
            {.desktop = {.windowManager = s_plain}, .settings = s_settings, .pictures = pictures}));
        QProcess *tray = m_desktop->start(
            u"trayer"_s, {u"--edge"_s, u"top"_s, u"--height"_s, u"24"_s}, m_desktop->environment());
        QVERIFY(tray);
        QPoint at;
        const auto shows = [&](const QString &name) {
            return waitFor([&] {
                at = find(m_desktop->screenshot(), colours[name]);
                return at.x() >= 0;
            });
        };
        for (const QString &name : inWindow)
            QVERIFY2(shows(name), qPrintable(name));
        tray->terminate();
        QVERIFY(shows(u"DrawRect_normal"_s));
        m_desktop->movePointer(at);
        QVERIFY(shows(u"DrawRect_over"_s));
        m_desktop->press();
        QVERIFY(shows(u"DrawRect_down"_s));
        m_desktop->release();
        QVERIFY(shows(u"DrawRect_Sel_over"_s));
        hotKey(XK_s);
        QVERIFY(shows(u"TabClose_normal"_s));
        // The window controls tell when another program is active.
        QVERIFY(m_desktop->startPattern({10, 800, 300, 150}));
        QVERIFY(shows(u"Close_disabled"_s));
        QVERIFY(m_program->openOverlay(s_screen));
        m_desktop->drag({1200, 850}, {1500, 950}, [] { return true; });
        for (const QString &name : later.last(2))
            QVERIFY2(shows(name), qPrintable(name));
    }

    void frameByHand()
    {
        QVERIFY(begin({.desktop = {.windowManager = s_plain}, .settings = s_settings}));
        QVERIFY(stands(s_place));
        QRect area = s_place.translated(137, 64);
        const auto arrived = [&] { return m_program->mainWindow().area == area; };
        const QPoint caption = s_place.topLeft() + s_captionPoint;
        QVERIFY(m_desktop->drag(caption, caption + QPoint(137, 64), arrived));
        const QPoint grip = area.bottomRight() - QPoint(5, 5);
        area.adjust(0, 0, 60, 45);
        QVERIFY(m_desktop->drag(grip, grip + QPoint(60, 45), arrived));
        // No smaller than all texts need.
        const QPoint now = area.bottomRight() - QPoint(5, 5);
        area.setSize({950, 650});
        QVERIFY(m_desktop->drag(now, now - QPoint(400, 300), arrived));
        const QRect normal = area;
        m_desktop->key(XK_F11);
        area = s_screen;
        QVERIFY(waitFor(arrived));
        m_desktop->key(XK_F11);
        area = normal;
        QVERIFY(waitFor(arrived));
    }

    void monitorUnplugged()
    {
        QVERIFY(
            begin({.desktop = {.size = {2400, 1000},
                               .windowManager = s_openbox,
                               .monitors = {{u"L"_s, u"1200/350x1000/300+0+0"_s, u"screen"_s},
                                            {u"R"_s, u"1200/350x1000/300+1200+0"_s, u"none"_s}}}}));
        QRect area(1333, 77, 950, 650);
        m_desktop->placeWindow(m_program->mainWindow(), area);
        QVERIFY(stands(area));
        QVERIFY(m_desktop->run(u"xrandr"_s, {u"--delmonitor"_s, u"R"_s}));
        area.moveLeft(250);
        QVERIFY(stands(area));
        // And then the last one has become too small for it.
        QVERIFY(m_desktop->run(u"xrandr"_s, {u"--delmonitor"_s, u"L"_s}));
        QVERIFY(m_desktop->run(u"xrandr"_s,
                               {u"--setmonitor"_s, u"N"_s, u"900/250x560/150+0+0"_s, u"screen"_s}));
        QVERIFY(stands({0, 0, 900, 560}));
    }

    // No part of the window lies beyond the screen, and it can be made to fill it, and be put back.
    void smallScreens()
    {
        const auto check = [this](const QSize &screen, const QString &scale, const QSize &window) {
            QVERIFY(begin({.desktop = {.size = screen, .windowManager = s_plain},
                           .settings = {{u"WindowLeft"_s, u"4000"_s}, {u"WindowTop"_s, u"3000"_s}},
                           .variables = {{u"QT_SCALE_FACTOR"_s, scale}}}));
            const QPoint corner(screen.width() - window.width(), 0);
            const auto covers = [&](const QRect &area) {
                return waitFor([&] {
                    const QRect now = m_program->mainWindow().area;
                    // A logical pixel may be more than one.
                    return (now.topLeft() - area.topLeft()).manhattanLength() <= 2 &&
                           now.size() == area.size();
                });
            };
            QVERIFY(covers({corner, window}));
            // On a busy machine the window manager may not give it the focus by itself.
            m_desktop->click(corner + QPoint(window.width() / 2, s_captionPoint.y()));
            QVERIFY(m_desktop->waitForFocus(m_program->mainWindow()));
            m_desktop->key(XK_F11);
            QVERIFY(covers({QPoint(), screen}));
            m_desktop->key(XK_F11);
            QVERIFY(covers({corner, window}));
        };
        check({1366, 768}, u"1.25"_s, {1188, 768});
        check({1600, 1000}, u"1.6"_s, {1520, 1000});
        // Smaller than all texts need.
        check({1600, 1000}, u"2"_s, {1600, 1000});
    }

    void thereAgain()
    {
        QVERIFY(begin({.desktop = {.windowManager = {}}, .settings = {{u"FirstRun"_s, u"1"_s}}}));
        const auto stands = [this](const QRect &area) {
            return waitFor([&] { return m_program->mainWindow().area == area; });
        };
        QVERIFY(waitFor([&] { return m_program->mainWindow().viewable; }));
        const QRect area(33, 44, 1011, 707);
        m_desktop->placeWindow(m_program->mainWindow(), area);
        QVERIFY(stands(area));
        QVERIFY(m_program->quit());
        QCOMPARE(m_program->setting(u"WindowLeft"_s), u"33"_s);
        QVERIFY(QFile::exists(m_desktop->home() + u"/config/autostart/snapworkbench.desktop"_s));
        // A window as large as the screen comes back so, and the size before is remembered. A start
        // that finds its settings cut short ends, and the next one has those of the backup.
        QVERIFY(QFile::resize(m_program->resourceFile(), 2000));
        QProcess *first = m_program->start();
        QVERIFY(waitFor([&] { return first->state() == QProcess::NotRunning; }));
        QCOMPARE(first->exitStatus(), QProcess::CrashExit);
        QVERIFY(m_program->startAndWait());
        QVERIFY(stands(area));
        m_desktop->placeWindow(m_program->mainWindow(), s_screen);
        QVERIFY(stands(s_screen));
        QVERIFY(m_program->quit());
        QCOMPARE(m_program->setting(u"WindowWidth"_s), u"1011"_s);
        QVERIFY(m_program->startAndWait());
        QVERIFY(stands(s_screen));
    }

private:
    /// Shown at `area`, painted.
    bool stands(const QRect &area)
    {
        return waitFor([&] {
            const TestDesktop::Window window = m_program->mainWindow();
            return window.viewable && window.area == area &&
                   m_desktop->pixel(area.topLeft() + s_bodyPoint) == s_body;
        });
    }
    bool showsCorners(bool soft)
    {
        const QImage behind = pattern(s_screen.size());
        return stands(s_place) && waitFor([&] {
                   const QImage screen = m_desktop->screenshot();
                   int clear = 0;  // pixels that show what lies behind
                   int mixed = 0;
                   for (const QPoint corner :
                        {s_place.topLeft(), s_place.topRight() - QPoint(s_rim - 1, 0),
                         s_place.bottomLeft() - QPoint(0, s_rim - 1),
                         s_place.bottomRight() - QPoint(s_rim - 1, s_rim - 1)}) {
                       for (int i = 0; i < s_rim * s_rim; ++i) {
                           const QPoint at = corner + QPoint(i % s_rim, i / s_rim);
                           const QRgb pixel = screen.pixel(at) | 0xff000000;
                           clear += pixel == behind.pixel(at);
                           mixed += pixel != behind.pixel(at) && qGray(pixel) > qGray(s_body) + 12;
                       }
                   }
                   return clear >= s_leastClear && (mixed > 0) == soft;
               });
    }
};

QTEST_GUILESS_MAIN(TestFace)
#include "test_face.moc"
