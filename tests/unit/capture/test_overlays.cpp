// The overlays of the ellipse and of the polygon, as far as they differ from the rectangle's.

#include "capture/ellipseoverlay.h"
#include "capture/polygonoverlay.h"

#include "overlayfixture.h"

#include <QPainterPath>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

// Outlines that are cut where a repaint ends come out a shade different there.
constexpr int s_shades = 8;

}  // namespace

class TestOverlays : public OverlayTest
{
    Q_OBJECT

private slots:
    void init() { begin({{0, 0, 600, 450}, {-600, 0, 600, 450}}); }

    void ellipsePicture()
    {
        auto &overlay = open<MyDrawRound>();
        QCOMPARE(overlay.getEllipse(), nullptr);
        drag({501, 101}, {652, 202});
        QCOMPARE(text(u"label_6"_s), u"151 px"_s);
        const QRect global(-99, 101, 151, 101);
        QCOMPARE(overlay.getPixmap().toImage(), m_desktop->pictures->painted(global, {2, 1}));
        const std::unique_ptr<QPainterPath> ellipse(overlay.getEllipse());
        QPainterPath expected;
        expected.addEllipse(0, 0, 151, 101);
        QCOMPARE(*ellipse, expected);
    }

    void ellipseTicks()
    {
        open<MyDrawRound>();
        const QSignalSpy spy(m_overlay.get(), &CaptureOverlay::ShowDetailWindowRequest);
        const auto ticks = [&] {
            const qsizetype before = spy.size();
            m_desktop->clock->advance(450);
            return spy.size() - before;
        };
        mouse(QEvent::MouseButtonPress, {100, 100}, Qt::LeftButton);
        QCOMPARE(ticks(), 0);
        mouse(QEvent::MouseButtonRelease, {100, 100}, Qt::NoButton);
        const qsizetype once = ticks();
        QCOMPARE(once, 4);
        // The second click of a double click is a press.
        mouse(QEvent::MouseButtonDblClick, {100, 100}, Qt::LeftButton);
        QCOMPARE(ticks(), 0);
        mouse(QEvent::MouseButtonRelease, {100, 100}, Qt::NoButton);
        mouse(QEvent::MouseButtonRelease, {100, 100}, Qt::NoButton, Qt::RightButton);
        QVERIFY(ticks() > once);
        // A press ends the newest ticks only.
        mouse(QEvent::MouseButtonPress, {100, 100}, Qt::RightButton);
        QVERIFY(ticks() > 0);
    }

    void ellipseRepaints()
    {
        m_desktop->ownWindows->composited = false;
        open<MyDrawRound>();
        mouse(QEvent::MouseButtonPress, {301, 203}, Qt::LeftButton);
        for (const QPoint to : {QPoint(305, 206), {390, 333}, {217, 251}, {14, 9}, {599, 449}}) {
            mouse(QEvent::MouseMove, to, Qt::LeftButton);
            compareWithFullRepaint(s_shades);
        }
        mouse(QEvent::MouseButtonRelease, {599, 449}, Qt::NoButton);
        compareWithFullRepaint(s_shades);
        drag({451, 303}, {377, 251});  // moves the region
        compareWithFullRepaint(s_shades);
        m_overlay->findChild<QWidget *>(u"widget_2"_s)->hide();  // is as large as the scale
        hideButtons();
        compareWithFirstRun(s_shades);
    }

    void polygonPicture()
    {
        auto &overlay = open<dlgFreeHand>();
        QCOMPARE(m_overlay->windowOpacity(), 1.0);
        QCOMPARE(overlay.getPolygon(), nullptr);
        QVERIFY(overlay.getPixmap().isNull());
        for (const QPoint vertex : {QPoint(501, 101), {653, 103}, {600, 200}})
            click(vertex);
        QApplication::processEvents();
        // Four tenths of sheet and line are seen, of what lies on them everything.
        QCOMPARE(onScreen().pixelColor(300, 300), QColor(0, 0, 0, 102));
        QVERIFY(onScreen().pixelColor(577, 102).red() > 100);
        QCOMPARE(onScreen().pixelColor(577, 102).alpha(), 102);
        overlay.slots_freehandAccept();
        QCOMPARE(overlay.result(), QDialog::Accepted);
        QCOMPARE(overlay.getPixmap().toImage(),
                 m_desktop->pictures->painted(QRectF(-99, 101, 152, 99), {2, 1}));
        const std::unique_ptr<QPolygonF> polygon(overlay.getPolygon());
        QCOMPARE(*polygon, QPolygonF({{99, 99}, {152, 2}, {0, 0}}));
    }

    void polygonEnds()
    {
        const QList<QPoint> vertices{{501, 101}, {653, 103}, {600, 200}};
        const auto after = [&](const std::function<void()> &end) {
            auto &overlay = open<dlgFreeHand>();
            for (const QPoint vertex : vertices)
                click(vertex);
            end();
            const std::unique_ptr<QPolygonF> polygon(overlay.getPolygon());
            return overlay.isVisible() ? -1 : static_cast<int>(polygon->size());
        };
        QCOMPARE(after([] {}), -1);
        QCOMPARE(after([&] { QTest::keyClick(surface(), Qt::Key_Return); }), 3);
        QCOMPARE(after([&] { mouse(QEvent::MouseButtonDblClick, vertices[2], Qt::LeftButton); }),
                 3);
        // Near the first vertex a press closes at once, and a release that comes after sets
        // nothing.
        QCOMPARE(after([&] { click(vertices[0] + QPoint(4, 3)); }), 4);
        QCOMPARE(after([&] { click(vertices[0] + QPoint(4, 4)); }), -1);
        QTest::keyClick(surface(), Qt::Key_Escape);
        QVERIFY(!m_overlay->isVisible());
        QCOMPARE(m_overlay->result(), QDialog::Rejected);
    }

    void polygonRepaints()
    {
        m_desktop->ownWindows->composited = false;
        auto &overlay = open<dlgFreeHand>();
        const QImage empty = onScreen();
        for (const QPoint at : {QPoint(601, 101), {1153, 303}, {700, 400}, {20, 30}}) {
            mouse(QEvent::MouseMove, at + QPoint(-40, 9), Qt::NoButton);
            compareWithFullRepaint(s_shades);
            click(at);
            compareWithFullRepaint(s_shades);
        }
        // A hand that goes around, over thousands of points.
        mouse(QEvent::MouseButtonPress, {20, 30}, Qt::LeftButton);
        for (int step = 0; step < 3000; ++step)
            mouse(QEvent::MouseMove, {20 + step * 7 % 1100, 30 + step * 3 % 400}, Qt::LeftButton);
        compareWithFullRepaint(s_shades);
        mouse(QEvent::MouseButtonRelease, {20, 30}, Qt::NoButton);
        mouse(QEvent::MouseMove, {604, 104}, Qt::NoButton);
        compareWithFullRepaint(s_shades);
        compareWithFirstRun(s_shades);
        // The red circle around the first vertex.
        QVERIFY(onScreen().pixelColor(596, 101).red() > empty.pixelColor(596, 101).red() + 40);
        overlay.deletelastpoint();
        compareWithFullRepaint(s_shades);
        overlay.dialog_clear();
        QApplication::processEvents();
        QCOMPARE(onScreen(), empty);
    }

    void polygonKeysMovePointer()
    {
        auto &overlay = open<dlgFreeHand>();
        click({501, 101});
        mouse(QEvent::MouseMove, {733, 207}, Qt::NoButton);
        QTest::keyClick(surface(), Qt::Key_Right);
        QCOMPARE(m_desktop->hands->pointerPos, QPoint(134, 207));
        QTest::keyClick(surface(), Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(m_desktop->hands->pointerPos, QPoint(134, 449));
        QTest::keyClick(surface(), Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(m_desktop->hands->pointerPos, QPoint(-599, 449));
        // The tick follows a pointer that moves unseen, but sets no vertex.
        m_desktop->hands->pointerPos = {-301, 77};
        const QSignalSpy spy(m_overlay.get(), &CaptureOverlay::ShowDetailWindowRequest);
        m_desktop->clock->advance(100);
        QCOMPARE(spy.constFirst().at(2).toInt(), -301);
        const std::unique_ptr<QPolygonF> polygon(overlay.getPolygon());
        QCOMPARE(*polygon, (QPolygonF{{0, 0}, {202, 24}}));
    }

    void polygonMenu()
    {
        auto &overlay = open<dlgFreeHand>();
        const QStringList takes = QStringList{u"Copy"_s,
                                              u"Save"_s,
                                              u"Pin"_s,
                                              u"Read the text"_s,
                                              u"Take after a countdown"_s,
                                              u"Last area again"_s};
        QCOMPARE(contextMenu(), QStringList({u"Finish(Enter)"_s, u"Clear all points"_s}) + takes);
        click({10, 10});
        QCOMPARE(contextMenu(), QStringList{u"Finish(Enter)"_s} + takes);
        click({90, 10});
        click({90, 90});
        QCOMPARE(contextMenu(), QStringList{u"Last area again"_s});
        // The menu sets no vertex of its own, but ends a drag.
        const auto count = [&] { return std::unique_ptr<QPolygonF>(overlay.getPolygon())->size(); };
        QCOMPARE(count(), 4);
        mouse(QEvent::MouseButtonPress, {50, 50}, Qt::LeftButton);
        contextMenu();
        mouse(QEvent::MouseMove, {60, 60}, Qt::NoButton);
        mouse(QEvent::MouseMove, {70, 60}, Qt::NoButton);
        QCOMPARE(count(), 4);
    }
};

int main(int argc, char **argv) { return runInPanes<TestOverlays>(argc, argv); }

#include "test_overlays.moc"
