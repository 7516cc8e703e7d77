#include "capture/rectangleoverlay.h"

#include "overlayfixture.h"

#include <QPainterPath>
#include <QPushButton>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class TestRectangleOverlay : public OverlayTest
{
    Q_OBJECT

private slots:
    void init() { begin({{0, 0, 600, 450}}); }

    void looksLikeCompositor()
    {
        isDimmed(false);
        // Nor is a desktop live whose pictures are frozen, whatever the compositor.
        m_desktop->pictures->frozen = true;
        isDimmed(true);
    }

    void marksEveryPixel()
    {
        // The scale does not divide this size.
        m_desktop->screens->list = {{0, 0, 601, 451}, {-600, 0, 600, 450}};
        open<Dialog>();
        QCOMPARE(dialog().getPolygonF(), nullptr);
        QVERIFY(dialog().getPixmap().isNull());
        const QPoint origin(600, 0);
        struct Row {
            QPoint from{};
            QPoint to{};
            QRect region{};
        };
        // An odd one, one that is dragged past the desktop's far corner, and across the screens to
        // and fro.
        for (const auto &[from, to, region] : {Row{{101, 103}, {152, 136}, {101, 103, 51, 33}},
                                               {{300, 301}, {650, 480}, {300, 301, 301, 150}},
                                               {{-131, 11}, {57, 90}, {-131, 11, 188, 79}},
                                               {{61, 301}, {-37, 107}, {-37, 107, 98, 194}},
                                               {{-500, 20}, {-181, 99}, {-500, 20, 319, 79}}}) {
            dialog().dialog_clear();
            drag(from + origin, to + origin);
            QVERIFY(isWhole(frame()));
            // Its right end is below the region's.
            const Pane &pane = m_overlay->paneAt(region.topLeft() + origin);
            QVERIFY(frame()->window() == &pane.window() || region.width() < 300);
            QCOMPARE(text(u"label_6"_s), u"%1 px"_s.arg(region.width()));
            QCOMPARE(text(u"label_8"_s), u"%1 px"_s.arg(region.height()));
            QCOMPARE(dialog().getPixmap().toImage(), m_desktop->pictures->painted(region, {2, 1}));
            const std::unique_ptr<QPainterPath> outline(dialog().getPolygonF());
            QCOMPARE(outline->boundingRect(), QRectF(region.translated(origin)));
        }
    }

    void partialRepaintEqualsFull()
    {
        m_desktop->ownWindows->composited = false;
        open<Dialog>();
        mouse(QEvent::MouseButtonPress, {301, 203}, Qt::LeftButton);
        for (const QPoint to :
             {QPoint(305, 206), {390, 333}, {217, 251}, {14, 9}, {301, 40}, {599, 449}}) {
            mouse(QEvent::MouseMove, to, Qt::LeftButton);
            compareWithFullRepaint();
        }
        mouse(QEvent::MouseButtonRelease, {401, 303}, Qt::NoButton);
        compareWithFullRepaint();
        drag({351, 253}, {277, 201});  // moves the region
        compareWithFullRepaint();
        drag({20, 20}, {20, 120});  // flat: the region comes back
        compareWithFullRepaint();
        for (int i = 0; i < 9; ++i)
            QTest::keyClick(surface(), Qt::Key_Left);
        // Keys wait for the next move of the pointer.
        mouse(QEvent::MouseMove, {500, 400}, Qt::NoButton);
        compareWithFullRepaint();
        dialog().dialog_clear();
        compareWithFullRepaint();
    }

    void feedsMagnifier()
    {
        m_desktop->screens->list = {{0, 0, 600, 450}, {-600, 0, 600, 450}};
        m_overlay = std::make_unique<Dialog>();
        QSignalSpy spy(m_overlay.get(), &CaptureOverlay::ShowDetailWindowRequest);
        m_overlay->show();
        const auto next = [&](EShowMagOpr opr, int x, int y) {
            const QList<QVariant> sent = spy.takeFirst();
            QCOMPARE(sent.at(0).value<QWidget *>(), m_overlay.get());
            QCOMPARE(sent.at(1).value<EShowMagOpr>(), opr);
            QCOMPARE(QPoint(sent.at(2).toInt(), sent.at(3).toInt()), QPoint(x, y));
        };
        next(eMagOpen, 0, 0);
        mouse(QEvent::MouseMove, {601, 33}, Qt::NoButton);
        next(eMagUpdate, 1, 33);
        QTest::keyClick(surface(), Qt::Key_E, Qt::ControlModifier);
        next(eMagChangeMode, 0, 0);
        // The tick follows a pointer that moves unseen, to the pixel.
        m_desktop->hands->pointerPos = {-301, 77};
        m_desktop->clock->advance(100);
        next(eMagUpdate, -301, 77);
        // While a button is held, and once the overlay has finished, it sends nothing.
        mouse(QEvent::MouseButtonPress, {10, 10}, Qt::LeftButton);
        spy.clear();
        m_desktop->clock->advance(250);
        QVERIFY(spy.isEmpty());
        mouse(QEvent::MouseButtonRelease, {10, 10}, Qt::NoButton);
        m_overlay->finished = true;
        m_desktop->clock->advance(250);
        QVERIFY(spy.isEmpty());
    }

    void ends()
    {
        const auto resultOf = [this](const std::function<void()> &end) {
            m_overlay = std::make_unique<Dialog>();
            int result = -1;
            QTimer::singleShot(0, this, [&] {
                result = m_overlay->exec();
                QCoreApplication::exit();
            });
            QTimer::singleShot(0, this, [&] {
                QTest::keyClick(surface(), Qt::Key_Return);  // refused while there is no region
                dialog().on_pushButton_clicked();
                drag({10, 10}, {100, 100});
                mouse(QEvent::MouseButtonPress, {200, 200}, Qt::LeftButton);
                mouse(QEvent::MouseMove, {300, 300}, Qt::LeftButton);
                end();
            });
            QApplication::exec();
            return result;
        };
        const auto snap = [this] {
            QTest::mouseClick(m_overlay->findChild<QPushButton *>(u"pushButton"_s), Qt::LeftButton);
        };
        QCOMPARE(resultOf(snap), QDialog::Accepted);
        QCOMPARE(resultOf([this] { QTest::keyClick(surface(), Qt::Key_Return); }),
                 QDialog::Accepted);
        QCOMPARE(dialog().getPixmap().size(), QSize(90, 90));
        QCOMPARE(resultOf([this] { QTest::keyClick(surface(), Qt::Key_Escape); }),
                 QDialog::Rejected);
        QCOMPARE(resultOf([this] { m_overlay->panes().constLast().window().close(); }),
                 QDialog::Rejected);
        // The program's end, too, in the middle of a drag.
        QCOMPARE(resultOf([] { QCoreApplication::exit(); }), QDialog::Rejected);
        QVERIFY(!m_overlay->isVisible());
        QCOMPARE(QWidget::keyboardGrabber(), nullptr);
    }

    void leavesChangedDesktop()
    {
        QList<QRect> &screens = m_desktop->screens->list;
        bool &composited = m_desktop->ownWindows->composited;
        open<Dialog>();
        screens.append({600, 0, 600, 450});
        m_desktop->clock->advance(100);
        QVERIFY(!m_overlay->isVisible());
        open<Dialog>();
        composited = false;
        m_desktop->clock->advance(100);
        QVERIFY(!m_overlay->isVisible());
        // With a picture of the desktop it needs no compositor, and one may come.
        open<Dialog>();
        m_desktop->clock->advance(150);
        composited = true;
        m_desktop->clock->advance(150);
        QVERIFY(m_overlay->isVisible());
        // No compositor, and nothing to take a picture of.
        composited = false;
        screens.clear();
        m_overlay = std::make_unique<Dialog>();
        m_overlay->show();
        QVERIFY(!m_overlay->isVisible());
        QCOMPARE(m_overlay->exec(), QDialog::Rejected);
    }

    void menuEndsDrag()
    {
        open<Dialog>();
        const QWidget *grabber = surface();
        QCOMPARE(
            contextMenu([&] { grabber = QWidget::keyboardGrabber(); }),
            (QStringList{u"Finish(Enter)"_s, u"Clear"_s, u"Copy"_s, u"Save"_s, u"Pin"_s,
                         u"Read the text"_s, u"Take after a countdown"_s, u"Last area again"_s}));
        QCOMPARE(grabber, nullptr);  // or the menu would hear no key
        QCOMPARE(QWidget::keyboardGrabber(), surface());
        // How a press comes that follows a click soon.
        mouse(QEvent::MouseButtonDblClick, {10, 10}, Qt::LeftButton);
        mouse(QEvent::MouseMove, {110, 90}, Qt::LeftButton);
        QApplication::processEvents();
        contextMenu([this] { m_overlay->reject(); });
        QVERIFY(!m_overlay->isVisible());
        QCOMPARE(QWidget::keyboardGrabber(), nullptr);
        QCOMPARE(dialog().getPixmap().size(), QSize(100, 80));
    }

private:
    void isDimmed(bool composited)
    {
        m_desktop->ownWindows->composited = composited;
        open<Dialog>();
        QCOMPARE(m_overlay->windowOpacity(), 1.0);
        drag({101, 101}, {301, 203});
        hideButtons();
        const QImage shown = onScreen();
        QCOMPARE(shown.pixelColor(60, 70), QColor(0, 64, 102));
        QCOMPARE(shown.pixelColor(400, 300), QColor(80, 16, 3));
        QCOMPARE(shown.pixelColor(150, 150), QColor(153, 217, 255));  // inside the region
        QCOMPARE(shown.pixelColor(301, 203), QColor(54 + 80, 54 + 16, 54 + 3));  // on a handle
        // The outline lies half on either side of the region's edge.
        QCOMPARE(shown.pixelColor(301, 130).red(), 80 + 77);
        QCOMPARE(shown.pixelColor(302, 130), QColor(80, 16, 3));
        frame()->hide();  // is as large as the scale
        QApplication::processEvents();
        compareWithFirstRun(1);
    }
    QWidget *frame() const { return m_overlay->findChild<QWidget *>(u"widget_2"_s); }
    Dialog &dialog() const { return static_cast<Dialog &>(*m_overlay); }
};

int main(int argc, char **argv) { return runInPanes<TestRectangleOverlay>(argc, argv); }

#include "test_rectangleoverlay.moc"
