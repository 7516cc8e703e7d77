#include "capture/windowpick.h"

#include "overlayfixture.h"
#include "platform/windowlist.h"
#include "rows.h"

using namespace Qt::StringLiterals;

class TestWindowPick : public OverlayTest
{
    Q_OBJECT
private slots:
    void init()
    {
        g_widgetExcept = nullptr;
        begin({{0, 0, 600, 450}, {-600, 0, 600, 450}});
        m_desktop->windows->list = {
            // Stands for the overlay.
            {.entry = {.number = 9, .bounds = {-600, 0, 1200, 450}}, .color = Qt::transparent},
            {.entry = {.number = 2, .bounds = {-250, 60, 200, 150}, .owner = u"Mail"_s},
             .color = QColor(0, 160, 255)},
            {.entry = {.number = 1, .bounds = {-300, 30, 400, 300}, .owner = u"Шрифт"_s},
             .color = QColor(200, 40, 6)}};
        // Another pane is no other window.
        if (hasPanes())
            m_desktop->windows->list.prepend(
                {.entry = {.number = FakeOwnWindows::s_furtherPane, .bounds = {-600, 0, 600, 450}},
                 .color = Qt::transparent});
        m_desktop->hands->pointerPos = {-280, 50};
    }

    void tintsWhatIsSeen()
    {
        const auto check = [&](const QByteArray &row, bool composited) {
            init();
            m_desktop->ownWindows->composited = composited;
            open<mouseShot>();
            expect(row, m_overlay->windowOpacity(), 1.0);
            const auto at = [&](int x, int y) {
                const QPoint pixel(x + 600, y);
                const Pane &pane = m_overlay->paneAt(pixel);
                QImage shown(pane.pixels().size(), QImage::Format_ARGB32_Premultiplied);
                shown.fill(Qt::white);
                shown.setDevicePixelRatio(pane.scale());
                pane.surface().render(&shown, {}, {}, {});
                return shown.pixelColor(pixel - pane.pixels().topLeft());
            };
            const QColor clear = composited ? QColor(0, 0, 0, 0) : QColor(Qt::black);
            const QColor tinted = composited ? QColor(0, 0, 0, 100) : QColor(122, 24, 4);
            const QColor covered = composited ? clear : QColor(0, 160, 255);
            expect(row, at(-290, 40), tinted);
            expect(row, at(90, 320), tinted);
            // Its edge is seen on dark and on bright windows: a light line, and a dark one.
            expect(row, at(-300, 150), QColor(Qt::white));
            const qreal scale = m_overlay->paneAt({300, 150}).scale();
            expect(row, at(-300 + qRound(1.5 * scale), 150), QColor(Qt::black));
            expect(row, at(100, 329), clear);
            expect(row, at(-301, 30), clear);
            expect(row, at(-250, 60), covered);
            expect(row, at(-51, 209), covered);
            expect(row, at(-40, 209), tinted);
        };
        check("compositor", true);
        check("no compositor", false);
    }

    void followsThePointer()
    {
        auto &overlay = open<mouseShot>();
        QString name;
        QCOMPARE(overlay.getPixmap(&name).size(), QSize(400, 300));
        QCOMPARE(name, u"Шрифт"_s);
        m_desktop->hands->pointerPos = {-100, 100};
        m_desktop->clock->advance(200);
        QCOMPARE(overlay.getPixmap(&name).size(), QSize(200, 150));
        QCOMPARE(name, u"Mail"_s);
        // By keys, to the one in front and back: of that the middle is covered.
        QTest::keyClick(surface(), Qt::Key_Tab);
        QCOMPARE(overlay.getPixmap(nullptr).size(), QSize(400, 300));
        QTest::keyClick(surface(), Qt::Key_Tab, Qt::ShiftModifier);
        QCOMPARE(overlay.getPixmap(nullptr).size(), QSize(200, 150));
        // The list is that of the moment when the overlay opened. What has closed has no picture.
        m_desktop->windows->list.removeIf([](const auto &it) { return it.entry.number == 2; });
        QVERIFY(overlay.getPixmap(nullptr).isNull());
        // Over no window, and over the ground that the desktop paints: none.
        m_desktop->hands->pointerPos = {300, 400};
        m_desktop->clock->advance(200);
        QVERIFY(overlay.getPixmap(nullptr).isNull());
        m_desktop->windows->list.append(
            {.entry = {.number = 5, .layer = -1000, .bounds = {-600, 0, 1200, 450}},
             .color = Qt::green});
        name = u"as it was"_s;
        QVERIFY(open<mouseShot>().getPixmap(&name).isNull());
        QCOMPARE(name, u"as it was"_s);
    }

    void ends()
    {
        const auto check = [this](const QByteArray &row, int expected,
                                  const std::function<void()> &end) {
            init();
            open<mouseShot>();
            int result = -1;
            QTimer::singleShot(1, this, [&] {
                result = m_overlay->exec();
                QApplication::exit();
            });
            QTimer::singleShot(2, this, [&] {
                QTest::keyClick(surface(), Qt::Key_Space);  // means nothing
                press(Qt::MiddleButton, Qt::MiddleButton);
                end();
            });
            QApplication::exec();
            expect(row, result, expected);
            expect(row, m_overlay->isVisible(), false);
            expect(row, QWidget::keyboardGrabber(), nullptr);
        };
        const Qt::MouseButtons both = Qt::LeftButton | Qt::RightButton;
        check("left", 1, [this] { press(Qt::LeftButton, Qt::LeftButton); });
        check("right", 0, [this] { press(Qt::RightButton, Qt::RightButton); });
        check("both", 1, [&] { press(Qt::RightButton, both); });
        check("Return", 1, [this] { QTest::keyClick(surface(), Qt::Key_Return); });
        check("Escape", 0, [this] { QTest::keyClick(surface(), Qt::Key_Escape); });
        check("the end of the program", 0, [] { QApplication::exit(); });
    }

    void leavesWindowsOut()
    {
        QWidget cover;
        cover.winId();
        g_widgetExcept = &cover;
        m_desktop->ownWindows->numbers.insert(&cover, 2);
        m_desktop->hands->pointerPos = {-100, 100};
        QCOMPARE(open<mouseShot>().getPixmap(nullptr).size(), QSize(400, 300));
        g_widgetExcept = nullptr;
        // A list that the window system could not give.
        m_desktop->windows->list.clear();
        QVERIFY(open<mouseShot>().getPixmap(nullptr).isNull());
    }

private:
    void press(Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        mouse(QEvent::MouseButtonPress, {320, 50}, buttons, button);
    }
};

int main(int argc, char **argv) { return runInPanes<TestWindowPick>(argc, argv); }

#include "test_windowpick.moc"
