#include "capture/rectangleoverlay.h"

#include "fakedesktop.h"
#include "testmain.h"

#include <QBackingStore>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QPainterPath>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

// Everything here is told in device pixels, so the same rows hold at every scale.
class TestRectangleOverlay : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void coversDesktop();
    void looksLikeCompositor();
    void marksEveryPixel();
    void partialRepaintEqualsFull();
    void feedsMagnifier();
    void ends();
    void leavesChangedDesktop();
    void menuEndsDrag();
    void icons();

private:
    void open();
    QWidget *surface() const { return m_dialog->findChild<QWidget *>(u"widget"_s); }
    QLabel *label(const QString &name) const { return m_dialog->findChild<QLabel *>(name); }
    /// Moves the pointer there and sends the event. `pixel` is in overlay coordinates.
    void mouse(QEvent::Type type, QPoint pixel, Qt::MouseButtons buttons);
    void drag(QPoint from, QPoint to);
    /// Opens the context menu, and runs `meanwhile` while it is open.
    void contextMenu(const std::function<void()> &meanwhile);
    QImage onScreen() const;

    std::unique_ptr<FakeDesktop> m_desktop;
    std::unique_ptr<Dialog> m_dialog;
};

void TestRectangleOverlay::init()
{
    m_dialog.reset();
    m_desktop = std::make_unique<FakeDesktop>();
    m_desktop->windows->screenList = {{0, 0, 600, 450}};
    m_desktop->windows->list = {
        {.entry = {.number = 2, .bounds = {50, 60, 201, 151}}, .color = QColor(0, 160, 255)},
        {.entry = {.number = 1, .bounds = {-600, 0, 1200, 450}}, .color = QColor(200, 40, 7)}};
}

void TestRectangleOverlay::open()
{
    m_dialog = std::make_unique<Dialog>();
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
}

void TestRectangleOverlay::mouse(QEvent::Type type, QPoint pixel, Qt::MouseButtons buttons)
{
    const QRect box = m_desktop->windows->covered.constLast();
    m_desktop->windows->pointerPos = box.topLeft() + pixel;
    const QPointF pos = QPointF(pixel) / m_dialog->devicePixelRatioF();
    QMouseEvent event(type, pos, pos, Qt::LeftButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(surface(), &event);
}

void TestRectangleOverlay::drag(QPoint from, QPoint to)
{
    mouse(QEvent::MouseButtonPress, from, Qt::LeftButton);
    mouse(QEvent::MouseMove, to, Qt::LeftButton);
    QApplication::processEvents();  // a band counts once it has been painted
    mouse(QEvent::MouseButtonRelease, to, Qt::NoButton);
    QApplication::processEvents();
}

void TestRectangleOverlay::contextMenu(const std::function<void()> &meanwhile)
{
    QTimer::singleShot(0, this, meanwhile);
    QContextMenuEvent event(QContextMenuEvent::Mouse, {9, 9}, {9, 9});
    QApplication::sendEvent(surface(), &event);  // returns when the menu does
}

QImage TestRectangleOverlay::onScreen() const
{
    const auto *image = dynamic_cast<QImage *>(m_dialog->backingStore()->paintDevice());
    QImage copy = image->convertToFormat(QImage::Format_RGB32);
    copy.setDevicePixelRatio(1);
    return copy;
}

void TestRectangleOverlay::coversDesktop()
{
    m_desktop->windows->screenList = {{0, 0, 600, 450}, {-600, 30, 600, 480}};
    open();
    QCOMPARE(m_desktop->windows->covered, (QList<QRect>{{-600, 0, 1200, 510}}));
    QCOMPARE(surface()->size(), m_dialog->size());
    QCOMPARE(m_dialog->windowOpacity(), 0.6);
    QCOMPARE(onScreen().pixelColor(300, 200), QColor(0, 0, 0));
    QCOMPARE(QWidget::keyboardGrabber(), surface());
    m_dialog->hide();
    QCOMPARE(QWidget::keyboardGrabber(), nullptr);
}

void TestRectangleOverlay::looksLikeCompositor()
{
    m_desktop->windows->composited = false;
    open();
    QCOMPARE(m_dialog->windowOpacity(), 1.0);
    drag({101, 101}, {301, 203});
    const QImage shown = onScreen();
    QCOMPARE(shown.pixelColor(60, 70), QColor(0, 64, 102));
    QCOMPARE(shown.pixelColor(400, 300), QColor(80, 16, 3));
    QCOMPARE(shown.pixelColor(150, 150), QColor(153, 217, 255));             // inside the region
    QCOMPARE(shown.pixelColor(301, 203), QColor(54 + 80, 54 + 16, 54 + 3));  // on a handle
    // The outline lies half on either side of the region's edge.
    QCOMPARE(shown.pixelColor(301, 130).red(), 80 + 77);
    QCOMPARE(shown.pixelColor(302, 130), QColor(80, 16, 3));
}

void TestRectangleOverlay::marksEveryPixel()
{
    // The scale does not divide this size.
    m_desktop->windows->screenList = {{0, 0, 601, 451}, {-600, 0, 600, 450}};
    open();
    QCOMPARE(m_dialog->getPolygonF(), nullptr);
    QVERIFY(m_dialog->getPixmap().isNull());
    const QPoint origin(600, 0);
    // An odd one, and one that is dragged past the desktop's far corner.
    for (const auto &[to, region] : {std::pair(QPoint(152, 136), QRect(101, 103, 51, 33)),
                                     {QPoint(650, 480), QRect(300, 301, 301, 150)}}) {
        drag(region.topLeft() + origin, to + origin);
        QCOMPARE(label(u"label_6"_s)->text(), u"%1 px"_s.arg(region.width()));
        QCOMPARE(label(u"label_8"_s)->text(), u"%1 px"_s.arg(region.height()));
        QCOMPARE(m_dialog->getPixmap().toImage(), m_desktop->windows->picture(region, {2, 1}));
        const std::unique_ptr<QPainterPath> outline(m_dialog->getPolygonF());
        QCOMPARE(outline->boundingRect(), QRectF(region.translated(origin)));
    }
}

// Only what changes is painted: after any step the window must look as if all of it had been.
void TestRectangleOverlay::partialRepaintEqualsFull()
{
    m_desktop->windows->composited = false;
    open();
    const auto compare = [this] {
        QApplication::processEvents();
        const QImage partial = onScreen();
        surface()->repaint();
        QCOMPARE(partial, onScreen());
    };
    mouse(QEvent::MouseButtonPress, {301, 203}, Qt::LeftButton);
    for (const QPoint to :
         {QPoint(305, 206), {390, 333}, {217, 251}, {14, 9}, {301, 40}, {599, 449}}) {
        mouse(QEvent::MouseMove, to, Qt::LeftButton);
        compare();
    }
    mouse(QEvent::MouseButtonRelease, {401, 303}, Qt::NoButton);
    compare();
    drag({351, 253}, {277, 201});  // moves the region
    compare();
    drag({20, 20}, {20, 120});  // flat: the region comes back
    compare();
    for (int i = 0; i < 9; ++i)
        QTest::keyClick(surface(), Qt::Key_Left);
    // Keys wait for the next move of the pointer.
    mouse(QEvent::MouseMove, {500, 400}, Qt::NoButton);
    compare();
    m_dialog->dialog_clear();
    compare();
}

void TestRectangleOverlay::feedsMagnifier()
{
    m_desktop->windows->screenList = {{0, 0, 600, 450}, {-600, 0, 600, 450}};
    m_dialog = std::make_unique<Dialog>();
    QSignalSpy spy(m_dialog.get(), &CaptureOverlay::ShowDetailWindowRequest);
    m_dialog->show();
    const auto next = [&](EShowMagOpr opr, int x, int y) {
        const QList<QVariant> sent = spy.takeFirst();
        QCOMPARE(sent.at(0).value<QWidget *>(), m_dialog.get());
        QCOMPARE(sent.at(1).value<EShowMagOpr>(), opr);
        QCOMPARE(QPoint(sent.at(2).toInt(), sent.at(3).toInt()), QPoint(x, y));
    };
    next(eMagOpen, 0, 0);
    mouse(QEvent::MouseMove, {601, 33}, Qt::NoButton);
    next(eMagUpdate, 1, 33);
    QTest::keyClick(surface(), Qt::Key_E, Qt::ControlModifier);
    next(eMagChangeMode, 0, 0);
    // The tick follows a pointer that moves unseen, to the pixel.
    m_desktop->windows->pointerPos = {-301, 77};
    m_desktop->clock->advance(100);
    next(eMagUpdate, -301, 77);
    // While a button is held, and once the overlay has finished, it sends nothing.
    mouse(QEvent::MouseButtonPress, {10, 10}, Qt::LeftButton);
    spy.clear();
    m_desktop->clock->advance(250);
    QVERIFY(spy.isEmpty());
    mouse(QEvent::MouseButtonRelease, {10, 10}, Qt::NoButton);
    m_dialog->finished = true;
    m_desktop->clock->advance(250);
    QVERIFY(spy.isEmpty());
}

void TestRectangleOverlay::ends()
{
    const auto resultOf = [this](const std::function<void()> &end) {
        m_dialog = std::make_unique<Dialog>();
        int result = -1;
        QTimer::singleShot(0, this, [&] {
            result = m_dialog->exec();
            QCoreApplication::exit();
        });
        QTimer::singleShot(0, this, [&] {
            QTest::keyClick(surface(), Qt::Key_Return);  // refused while there is no region
            m_dialog->on_pushButton_clicked();
            drag({10, 10}, {100, 100});
            mouse(QEvent::MouseButtonPress, {200, 200}, Qt::LeftButton);
            mouse(QEvent::MouseMove, {300, 300}, Qt::LeftButton);
            end();
        });
        QApplication::exec();
        return result;
    };
    const auto snap = [this] {
        QTest::mouseClick(m_dialog->findChild<QPushButton *>(u"pushButton"_s), Qt::LeftButton);
    };
    QCOMPARE(resultOf(snap), QDialog::Accepted);
    QCOMPARE(resultOf([this] { QTest::keyClick(surface(), Qt::Key_Return); }), QDialog::Accepted);
    QCOMPARE(m_dialog->getPixmap().size(), QSize(90, 90));
    QCOMPARE(resultOf([this] { QTest::keyClick(surface(), Qt::Key_Escape); }), QDialog::Rejected);
    // The program's end, too, in the middle of a drag.
    QCOMPARE(resultOf([] { QCoreApplication::exit(); }), QDialog::Rejected);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(QWidget::keyboardGrabber(), nullptr);
}

void TestRectangleOverlay::leavesChangedDesktop()
{
    FakeWindowServer &desktop = *m_desktop->windows;
    open();
    desktop.screenList.append({600, 0, 600, 450});
    m_desktop->clock->advance(100);
    QVERIFY(!m_dialog->isVisible());
    open();
    desktop.composited = false;
    m_desktop->clock->advance(100);
    QVERIFY(!m_dialog->isVisible());
    // With a picture of the desktop it needs no compositor, and one may come.
    open();
    m_desktop->clock->advance(150);
    desktop.composited = true;
    m_desktop->clock->advance(150);
    QVERIFY(m_dialog->isVisible());
    // No compositor, and nothing to take a picture of.
    desktop.composited = false;
    desktop.screenList.clear();
    m_dialog = std::make_unique<Dialog>();
    m_dialog->show();
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->exec(), QDialog::Rejected);
}

void TestRectangleOverlay::menuEndsDrag()
{
    open();
    QStringList disabled;
    const QWidget *grabber = surface();
    contextMenu([&] {
        auto *menu = m_dialog->findChild<QMenu *>();
        for (const QAction *action : menu->actions()) {
            if (!action->isEnabled())
                disabled.append(action->text());
        }
        grabber = QWidget::keyboardGrabber();
        menu->close();
    });
    QCOMPARE(disabled, (QStringList{u"Finish(Enter)"_s, u"Clear"_s}));
    QCOMPARE(grabber, nullptr);  // or the menu would hear no key
    QCOMPARE(QWidget::keyboardGrabber(), surface());
    // How a press comes that follows a click soon.
    mouse(QEvent::MouseButtonDblClick, {10, 10}, Qt::LeftButton);
    mouse(QEvent::MouseMove, {110, 90}, Qt::LeftButton);
    QApplication::processEvents();
    contextMenu([this] { m_dialog->reject(); });
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(QWidget::keyboardGrabber(), nullptr);
    QCOMPARE(m_dialog->getPixmap().size(), QSize(100, 80));
}

void TestRectangleOverlay::icons()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"icon.png"_s);
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(Qt::white);
    picture.setPixelColor(4, 4, Qt::red);
    QVERIFY(picture.save(file));
    Dialog dialog;
    dialog.SetPictureHeight(file);
    const QImage shown = dialog.findChild<QLabel *>(u"label_7"_s)->pixmap().toImage();
    QCOMPARE(shown.pixelColor(4, 4), QColor(Qt::red));
    QCOMPARE(shown.pixelColor(0, 0).alpha(), 0);
}

int main(int argc, char **argv)
{
    return runAtScales<TestRectangleOverlay>(argc, argv, {"1", "1.5", "2"});
}

#include "test_rectangleoverlay.moc"
