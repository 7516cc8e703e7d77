// What the main window looks like and how it is taken hold of: skins, corners, the pointer on the
// frame, and the preferences from one start to the next.

#include "pattern.h"
#include "snapworkbench.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QTest>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

using Pictures = QMap<QString, QString>;

const QStringList s_compositing{u"xfwm4"_s, u"--compositor=on"_s};
const QStringList s_plain{u"xfwm4"_s, u"--compositor=off"_s};
const QStringList s_openbox{u"openbox"_s};

const QRect s_place(101, 83, 1000, 700);
const QRgb s_body = qRgb(35, 40, 45);

// Of the window around what stands in it; its corners lie within.
constexpr int s_rim = 5;
constexpr int s_leastClear = 4 * 5;

// In the window: free of widgets, in the caption above its letters, and in the first button.
const QPoint s_bodyPoint(300, 1);
const QPoint s_captionPoint(500, 7);
const QPoint s_captureButton(37, 68);

Pictures settings()
{
    return {{u"WindowLeft"_s, QString::number(s_place.x())},
            {u"WindowTop"_s, QString::number(s_place.y())},
            {u"WindowWidth"_s, QString::number(s_place.width())},
            {u"WindowHeight"_s, QString::number(s_place.height())}};
}

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

class TestFace : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void corners_data();
    void corners();
    void compositorComesAndGoes();
    void swappedSkin();
    void swappedPictures();
    void damagedSkin();
    void frameByHand();
    void outOfReach();
    void monitorUnplugged();
    void smallScreens_data();
    void smallScreens();
    void preferencesComeBack();

private:
    bool begin(const QStringList &windowManager, const Pictures &pictures = {});
    /// Shown at `area`, painted.
    bool stands(const QRect &area);
    struct Corners {
        int clear = 0;  ///< pixels that show what lies behind
        int soft = 0;   ///< mixed from both
    };
    Corners cornersShown();
    /// The path of a new picture of one colour. The frame is for places that take the edge's colour
    /// for the ground, and leave it out.
    QString solid(const QString &name, QRgb colour, int frame = 0);
    QPoint global(QPoint inWindow) const { return s_place.topLeft() + inWindow; }

    std::unique_ptr<TestDesktop> m_desktop;
    std::unique_ptr<SnapWorkbench> m_program;
};

void TestFace::cleanup()
{
    m_program.reset();
    m_desktop.reset();
}

// Starts with the shipped skin but for these pictures: by their shipped path, absolute ones.
bool TestFace::begin(const QStringList &windowManager, const Pictures &pictures)
{
    if (!m_desktop)
        m_desktop =
            std::make_unique<TestDesktop>(TestDesktop::Options{.windowManager = windowManager});
    if (!m_desktop->isReady() || !m_desktop->startPattern({0, 0, 1600, 1000}))
        return false;
    m_program = std::make_unique<SnapWorkbench>(*m_desktop);
    m_program->writeSettings(settings());
    QFile file(m_program->resourceFile());
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QString text = QString::fromUtf8(file.readAll());
    file.close();
    const QDir programFolder(QFileInfo(SnapWorkbench::program()).path());
    for (auto it = pictures.cbegin(); it != pictures.cend(); ++it)
        text.replace(u"\"skin/%1.png\""_s.arg(it.key()),
                     u"\"%1\""_s.arg(programFolder.relativeFilePath(it.value())));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(text.toUtf8());
    file.close();
    return m_program->startAndWait();
}

bool TestFace::stands(const QRect &area)
{
    return waitFor([&] {
        const TestDesktop::Window window = m_program->mainWindow();
        return window.viewable && window.area == area &&
               m_desktop->pixel(area.topLeft() + s_bodyPoint) == s_body;
    });
}

TestFace::Corners TestFace::cornersShown()
{
    const QImage behind = pattern({1600, 1000});
    const QImage screen = m_desktop->screenshot();
    Corners shown;
    for (const QPoint corner : {s_place.topLeft(), s_place.topRight() - QPoint(s_rim - 1, 0),
                                s_place.bottomLeft() - QPoint(0, s_rim - 1),
                                s_place.bottomRight() - QPoint(s_rim - 1, s_rim - 1)}) {
        for (int i = 0; i < s_rim * s_rim; ++i) {
            const QPoint at = corner + QPoint(i % s_rim, i / s_rim);
            const QRgb pixel = screen.pixel(at) | 0xff000000;
            if (pixel == behind.pixel(at))
                ++shown.clear;
            else if (qGray(pixel) > qGray(s_body) + 12)
                ++shown.soft;
        }
    }
    return shown;
}

QString TestFace::solid(const QString &name, QRgb colour, int frame)
{
    const QString path = m_desktop->home() + u'/' + name + u".png"_s;
    QImage image(56, 56, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter(&image).fillRect(image.rect().adjusted(frame, frame, -frame, -frame), QColor(colour));
    return image.save(path) ? path : QString();
}

void TestFace::corners_data()
{
    QTest::addColumn<QStringList>("windowManager");
    QTest::newRow("compositing") << s_compositing;
    QTest::newRow("no compositor") << s_plain;
    QTest::newRow("openbox") << s_openbox;
}

void TestFace::corners()
{
    QFETCH(QStringList, windowManager);
    QVERIFY(begin(windowManager));
    QVERIFY(stands(s_place));
    // Round in both ways; only a compositor can mix an edge from the window and what is behind.
    const Corners shown = cornersShown();
    QVERIFY(shown.clear >= s_leastClear);
    QCOMPARE(shown.soft > 0, windowManager == s_compositing);
}

void TestFace::compositorComesAndGoes()
{
    QVERIFY(begin(s_openbox));
    QVERIFY(stands(s_place));
    const auto softened = [this](bool soft) {
        return waitFor([&] {
            const Corners shown = cornersShown();
            return shown.clear >= s_leastClear && (shown.soft > 0) == soft;
        });
    };
    QVERIFY(softened(false));
    for (int round = 0; round < 2; ++round) {
        QProcess *compositor = m_desktop->start(
            u"picom"_s, {u"--backend"_s, u"xrender"_s, u"--config"_s, u"/dev/null"_s},
            m_desktop->environment());
        QVERIFY(compositor);
        QVERIFY(softened(true));
        compositor->terminate();
        QVERIFY(softened(false));
    }
}

// Another skin needs no code: every place that has a picture takes it from the resource file.
void TestFace::swappedSkin()
{
    m_desktop = std::make_unique<TestDesktop>(TestDesktop::Options{.windowManager = s_plain});
    const QRgb normal = qRgb(250, 3, 7);
    const QRgb over = qRgb(5, 250, 9);
    const QRgb down = qRgb(11, 13, 250);
    const QRgb chosen = qRgb(250, 240, 17);
    const QRgb inactive = qRgb(17, 240, 250);
    const QRgb tile = qRgb(240, 19, 230);
    QVERIFY(begin({}, {{u"BtnDrawRect_normal"_s, solid(u"normal"_s, normal)},
                       {u"BtnDrawRect_over"_s, solid(u"over"_s, over)},
                       {u"BtnDrawRect_down"_s, solid(u"down"_s, down)},
                       {u"BtnDrawRect_Sel_over"_s, solid(u"chosen"_s, chosen)},
                       {u"BtnClose_disabled"_s, solid(u"inactive"_s, inactive)},
                       {u"BtnToolBackground_tile"_s, solid(u"tile"_s, tile)}}));
    QVERIFY(stands(s_place));
    QPoint button;
    QVERIFY(waitFor([&] {
        const QImage screen = m_desktop->screenshot();
        button = find(screen, normal);
        return button.x() > 0 && find(screen, tile).x() > 0;
    }));
    m_desktop->movePointer(button);
    QVERIFY(waitFor([&] { return m_desktop->pixel(button) == over; }));
    m_desktop->press();
    QVERIFY(waitFor([&] { return m_desktop->pixel(button) == down; }));
    m_desktop->release();
    QVERIFY(waitFor([&] { return m_desktop->pixel(button) == chosen; }));
    // The window controls tell when another program is active.
    QVERIFY(m_desktop->startPattern({10, 800, 300, 150}));
    QVERIFY(waitFor([&] { return find(m_desktop->screenshot(), inactive).x() > 0; }));
}

// The same for what is no button; the whole of it at once.
void TestFace::swappedPictures()
{
    const QStringList inWindow{u"BtnBackground_topleft"_s,
                               u"BtnBackground_topright"_s,
                               u"BtnBackground_bottomleft"_s,
                               u"BtnBackground_bottomright"_s,
                               u"BtnPictureBackground_topleft"_s,
                               u"BtnPictureBackground_topright"_s,
                               u"BtnPictureBackground_bottomleft"_s,
                               u"BtnPictureBackground_bottomright"_s,
                               u"BtnToolBackground_left"_s,
                               u"BtnToolBackground_right"_s,
                               u"BtnCommBackground_normal"_s,
                               u"BtnLineWidth_thin"_s,
                               u"BtnLineWidth_thick"_s,
                               u"BtnSep_normal"_s,
                               u"BtnTabClose_normal"_s,
                               u"BtnIcon_normal"_s};
    const QStringList inOverlay{u"BtnCaptureRegion_width"_s, u"BtnCaptureRegion_height"_s};
    m_desktop = std::make_unique<TestDesktop>(TestDesktop::Options{.windowManager = s_plain});
    QMap<QString, QRgb> colours;
    Pictures pictures;
    for (const QString &name : inWindow + inOverlay) {
        const int number = int(colours.size());
        colours[name] = qRgb(255 - number, 7 * number, 255 - 5 * number);
        pictures[name] = solid(name, colours[name], 2);
    }
    QVERIFY(begin({}, pictures));
    QProcess *tray = m_desktop->start(u"trayer"_s, {u"--edge"_s, u"top"_s, u"--height"_s, u"24"_s},
                                      m_desktop->environment());
    QVERIFY(tray);
    QVERIFY(waitFor([&] { return m_program->mainWindow().area == s_place; }));
    const auto shows = [&](const QString &name) {
        return waitFor([&] { return find(m_desktop->screenshot(), colours[name]).x() >= 0; }, 5000);
    };
    // Before a grab opens: its picture covers some of them.
    for (const QString &name : inWindow.mid(0, inWindow.indexOf(u"BtnTabClose_normal"_s)))
        QVERIFY2(shows(name), qPrintable(name));
    m_desktop->key(XK_s, {XK_Control_L, XK_Alt_L});
    QVERIFY(m_program->waitForTitle(u"untitled * - Snap Workbench"_s));
    for (const auto &name : {u"BtnTabClose_normal"_s, u"BtnIcon_normal"_s})
        QVERIFY2(shows(name), qPrintable(name));
    tray->terminate();
    QVERIFY(m_program->openOverlay({0, 0, 1600, 1000}));
    m_desktop->drag({1200, 850}, {1500, 950}, [] { return true; });
    for (const QString &name : inOverlay)
        QVERIFY2(shows(name), qPrintable(name));
    m_desktop->key(XK_Escape);
}

// A skin that can't be read leaves a window with commands that are seen and do what they say.
void TestFace::damagedSkin()
{
    m_desktop = std::make_unique<TestDesktop>(TestDesktop::Options{.windowManager = s_plain});
    const QString text = SnapWorkbench::shippedFile();
    const QString missing = m_desktop->home() + u"/missing.png"_s;
    const QString folder = m_desktop->home();
    QVERIFY(begin({}, {{u"BtnFrameRect_normal"_s, text},
                       {u"BtnFrameRect_over"_s, folder},
                       {u"BtnFrameRect_down"_s, missing},
                       {u"BtnClose_normal"_s, folder},
                       {u"BtnTabClose_normal"_s, folder},
                       {u"BtnIcon_normal"_s, folder},
                       {u"BtnBackground_topleft"_s, text},
                       {u"BtnToolBackground_tile"_s, folder},
                       {u"BtnPictureBackground_topleft"_s, missing}}));
    const QRgb frame = qRgb(120, 134, 146);
    QVERIFY(waitFor([&] {
        const QRect around(global(s_captureButton) - QPoint(28, 28), QSize(56, 56));
        return find(m_desktop->screenshot().copy(around), frame).x() > 0;
    }));
    // Bright letters keep their ground, though nothing paints the body.
    QCOMPARE(m_desktop->pixel(global(s_captionPoint)) | 0xff000000, s_body);
    m_desktop->click(global(s_captureButton));
    QVERIFY(waitFor([&] { return m_program->hasOverlay({0, 0, 1600, 1000}); }));
    m_desktop->key(XK_Escape);
    QVERIFY(waitFor([&] { return !m_program->hasOverlay({0, 0, 1600, 1000}); }));
    QVERIFY(m_program->quit());
}

void TestFace::frameByHand()
{
    QVERIFY(begin(s_plain));
    QVERIFY(stands(s_place));
    QRect area = s_place.translated(137, 64);
    const auto arrived = [&] { return m_program->mainWindow().area == area; };
    QVERIFY(
        m_desktop->drag(global(s_captionPoint), global(s_captionPoint) + QPoint(137, 64), arrived));
    const QPoint grip = area.bottomRight() - QPoint(5, 5);
    area.adjust(0, 0, 60, 45);
    QVERIFY(m_desktop->drag(grip, grip + QPoint(60, 45), arrived));
    // No smaller than all texts need.
    const QPoint now = area.bottomRight() - QPoint(5, 5);
    area.setSize({950, 650});
    QVERIFY(m_desktop->drag(now, now - QPoint(400, 300), arrived));
    const QRect normal = area;
    m_desktop->key(XK_F11);
    area = QRect(0, 0, 1600, 1000);
    QVERIFY(waitFor(arrived));
    m_desktop->key(XK_F11);
    area = normal;
    QVERIFY(waitFor(arrived));
}

// The monitor that the window stood on is not there any more.
void TestFace::outOfReach()
{
    QVERIFY(begin(s_plain));
    QVERIFY(m_program->quit());
    m_program->writeSettings({{u"WindowLeft"_s, u"2200"_s}, {u"WindowTop"_s, u"-900"_s}});
    QVERIFY(m_program->startAndWait());
    QVERIFY(waitFor([&] { return m_program->mainWindow().area == QRect(650, 0, 950, 650); }));
}

void TestFace::monitorUnplugged()
{
    m_desktop = std::make_unique<TestDesktop>(
        TestDesktop::Options{.size = {2400, 1000},
                             .windowManager = s_openbox,
                             .monitors = {{u"L"_s, u"1200/350x1000/300+0+0"_s, u"screen"_s},
                                          {u"R"_s, u"1200/350x1000/300+1200+0"_s, u"none"_s}}});
    QVERIFY(begin({}));
    QRect area(1333, 77, 950, 650);
    m_desktop->placeWindow(m_program->mainWindow(), area);
    QVERIFY(stands(area));
    m_desktop->start(u"xrandr"_s, {u"--delmonitor"_s, u"R"_s}, m_desktop->environment());
    area.moveLeft(250);
    QVERIFY(stands(area));
    // And then the last one has become too small for it.
    for (const QStringList &change :
         {QStringList{u"--delmonitor"_s, u"L"_s},
          {u"--setmonitor"_s, u"N"_s, u"900/250x560/150+0+0"_s, u"screen"_s}})
        m_desktop->start(u"xrandr"_s, change, m_desktop->environment())->waitForFinished();
    QVERIFY(stands({0, 0, 900, 560}));
}

void TestFace::smallScreens_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<QString>("scale");
    QTest::addColumn<QSize>("window");
    QTest::newRow("1.25") << QSize(1366, 768) << u"1.25"_s << QSize(1188, 768);
    QTest::newRow("1.6") << QSize(1600, 1000) << u"1.6"_s << QSize(1520, 1000);
    QTest::newRow("2") << QSize(1920, 1080) << u"2"_s << QSize(1900, 1080);
    QTest::newRow("2, smaller than all texts need")
        << QSize(1600, 1000) << u"2"_s << QSize(1600, 1000);
}

// No part of the window lies beyond the screen, and it can be made to fill it, and be put back.
void TestFace::smallScreens()
{
    QFETCH(const QSize, screen);
    QFETCH(const QString, scale);
    QFETCH(const QSize, window);
    m_desktop = std::make_unique<TestDesktop>(
        TestDesktop::Options{.size = screen, .windowManager = s_plain});
    QVERIFY(m_desktop->isReady());
    m_program = std::make_unique<SnapWorkbench>(*m_desktop);
    m_program->writeSettings({{u"WindowLeft"_s, u"4000"_s}, {u"WindowTop"_s, u"3000"_s}});
    QVERIFY(m_program->startAndWait({{u"QT_SCALE_FACTOR"_s, scale}}));
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
    QVERIFY(m_desktop->waitForFocus(m_program->mainWindow()));
    m_desktop->key(XK_F11);
    QVERIFY(covers({QPoint(), screen}));
    m_desktop->key(XK_F11);
    QVERIFY(covers({corner, window}));
}

void TestFace::preferencesComeBack()
{
    QVERIFY(begin(s_plain));
    const auto open = [this] {
        const TestDesktop::Window window = m_program->mainWindow();
        if (!m_desktop->waitForFocus(window))
            return TestDesktop::Window();
        const QList<TestDesktop::Window> before = m_desktop->windows();
        m_desktop->key(XK_s, {XK_Alt_L});
        m_desktop->key(XK_p);
        const TestDesktop::Window dialog = m_desktop->waitForNewWindow(before);
        return m_desktop->waitForFocus(dialog) ? dialog : TestDesktop::Window();
    };
    QVERIFY(open().id != XCB_NONE);
    m_desktop->key(XK_space);
    for (int i = 0; i < 4; ++i)
        m_desktop->key(XK_Tab);
    m_desktop->type(u"25s"_s);
    m_desktop->key(XK_Tab);
    m_desktop->key(XK_space);
    m_desktop->key(XK_Escape);
    QVERIFY(m_program->quit());
    QCOMPARE(m_program->setting(u"ScreenTimer"_s), u"25"_s);
    QCOMPARE(m_program->setting(u"FirstRun"_s), u"1"_s);
    QCOMPARE(m_program->setting(u"ShowMagnification"_s), u"0"_s);
    QCOMPARE(m_program->setting(u"Magnification"_s), u"8"_s);

    QVERIFY(m_program->startAndWait());
    QVERIFY(open().id != XCB_NONE);
    m_desktop->key(XK_space);
    m_desktop->key(XK_Escape);
    QVERIFY(m_program->quit());
    QCOMPARE(m_program->setting(u"ScreenTimer"_s), u"25"_s);
    QCOMPARE(m_program->setting(u"FirstRun"_s), u"0"_s);
    QCOMPARE(m_program->setting(u"ShowMagnification"_s), u"0"_s);
}

QTEST_GUILESS_MAIN(TestFace)
#include "test_face.moc"
