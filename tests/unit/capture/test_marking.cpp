// What the overlays have in common in which something is marked: what becomes of it, what was
// marked last, the colour below the pointer, and what is told on them.

#include "capture/ellipseoverlay.h"
#include "capture/lastmark.h"
#include "capture/polygonoverlay.h"
#include "capture/rectangleoverlay.h"
#include "capture/takebuttons.h"
#include "config/xmlstore.h"
#include "overlayfixture.h"
#include "rows.h"

#include <QClipboard>
#include <QPushButton>
#include <QSignalSpy>
#include <QWheelEvent>

#include <cmath>

using namespace Qt::StringLiterals;

class TestMarking : public OverlayTest
{
    Q_OBJECT

private slots:
    void init()
    {
        beginSettings();
        begin({{0, 0, 600, 450}, {-600, 0, 600, 450}});
    }

    void cleanup()
    {
        m_overlay.reset();
        FreeAllXmlDocument();
    }

    // By keys, by buttons, and from the menu, as soon as there is something to take.
    void goals()
    {
        const auto check = [this](const QByteArray &row, int goals, bool delayed,
                                  const std::function<void()> &end) {
            for (const bool isPolygon : {false, true}) {
                MarkingOverlay &overlay =
                    isPolygon ? static_cast<MarkingOverlay &>(open<dlgFreeHand>()) : open<Dialog>();
                end();
                expect(row + " too early", overlay.isVisible(), true);
                if (isPolygon) {
                    for (const QPoint vertex : {QPoint(701, 101), {753, 103}, {700, 200}})
                        click(vertex);
                } else {
                    drag({701, 101}, {753, 200});
                }
                end();
                expect(row, overlay.result(), QDialog::Accepted);
                expect(row, overlay.goals() ? overlay.goals()->toInt() : 0, goals);
                expect(row, overlay.isDelayed(), delayed);
                expect(row, overlay.take().picture.size().isEmpty(), false);
            }
        };
        const auto key = [this](Qt::Key which, Qt::KeyboardModifiers modifiers = {}) {
            return [this, which, modifiers] { QTest::keyClick(surface(), which, modifiers); };
        };
        // In a Russian layout, the places being those of C and T.
        const auto russian = [this](char16_t letter, quint32 place,
                                    Qt::KeyboardModifiers modifiers = {}) {
            return [this, letter, place, modifiers] {
                QKeyEvent event(QEvent::KeyPress, letter, modifiers, place, 0, 0);
                QApplication::sendEvent(surface(), &event);
            };
        };
        const auto button = [this](int index) {
            return [this, index] {
                auto *frame = m_overlay->findChild<TakeButtons *>();
                auto *at = frame->findChildren<QPushButton *>().at(index);
                if (at->isVisible())
                    QTest::mouseClick(at, Qt::LeftButton);
            };
        };
        const auto copy = static_cast<int>(GrabGoal::Copy);
        const auto save = static_cast<int>(GrabGoal::Save);
        const auto text = static_cast<int>(GrabGoal::Text);
        check("Ctrl+C", copy, false, key(Qt::Key_C, Qt::ControlModifier));
        check("Ctrl+S", save, false, key(Qt::Key_S, Qt::ControlModifier));
        const auto pin = static_cast<int>(GrabGoal::Pin);
        check("P", pin, false, key(Qt::Key_P));
        check("T", text, false, key(Qt::Key_T));
        check("Return", 0, false, key(Qt::Key_Return));
        check("Enter", 0, false, key(Qt::Key_Enter, Qt::KeypadModifier));
        check("D", 0, true, key(Qt::Key_D));
        check("Ctrl+Es", copy, false, russian(u'\u0421', 54, Qt::ControlModifier));
        check("Ie", text, false, russian(u'\u0415', 28));
        check("Copy", copy, false, button(0));
        check("Save", save, false, button(1));
        check("Pin", pin, false, button(2));
        check("Text", text, false, button(3));
        check("Take", 0, false, button(4));
    }

    // Off the handles and the caption, and whole; and away while something is dragged.
    void buttonsKeepOff()
    {
        open<Dialog>();
        auto *frame = m_overlay->findChild<TakeButtons *>();
        auto *caption = m_overlay->findChild<QWidget *>(u"widget_2"_s);
        for (const QRect &region : {QRect(20, 30, 60, 40),
                                    {640, 400, 90, 45},
                                    {900, 10, 290, 30},
                                    {300, 150, 200, 120},
                                    {610, 5, 585, 440}}) {
            QTest::keyClick(surface(), Qt::Key_Backspace, Qt::ShiftModifier);
            QVERIFY(!frame->isVisible());
            drag(region.topLeft(), region.topLeft() + QPoint(region.width(), region.height()));
            QVERIFY(isWhole(frame));
            const Pane *pane = nullptr;
            for (const Pane &each : m_overlay->panes())
                pane = frame->window() == &each.window() ? &each : pane;
            const QRect box(pane->toPixels(frame->pos()), pane->toPixels(frame->size()));
            QVERIFY(!frame->geometry().intersects(caption->geometry()) ||
                    frame->window() != caption->window());
            for (int zone = 1; zone <= RegionSelection::s_handleCount; ++zone)
                QVERIFY(!box.contains(RegionSelection::handleCentre(region, zone)));
            mouse(QEvent::MouseButtonPress, region.center(), Qt::LeftButton);
            QVERIFY(!frame->isVisible());
            mouse(QEvent::MouseButtonRelease, region.center(), Qt::NoButton);
            QVERIFY(frame->isVisible());
        }
        for (const QPushButton *button : frame->findChildren<QPushButton *>())
            QVERIFY(button->width() >= 24 && button->height() >= 24);
    }

    void takesByItself()
    {
        const MarkingHabits release{.takesOnRelease = true};
        const MarkingHabits twice{.takesOnDoubleClick = true};
        open<MyDrawRound>(nullptr, release);
        click({100, 100});
        QVERIFY(m_overlay->isVisible());
        drag({101, 101}, {201, 151});
        QCOMPARE(m_overlay->result(), QDialog::Accepted);
        for (const auto &[habits, result] : {std::pair(MarkingHabits(), 0), {twice, 1}}) {
            open<MyDrawRound>(nullptr, habits);
            drag({101, 101}, {301, 201});
            // Beside it the second click is a press in any case.
            for (const QPoint at : {QPoint(400, 300), QPoint(200, 150)}) {
                QVERIFY(m_overlay->isVisible());
                click(at);
                mouse(QEvent::MouseButtonDblClick, at, Qt::LeftButton);
                mouse(QEvent::MouseButtonRelease, at, Qt::NoButton);
            }
            QCOMPARE(m_overlay->result(), result);
        }
    }

    void lastArea()
    {
        const auto again = [this] { QTest::keyClick(surface(), Qt::Key_R); };
        const auto *ellipse = &open<MyDrawRound>();
        again();
        QVERIFY(word()->isVisible());
        QCOMPARE(ellipse->getEllipse(), nullptr);
        open<Dialog>();
        drag({501, 101}, {652, 202});
        QTest::keyClick(surface(), Qt::Key_Return);
        // What is given up is not kept.
        open<Dialog>();
        drag({10, 10}, {30, 30});
        QTest::keyClick(surface(), Qt::Key_Escape);
        const auto regionAgain = [&] {
            auto &overlay = open<Dialog>();
            again();
            const std::unique_ptr<QPainterPath> path(overlay.getPolygonF());
            return path ? path->boundingRect().toRect().translated(overlay.area().topLeft())
                        : QRect();
        };
        QCOMPARE(regionAgain(), QRect(-99, 101, 151, 101));
        QCOMPARE(text(u"label_6"_s), u"151 px"_s);
        // It is the same as one that was dragged: its handle, and the smaller desktop.
        drag({501, 101}, {491, 91});
        QCOMPARE(text(u"label_6"_s), u"161 px"_s);
        m_desktop->screens->list = {{0, 0, 600, 150}};
        QCOMPARE(regionAgain(), QRect(0, 101, 52, 49));
        m_desktop->screens->list = {{0, 0, 600, 90}};
        QCOMPARE(regionAgain(), QRect());

        m_desktop->screens->list = {{0, 0, 600, 450}, {-600, 0, 600, 450}};
        open<dlgFreeHand>();
        for (const QPoint vertex : {QPoint(501, 101), {653, 103}, {600, 200}})
            click(vertex);
        QTest::keyClick(surface(), Qt::Key_Return);
        auto &polygon = open<dlgFreeHand>();
        again();
        QTest::keyClick(surface(), Qt::Key_Return);
        QCOMPARE(polygon.result(), QDialog::Accepted);
        const std::unique_ptr<QPolygonF> points(polygon.getPolygon());
        QCOMPARE(*points, QPolygonF({{99, 99}, {152, 2}, {0, 0}}));
        // Without an overlay too, of whatever kind it was.
        const Grab last = takeLastMark();
        QCOMPARE(last.picture.size(), QSize(152, 99));
        QCOMPARE(std::get<QPolygonF>(last.outline), QPolygonF({{0, 0}, {152, 2}, {99, 99}}));
        keepLastMark(u"Ellipse"_s, {{QPointF(-20, 10), QPointF(-10, 16)}});
        QCOMPARE(std::get<QPainterPath>(takeLastMark().outline).boundingRect(),
                 QRectF(0, 0, 10, 6));
        keepLastMark(u"Rectangle"_s, {{QPointF(5000, 10), QPointF(5010, 16)}});
        QVERIFY(takeLastMark().picture.isNull());
        // A freehand line is longer than a setting may be.
        QPolygonF line;
        for (int i = 0; i < 5000; ++i)
            line.append(QPointF(i % 1000 - 600, i % 449));
        keepLastMark(u"Polygon"_s, line);
        QVERIFY(lastMark(u"Polygon"_s).size() > 100);
        QCOMPARE(lastMark(u"Polygon"_s).constFirst(), line.constFirst());
    }

    void colourAndWheel()
    {
        open<Dialog>();
        const auto copied = [this](QPoint at) {
            mouse(QEvent::MouseMove, at, Qt::NoButton);
            QTest::keyClick(surface(), Qt::Key_C);
            return QGuiApplication::clipboard()->text();
        };
        QCOMPARE(copied({560, 70}), u"#00a0ff"_s);
        QCOMPARE(copied({1199, 449}), u"#c82807"_s);
        // The menu lies below the pointer by the time that its entry is chosen.
        QTimer::singleShot(0, m_overlay.get(), [this] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            mouse(QEvent::MouseMove, {1199, 449}, Qt::NoButton);
            for (QAction *action : menu->actions()) {
                if (action->text().contains(u"#00a0ff"_s))
                    action->trigger();
            }
            menu->close();
        });
        mouse(QEvent::MouseMove, {560, 70}, Qt::NoButton);
        QContextMenuEvent wanted(QContextMenuEvent::Keyboard, {}, {});
        QCoreApplication::sendEvent(surface(), &wanted);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"#00a0ff"_s);
        QCOMPARE(copied({1199, 449}), u"#c82807"_s);
        QVERIFY(isWhole(word()));
        QVERIFY(word()->text().contains(u"#c82807"_s));
        m_desktop->clock->advance(1400);
        QTest::keyClick(surface(), Qt::Key_C);
        m_desktop->clock->advance(1400);
        QVERIFY(word()->isVisible());
        m_desktop->clock->advance(200);
        QVERIFY(!word()->isVisible());
        // Two halves of a step are one.
        const QSignalSpy spy(m_overlay.get(), &CaptureOverlay::ShowDetailWindowRequest);
        for (const int angle : {60, 60, -240}) {
            QWheelEvent event({9, 9}, {9, 9}, {}, {0, angle}, Qt::NoButton, Qt::NoModifier,
                              Qt::NoScrollPhase, false);
            QApplication::sendEvent(surface(), &event);
        }
        QCOMPARE(spy.size(), 2);
        QCOMPARE(spy[0][1].value<EShowMagOpr>(), eMagMultiple);
        QCOMPARE(spy[0][2].toInt(), 1);
        QCOMPARE(spy[1][2].toInt(), -2);
    }

    void hintGoes()
    {
        open<Dialog>(nullptr, MarkingHabits{.showsHint = true});
        auto *hint = m_overlay->findChild<QWidget *>(u"hint"_s);
        for (const QPoint at : {QPoint(300, 40), {300, 420}, {900, 40}, {900, 420}}) {
            mouse(QEvent::MouseMove, at, Qt::NoButton);
            QVERIFY(hint->isVisible());
            const Pane &pane = m_overlay->paneAt(at);
            QCOMPARE(hint->parentWidget(), &pane.surface());
            QVERIFY(!hint->geometry().contains(pane.toLogical(at)));
        }
        drag({701, 101}, {753, 200});
        QVERIFY(!hint->isVisible());
        QTest::keyClick(surface(), Qt::Key_Return);
        QCOMPARE(m_overlay->result(), QDialog::Accepted);
        open<Dialog>();
        QVERIFY(!m_overlay->findChild<QWidget *>(u"hint"_s)->isVisible());
    }

    // What is marked is as it is, the rest is dimmed, and there is an edge between.
    void clearSelection()
    {
        constexpr int s_shades = 8;
        const MarkingHabits habits{.clearSelection = true};
        for (const bool composited : {true, false}) {
            begin({{0, 0, 600, 450}, {-600, 0, 600, 450}});
            m_desktop->ownWindows->composited = composited;
            const QColor marked = composited ? QColor(0, 0, 0, 0) : QColor(0, 160, 255);
            const QColor dimmed = composited ? QColor(0, 0, 0, 153) : QColor(80, 16, 3);
            open<Dialog>(nullptr, habits);
            QCOMPARE(m_overlay->windowOpacity(), 1.0);
            mouse(QEvent::MouseButtonPress, {561, 81}, Qt::LeftButton);
            for (const QPoint to : {QPoint(700, 90), {620, 200}, {700, 190}}) {
                mouse(QEvent::MouseMove, to, Qt::LeftButton);
                compareWithFullRepaint(s_shades);
            }
            mouse(QEvent::MouseButtonRelease, {700, 190}, Qt::NoButton);
            QApplication::processEvents();
            QImage shown = onScreen();
            QCOMPARE(shown.pixelColor(660, 110), marked);
            QCOMPARE(shown.pixelColor(300, 300), dimmed);
            // Half of the light line, and the dark one behind it.
            QVERIFY(shown.pixelColor(660, 81).red() > 100);
            QVERIFY(shown.pixelColor(660, 79).alpha() > 160);
            open<MyDrawRound>(nullptr, habits);
            drag({561, 81}, {700, 190});
            shown = onScreen();
            QCOMPARE(shown.pixelColor(660, 110), marked);
            QCOMPARE(shown.pixelColor(565, 85).red() < 81, true);
            compareWithFullRepaint(s_shades);
            auto &polygon = open<dlgFreeHand>(nullptr, habits);
            for (const QPoint at : {QPoint(561, 81), {720, 85}, {700, 190}, {570, 170}}) {
                mouse(QEvent::MouseMove, at + QPoint(-9, 4), Qt::NoButton);
                compareWithFullRepaint(s_shades);
                click(at);
                compareWithFullRepaint(s_shades);
            }
            QCOMPARE(onScreen().pixelColor(660, 110), marked);
            polygon.deletelastpoint();
            compareWithFullRepaint(s_shades);
        }
    }

    // Over every picture, also where the window lets some of it through.
    void readable()
    {
        const auto check = [this](const QByteArray &row, const QWidget *widget) {
            const QRect inside = widget->rect().adjusted(6, 4, -6, -4);
            const QImage shown =
                widget->window()
                    ->grab({widget->mapTo(widget->window(), inside.topLeft()), inside.size()})
                    .toImage();
            for (const int below : {0, 128, 255}) {
                double least = 1;
                double most = 0;
                for (int y = 0; y < shown.height(); ++y) {
                    for (int x = 0; x < shown.width(); ++x) {
                        const double light = luminance(shown.pixelColor(x, y), below);
                        least = std::min(least, light);
                        most = std::max(most, light);
                    }
                }
                QVERIFY2((most + 0.05) / (least + 0.05) >= 4.5,
                         row + QByteArray::number((most + 0.05) / (least + 0.05)));
            }
        };
        const auto checkPlates = [&](const QByteArray &row) {
            check(row + " hint ", m_overlay->findChild<QWidget *>(u"hint"_s));
            drag({101, 101}, {401, 301});
            click({160, 330});
            click({101, 230});
            QTest::keyClick(surface(), Qt::Key_C);
            check(row + " word ", word());
            for (const QPushButton *button :
                 m_overlay->findChild<TakeButtons *>()->findChildren<QPushButton *>())
                check(row + " button ", button);
        };
        open<dlgFreeHand>(nullptr, MarkingHabits{.showsHint = true});
        checkPlates("polygon");
        open<Dialog>(nullptr, MarkingHabits{.showsHint = true});
        checkPlates("rectangle");
        for (const QString &label : {u"label_6"_s, u"label_8"_s})
            check("size ", m_overlay->findChild<QLabel *>(label));
        check("Snap ", m_overlay->findChild<QPushButton *>(u"pushButton"_s));
    }

private:
    // How bright the eye finds a colour, 0 to 1, that is seen through the window.
    double luminance(const QColor &color, int below) const
    {
        const double opacity = m_overlay->windowOpacity();
        const auto part = [&](int value) {
            const double mixed = (value * opacity + below * (1 - opacity)) / 255;
            return mixed <= 0.04045 ? mixed / 12.92 : std::pow((mixed + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * part(color.red()) + 0.7152 * part(color.green()) +
               0.0722 * part(color.blue());
    }
    QLabel *word() const { return m_overlay->findChild<QLabel *>(u"word"_s); }
};

int main(int argc, char **argv) { return runInPanes<TestMarking>(argc, argv); }

#include "test_marking.moc"
