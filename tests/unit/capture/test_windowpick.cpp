#include "capture/windowpick.h"

#include "fakedesktop.h"
#include "platform/windowlist.h"
#include "testmain.h"

#include <QTimer>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

class TestWindowPick : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_overlay.reset();
        g_widgetExcept = nullptr;
        m_desktop = std::make_unique<FakeDesktop>();
        m_desktop->windows->screenList = {{0, 0, 600, 450}, {-600, 0, 600, 450}};
        m_desktop->windows->list = {
            // Stands for the overlay.
            {.entry = {.number = 9, .bounds = {-600, 0, 1200, 450}}, .color = Qt::transparent},
            {.entry = {.number = 2, .bounds = {-250, 60, 200, 150}, .owner = u"Mail"_s},
             .color = QColor(0, 160, 255)},
            {.entry = {.number = 1, .bounds = {-300, 30, 400, 300}, .owner = u"Шрифт"_s},
             .color = QColor(200, 40, 6)}};
        m_desktop->windows->pointerPos = {-280, 50};
    }

    void tintsWhatIsSeen_data()
    {
        QTest::addColumn<bool>("composited");
        QTest::newRow("compositor") << true;
        QTest::newRow("no compositor") << false;
    }

    void tintsWhatIsSeen()
    {
        QFETCH(bool, composited);
        m_desktop->windows->composited = composited;
        m_overlay = std::make_unique<mouseShot>();
        QCOMPARE(m_overlay->windowOpacity(), 1.0);
        QCOMPARE(m_desktop->windows->covered, (QList<QRect>{{-600, 0, 1200, 450}}));
        QImage shown(1200, 450, QImage::Format_ARGB32_Premultiplied);
        shown.fill(Qt::white);
        shown.setDevicePixelRatio(m_overlay->devicePixelRatioF());
        surface()->render(&shown, {}, {}, {});
        const auto at = [&](int x, int y) { return shown.pixelColor(x + 600, y); };
        const QColor clear = composited ? QColor(0, 0, 0, 0) : QColor(Qt::black);
        const QColor tinted = composited ? QColor(0, 0, 0, 100) : QColor(122, 24, 4);
        const QColor covered = composited ? clear : QColor(0, 160, 255);
        QCOMPARE(at(-300, 30), tinted);
        QCOMPARE(at(99, 329), tinted);
        QCOMPARE(at(100, 329), clear);
        QCOMPARE(at(-301, 30), clear);
        QCOMPARE(at(-250, 60), covered);
        QCOMPARE(at(-51, 209), covered);
        QCOMPARE(at(-50, 209), tinted);
    }

    void followsThePointer()
    {
        m_overlay = std::make_unique<mouseShot>();
        QString name;
        QCOMPARE(m_overlay->getPixmap(&name).size(), QSize(400, 300));
        QCOMPARE(name, u"Шрифт"_s);
        m_desktop->windows->pointerPos = {-100, 100};
        m_desktop->clock->advance(200);
        QCOMPARE(m_overlay->getPixmap(&name).size(), QSize(200, 150));
        QCOMPARE(name, u"Mail"_s);
        // By keys, to the one in front and back: of that the middle is covered.
        QTest::keyClick(surface(), Qt::Key_Tab);
        QCOMPARE(m_overlay->getPixmap(nullptr).size(), QSize(400, 300));
        QTest::keyClick(surface(), Qt::Key_Tab, Qt::ShiftModifier);
        QCOMPARE(m_overlay->getPixmap(nullptr).size(), QSize(200, 150));
        // The list is that of the moment when the overlay opened. What has closed has no picture.
        m_desktop->windows->list.remove(1);
        QVERIFY(m_overlay->getPixmap(nullptr).isNull());
        // Over no window: none at first.
        m_desktop->windows->pointerPos = {300, 400};
        m_overlay = std::make_unique<mouseShot>();
        name = u"as it was"_s;
        QVERIFY(m_overlay->getPixmap(&name).isNull());
        QCOMPARE(name, u"as it was"_s);
    }

    void ends_data()
    {
        using End = std::function<void(TestWindowPick &)>;
        QTest::addColumn<End>("end");
        QTest::addColumn<int>("result");
        const auto pressing = [](Qt::MouseButton button, Qt::MouseButtons buttons) {
            return End([=](TestWindowPick &test) { test.press(button, buttons); });
        };
        const auto key = [](Qt::Key code) {
            return End([=](TestWindowPick &test) { QTest::keyClick(test.surface(), code); });
        };
        QTest::newRow("left") << pressing(Qt::LeftButton, Qt::LeftButton) << 1;
        QTest::newRow("right") << pressing(Qt::RightButton, Qt::RightButton) << 0;
        QTest::newRow("both") << pressing(Qt::RightButton, Qt::LeftButton | Qt::RightButton) << 1;
        QTest::newRow("Return") << key(Qt::Key_Return) << 1;
        QTest::newRow("Escape") << key(Qt::Key_Escape) << 0;
        QTest::newRow("the end of the program")
            << End([](TestWindowPick &) { QApplication::exit(); }) << 0;
    }

    void ends()
    {
        using End = std::function<void(TestWindowPick &)>;
        QFETCH(End, end);
        m_overlay = std::make_unique<mouseShot>();
        int result = -1;
        QTimer::singleShot(1, this, [&] {
            result = m_overlay->exec();
            QApplication::exit();
        });
        QTimer::singleShot(2, this, [&] {
            QTest::keyClick(surface(), Qt::Key_Space);  // means nothing
            press(Qt::MiddleButton, Qt::MiddleButton);
            end(*this);
        });
        QApplication::exec();
        QTEST(result, "result");
        QVERIFY(!m_overlay->isVisible());
        QCOMPARE(QWidget::keyboardGrabber(), nullptr);
    }

    void leavesWindowsOut()
    {
        QWidget cover;
        cover.winId();
        g_widgetExcept = &cover;
        m_desktop->windows->numbers.insert(&cover, 2);
        m_desktop->windows->pointerPos = {-100, 100};
        m_overlay = std::make_unique<mouseShot>();
        QCOMPARE(m_overlay->getPixmap(nullptr).size(), QSize(400, 300));
        g_widgetExcept = nullptr;
        // A list that the window system could not give.
        m_desktop->windows->list.clear();
        m_overlay = std::make_unique<mouseShot>();
        QVERIFY(m_overlay->getPixmap(nullptr).isNull());
    }

private:
    QWidget *surface() const { return m_overlay->findChild<QWidget *>(u"widget"_s); }
    void press(Qt::MouseButton button, Qt::MouseButtons buttons) const
    {
        QMouseEvent event(QEvent::MouseButtonPress, {9, 9}, {9, 9}, button, buttons,
                          Qt::NoModifier);
        QApplication::sendEvent(surface(), &event);
    }

    std::unique_ptr<FakeDesktop> m_desktop;
    std::unique_ptr<mouseShot> m_overlay;
};

int main(int argc, char **argv)
{
    return runAtScales<TestWindowPick>(argc, argv, {"1", "1.5", "2"});
}

#include "test_windowpick.moc"
