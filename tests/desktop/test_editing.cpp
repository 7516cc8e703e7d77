// A picture is marked up with the real pointer and keyboard, and what is saved is what was drawn.

#include "snapworkbench.h"

#include <QTest>

#include <algorithm>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

// Buttons of the strip at the window's foot: from its left edge, in logical pixels.
constexpr int s_rectangle = 59;
constexpr int s_ellipse = 89;
constexpr int s_arrow = 119;
constexpr int s_freehand = 149;
constexpr int s_text = 179;
constexpr int s_undo = 662;
constexpr int s_redo = 692;
constexpr int s_zoomOut = 776;
constexpr int s_stripHeight = 25;  // of their middle above the window's bottom

const QRgb s_red = qRgb(255, 0, 0);
const QRgb s_frame = qRgb(35, 40, 45);

}  // namespace

class TestEditing : public QObject
{
    Q_OBJECT

private slots:
    void markUp_data();
    void markUp();
    void leftInTheMiddle();

private:
    /// Starts the program and takes a picture of the black desktop.
    bool start(qreal scale);
    void pressButton(int x) const;
    /// From one point of the shown picture to another; ends when `drawn` is red.
    bool drag(QPoint from, QPoint to, QPoint drawn) const;
    bool becomes(QPoint at, QRgb colour) const;

    std::unique_ptr<TestDesktop> m_desktop;
    std::unique_ptr<SnapWorkbench> m_program;
    QRect m_window;
    QPoint m_origin;    ///< of the shown picture, on the screen
    QRgb m_ground = 0;  ///< the desktop's colour, and the picture's
    qreal m_scale = 1;
};

bool TestEditing::start(qreal scale)
{
    m_program.reset();
    m_scale = scale;
    m_desktop = std::make_unique<TestDesktop>(
        TestDesktop::Options{.size = (QSizeF(1600, 1000) * scale).toSize(),
                             .windowManager = {u"xfwm4"_s, u"--compositor=on"_s}});
    m_program = std::make_unique<SnapWorkbench>(*m_desktop);
    m_program->writeSettings(
        {{u"RunMinimized"_s, u"1"_s}, {u"AutoShow"_s, u"1"_s}, {u"LineWidth"_s, u"3"_s}});
    if (!m_desktop->isReady() ||
        !m_program->startAndWait({{u"QT_SCALE_FACTOR"_s, QString::number(scale)}}))
        return false;
    const QString title = u"untitled * - Snap Workbench"_s;
    m_desktop->key(XK_s, {XK_Control_L, XK_Alt_L});
    if (!m_program->waitForTitle(title) ||
        !waitFor([&] { return m_desktop->activeTitle() == title; }))
        return false;
    m_window = m_program->mainWindow().area;
    const QPoint middle = m_window.center();
    const QPoint frame(m_window.left() + 2, middle.y());
    m_ground = m_desktop->pixel({});
    if (!waitFor([&] {
            return m_desktop->pixel(frame) == s_frame && m_desktop->pixel(middle) == m_ground;
        }))
        return false;
    const QImage screen = m_desktop->screenshot();
    m_origin = middle;
    while (screen.pixel(m_origin - QPoint(1, 0)) == m_ground)
        m_origin.rx() -= 1;
    while (screen.pixel(m_origin - QPoint(0, 1)) == m_ground)
        m_origin.ry() -= 1;
    return m_window.contains(m_origin);
}

void TestEditing::pressButton(int x) const
{
    m_desktop->click(m_window.bottomLeft() + (QPointF(x, -s_stripHeight) * m_scale).toPoint());
}

bool TestEditing::becomes(QPoint at, QRgb colour) const
{
    // The edge of a smooth line may take a little of it.
    return waitFor([&] {
        const QRgb shown = m_desktop->pixel(m_origin + at);
        return qAbs(qRed(shown) - qRed(colour)) < 40 && qAbs(qGreen(shown) - qGreen(colour)) < 40;
    });
}

bool TestEditing::drag(QPoint from, QPoint to, QPoint drawn) const
{
    return m_desktop->drag(m_origin + from, m_origin + to, [&] { return becomes(drawn, s_red); });
}

void TestEditing::markUp_data()
{
    QTest::addColumn<qreal>("scale");
    QTest::newRow("scale 1") << 1.0;
    QTest::newRow("scale 1.5") << 1.5;
    QTest::newRow("scale 2") << 2.0;
}

// Positions count device pixels, whatever the scale of the desktop.
void TestEditing::markUp()
{
    QFETCH(const qreal, scale);
    QVERIFY(start(scale));
    pressButton(s_rectangle);
    QVERIFY(drag({41, 50}, {140, 121}, {90, 50}));
    pressButton(s_text);
    m_desktop->click(m_origin + QPoint(421, 61));
    m_desktop->type(u"il"_s);
    // The field's own frame lies outside of the text.
    const auto redIn = [](const QImage &image, const QRect &area) {
        int count = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x)
                count += qRed(image.pixel(x, y)) > 150;
        }
        return count;
    };
    const QRect textArea(QPoint(419, 61), QSize(40, 30));
    QVERIFY(waitFor(
        [&] { return redIn(m_desktop->screenshot(), textArea.translated(m_origin)) > 10; }));
    pressButton(s_ellipse);
    QVERIFY(drag({201, 50}, {300, 121}, {250, 50}));
    pressButton(s_arrow);
    QVERIFY(drag({41, 161}, {240, 161}, {100, 161}));
    pressButton(s_freehand);
    // The points of the line are the moves that the program has seen: to and fro, until there are
    // two.
    m_desktop->movePointer(m_origin + QPoint(300, 160));
    m_desktop->press();
    QVERIFY(waitFor([&] {
        m_desktop->movePointer(m_origin + QPoint(320, 180));
        m_desktop->movePointer(m_origin + QPoint(340, 200));
        return qRed(m_desktop->pixel(m_origin + QPoint(330, 190))) > 200;
    }));
    m_desktop->release();
    QVERIFY(becomes({330, 190}, s_red));

    pressButton(s_undo);
    QVERIFY(becomes({330, 190}, m_ground));
    pressButton(s_undo);
    QVERIFY(becomes({100, 161}, m_ground));
    pressButton(s_redo);
    QVERIFY(becomes({100, 161}, s_red));
    // The mouse leaves the shapes alone when it comes to rest elsewhere.
    const QImage shown = m_desktop->screenshot().copy(QRect(m_origin, QSize(600, 300)));

    // A shape at another zoom lies where the zoomed picture was under the pointer.
    pressButton(s_zoomOut);
    QVERIFY(becomes({64, 35}, s_red));
    pressButton(s_ellipse);
    QVERIFY(drag({301, 201}, {402, 302}, {351, 200}));

    const QImage saved = m_program->saveAs(m_desktop->home() + u"/marked.png"_s);
    QCOMPARE(saved.size(), (QSizeF(1600, 1000) * scale).toSize());
    const auto colours = [&](std::initializer_list<QPoint> points, QRgb expected) {
        for (const QPoint &point : points) {
            if (saved.pixel(point) != expected) {
                qWarning() << point << QColor(saved.pixel(point));
                return false;
            }
        }
        return true;
    };
    // Three wide and smooth: two full pixels, and half of one on either side.
    QVERIFY(colours({{90, 49}, {90, 50}, {41, 90}, {140, 90}, {90, 121}}, s_red));
    QVERIFY(colours({{90, 47}, {90, 52}, {38, 90}, {90, 90}, {144, 90}}, m_ground));
    QVERIFY(colours({{250, 50}, {201, 85}, {299, 85}, {250, 120}}, s_red));
    QVERIFY(colours({{250, 85}, {204, 53}}, m_ground));
    // The head is 16 long and wide.
    QVERIFY(colours({{100, 161}, {230, 161}, {227, 165}, {227, 156}}, s_red));
    QVERIFY(colours({{100, 165}, {221, 168}, {243, 161}}, m_ground));
    QVERIFY(colours({{330, 190}}, m_ground));
    QVERIFY(redIn(saved, textArea) > 10);
    QCOMPARE(redIn(saved, {QPoint(419, 40), QSize(60, 20)}), 0);
    // 201, 301, 302 and 402 times 1.4, cut.
    QVERIFY(colours({{491, 280}, {421, 351}, {561, 351}, {491, 421}}, s_red));
    QVERIFY(colours({{491, 351}, {491, 276}, {416, 351}}, m_ground));
    // What was on the screen at zoom 1 is the picture, pixel for pixel.
    const QRect before(0, 0, 600, 195);
    QCOMPARE(shown.copy(before), saved.copy(before));
}

// A grab, a closed tab and the end of the program in the middle of typing or of a drag.
void TestEditing::leftInTheMiddle()
{
    QVERIFY(start(1));
    pressButton(s_text);
    m_desktop->click(m_origin + QPoint(100, 100));
    m_desktop->type(u"llllllll"_s);
    const auto bright = [this] {
        const QImage screen = m_desktop->screenshot();
        for (int x = 100; x < 140; ++x) {
            if (qRed(screen.pixel(m_origin + QPoint(x, 110))) > 150)
                return true;
        }
        return false;
    };
    QVERIFY(waitFor(bright));
    // Another grab, while text is being typed: it stays with its own picture.
    m_desktop->key(XK_s, {XK_Control_L, XK_Alt_L});
    QVERIFY(m_program->waitForTitle(u"untitled 1 * - Snap Workbench"_s));
    m_desktop->key(XK_w, {XK_Control_L});
    const auto discard = [this] {
        const auto prompt = [this] {
            const QList<TestDesktop::Window> windows = m_desktop->windows();
            const auto found = std::find_if(windows.begin(), windows.end(), [](const auto &window) {
                return window.viewable && window.title == u"SnapWorkbench";
            });
            return found == windows.end() ? TestDesktop::Window() : *found;
        };
        if (!waitFor([&] { return prompt().id != XCB_NONE; }) || !m_desktop->waitForFocus(prompt()))
            return false;
        // From Cancel to the button before it.
        m_desktop->key(XK_Left);
        m_desktop->key(XK_space);
        return true;
    };
    QVERIFY(discard());
    QVERIFY(m_program->waitForTitle(u"untitled * - Snap Workbench"_s));
    QVERIFY(waitFor(bright));

    // The whole desktop is taken in the middle of a drag.
    pressButton(s_rectangle);
    m_desktop->movePointer(m_origin + QPoint(200, 200));
    m_desktop->press();
    m_desktop->movePointer(m_origin + QPoint(300, 300));
    QVERIFY(becomes({250, 200}, s_red));
    m_desktop->key(XK_s, {XK_Control_L, XK_Alt_L});
    QVERIFY(m_program->waitForTitle(u"untitled 2 * - Snap Workbench"_s));
    m_desktop->release();
    m_desktop->closeWindow(m_program->mainWindow());
    QVERIFY(discard());
    QVERIFY(waitFor([&] { return m_program->process()->state() == QProcess::NotRunning; }));
    QCOMPARE(m_program->process()->exitStatus(), QProcess::NormalExit);
}

QTEST_GUILESS_MAIN(TestEditing)
#include "test_editing.moc"
