// A picture is marked up with the real pointer and keyboard, and what is saved is what was drawn.

#include "snapworkbench.h"

#include <QTest>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_ellipse = 89;
constexpr int s_arrow = 119;
constexpr int s_freehand = 149;

const QRgb s_red = qRgb(255, 0, 0);

int redIn(const QImage &image, const QRect &area)
{
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x)
            count += qRed(image.pixel(x, y)) > 150;
    }
    return count;
}

}  // namespace

class TestEditing : public DesktopTest
{
    Q_OBJECT

private slots:
    void cleanup() { finish(); }

    // Positions count device pixels, whatever the scale of the desktop.
    void markUp()
    {
        for (const qreal scale : {1.0, 1.5, 2.0})
            markUpAt(scale);
    }

    // The whole desktop is taken in the middle of a drag, and the program ends in it.
    void leftInTheMiddle()
    {
        QVERIFY(start(1));
        pressButton(s_rectangle);
        m_desktop->movePointer(m_origin + QPoint(200, 200));
        m_desktop->press();
        m_desktop->movePointer(m_origin + QPoint(300, 300));
        QVERIFY(becomes({250, 200}, s_red));
        hotKey(XK_s);
        QVERIFY(isTitled(u"untitled 1 *"_s));
        m_desktop->release();
        const QList<TestDesktop::Window> before = m_desktop->windows();
        m_desktop->closeWindow(m_program->mainWindow());
        QVERIFY(hasDialog(before));
        discard();
        QVERIFY(hasEnded());
    }

private:
    /// Starts the program and takes a picture of the empty desktop.
    bool start(qreal scale)
    {
        const bool isUp = begin({.desktop = {.size = (QSizeF(1600, 1000) * scale).toSize()},
                                 .settings = {{u"RunMinimized"_s, u"1"_s},
                                              {u"AutoShow"_s, u"1"_s},
                                              {u"LineWidth"_s, u"3"_s}},
                                 .variables = {{u"QT_SCALE_FACTOR"_s, QString::number(scale)}}});
        m_ground = m_desktop->pixel({});
        return isUp && grab() && findPicture(m_ground);
    }
    bool becomes(QPoint at, QRgb colour)
    {
        // The edge of a smooth line may take a little of it.
        return waitFor([&] {
            const QRgb shown = m_desktop->pixel(m_origin + at);
            return qAbs(qRed(shown) - qRed(colour)) < 40 &&
                   qAbs(qGreen(shown) - qGreen(colour)) < 40;
        });
    }
    /// From one point of the shown picture to another; ends when `drawn` is red.
    bool drag(QPoint from, QPoint to, QPoint drawn)
    {
        return m_desktop->drag(m_origin + from, m_origin + to,
                               [&] { return becomes(drawn, s_red); });
    }

    void markUpAt(qreal scale)
    {
        QVERIFY(start(scale));
        const auto choose = [&](int button) { pressButton(button, scale); };
        choose(s_rectangle);
        QVERIFY(drag({41, 50}, {140, 121}, {90, 50}));
        choose(s_text);
        m_desktop->click(m_origin + QPoint(421, 61));
        m_desktop->type(u"il"_s);
        // The field's own frame lies outside of the text.
        const QRect textArea(QPoint(419, 61), QSize(40, 30));
        QVERIFY(waitFor(
            [&] { return redIn(m_desktop->screenshot(), textArea.translated(m_origin)) > 10; }));
        choose(s_ellipse);
        QVERIFY(drag({201, 50}, {300, 121}, {250, 50}));
        choose(s_arrow);
        QVERIFY(drag({41, 161}, {240, 161}, {100, 161}));
        choose(s_freehand);
        // The points of the line are the moves that the program has seen: to and fro, until there
        // are two.
        m_desktop->movePointer(m_origin + QPoint(300, 160));
        m_desktop->press();
        QVERIFY(waitFor([&] {
            m_desktop->movePointer(m_origin + QPoint(320, 180));
            m_desktop->movePointer(m_origin + QPoint(340, 200));
            return qRed(m_desktop->pixel(m_origin + QPoint(330, 190))) > 200;
        }));
        m_desktop->release();
        QVERIFY(becomes({330, 190}, s_red));

        m_desktop->key(XK_z, {XK_Control_L});
        QVERIFY(becomes({330, 190}, m_ground));
        m_desktop->key(XK_z, {XK_Control_L});
        QVERIFY(becomes({100, 161}, m_ground));
        m_desktop->key(XK_z, {XK_Control_L, XK_Shift_L});
        QVERIFY(becomes({100, 161}, s_red));
        // The mouse leaves the shapes alone when it comes to rest elsewhere.
        const QImage shown = m_desktop->screenshot().copy(QRect(m_origin, QSize(600, 300)));

        // A shape at another zoom lies where the zoomed picture was under the pointer.
        m_desktop->key(XK_minus, {XK_Control_L});
        QVERIFY(becomes({64, 35}, s_red));
        choose(s_ellipse);
        QVERIFY(drag({301, 201}, {402, 302}, {351, 200}));

        const QImage saved = m_program->saveAs(m_desktop->home() + u"/marked.png"_s);
        QCOMPARE(saved.size(), (QSizeF(1600, 1000) * scale).toSize());
        const auto colours = [&](std::initializer_list<QPoint> points, QRgb expected) {
            for (const QPoint &point : points) {
                if (saved.pixel(point) != expected) {
                    qWarning() << scale << point << QColor(saved.pixel(point));
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
        QVERIFY(colours({{100, 165}, {221, 168}, {243, 161}, {330, 190}}, m_ground));
        QVERIFY(redIn(saved, textArea) > 10);
        QCOMPARE(redIn(saved, {QPoint(419, 40), QSize(60, 20)}), 0);
        // 201, 301, 302 and 402 times 1.4, cut.
        QVERIFY(colours({{491, 280}, {421, 351}, {561, 351}, {491, 421}}, s_red));
        QVERIFY(colours({{491, 351}, {491, 276}, {416, 351}}, m_ground));
        // What was on the screen at zoom 1 is the picture, pixel for pixel.
        const QRect before(0, 0, 600, 195);
        QCOMPARE(shown.copy(before), saved.copy(before));
    }

    QRgb m_ground = 0;  ///< the desktop's colour, and the picture's
};

QTEST_GUILESS_MAIN(TestEditing)
#include "test_editing.moc"
