#include "capture/windowoutlines.h"

#include "platform/menubardesktop.h"

#include <QRandomGenerator>
#include <QRegion>
#include <QTest>

using Window = WindowOutlines::Window;

namespace {

// Stands for the overlay.
const Window s_overlay{.bounds = {0, 0, 800, 600}};

WindowOutlines outlines(const QList<Window> &windows)
{
    return {QList<Window>{s_overlay} + windows, {{0, 0, 800, 600}}, [](int index) {
                return QSize(100 * index, 50);
            }};
}

QList<QRect> boxes(const QList<QPolygon> &polygons)
{
    QList<QRect> result;
    for (const QPolygon &polygon : polygons)
        result.append(polygon.boundingRect().adjusted(0, 0, -1, -1));
    return result;
}

}  // namespace

class TestWindowOutlines : public QObject
{
    Q_OBJECT

private slots:
    void raw_data();
    void raw();
    void visibleIsExact();
    void picks_data();
    void picks();
    void dockScreen_data();
    void dockScreen();
};

void TestWindowOutlines::raw_data()
{
    QTest::addColumn<QList<Window>>("windows");
    QTest::addColumn<QList<QRect>>("boxesFromRear");
    QTest::addColumn<int>("menuBar");
    const QRect a(10, 10, 100, 80);
    const QRect b(50, 40, 200, 90);
    const QRect c(5, 300, 70, 60);
    const QRect dock(300, 550, 200, 50);  // of the second window's picture
    const auto row = [](const char *name) -> QTestData & { return QTest::newRow(name); };
    using Windows = QList<Window>;
    using Boxes = QList<QRect>;
    row("none") << Windows{} << Boxes{} << -2;
    row("rearmost first") << Windows{{a}, {b}} << Boxes{b, a} << -2;
    row("no width, no height") << Windows{{{1, 1, 0, 5}}, {a}, {{1, 1, 5, 0}}} << Boxes{a} << -2;
    row("the dock stands there twice")
        << Windows{{a}, {b, 20}, {c, 19}} << Boxes{dock, dock, a} << -2;
    row("the dock's level without a dock") << Windows{{a}, {b, 20}, {c}} << Boxes{c, a, a} << -2;
    row("the same, at the end") << Windows{{a}, {b, 20}} << Boxes{a, a} << -2;
    row("the same, in front: nothing to repeat")
        << Windows{{b, 20}, {a}} << Boxes{a, {0, 0, -1, -1}} << -2;
    row("the widest bar counts") << Windows{{a, 25}, {b, 25}, {c, 25}} << Boxes{c, b, a} << 1;
    row("a bar at the rear") << Windows{{c}, {b}, {a, 25}} << Boxes{a, b, c} << 0;
}

void TestWindowOutlines::raw()
{
    QFETCH(QList<Window>, windows);
    const WindowOutlines made = outlines(windows);
    QTEST(boxes(made.rawPolygons()), "boxesFromRear");
    QTEST(made.menuBarIndex(), "menuBar");
}

// A hundred windows in a heap: what is tinted must be exactly what is seen.
void TestWindowOutlines::visibleIsExact()
{
    QRandomGenerator random(20);
    QList<Window> windows;
    for (int i = 0; i < 100; ++i)
        windows.append({.bounds = {random.bounded(-50, 700), random.bounded(-50, 500),
                                   random.bounded(1, 400), random.bounded(1, 300)}});
    // Behind a window that hides it whole.
    windows.append({.bounds = windows[50].bounds.adjusted(1, 1, -1, -1)});
    const WindowOutlines made = outlines(windows);
    QCOMPARE(made.visiblePolygons().size(), windows.size());
    for (int i = 0; i < windows.size(); ++i) {
        QRegion seen = windows[i].bounds;
        // From the rear, as one that is hidden whole by the next keeps what it has.
        for (int j = i - 1; j >= 0; --j) {
            if (!windows[j].bounds.contains(seen.boundingRect()))
                seen -= windows[j].bounds;
        }
        QVERIFY2(QRegion(made.visible(i + 1)) == seen, qPrintable(QString::number(i)));
    }
    QVERIFY(made.visible(0).isEmpty());
    QVERIFY(made.visible(static_cast<int>(windows.size()) + 1).isEmpty());
}

void TestWindowOutlines::picks_data()
{
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("leftOut");
    QTest::addColumn<int>("pick");
    QTest::newRow("the front one of two") << QPoint(60, 60) << 0 << 0 << 2;
    QTest::newRow("its first pixel") << QPoint(50, 40) << 0 << 0 << 2;
    QTest::newRow("beyond its last") << QPoint(250, 60) << 2 << 0 << 2;
    QTest::newRow("the one behind") << QPoint(20, 60) << 2 << 0 << 3;
    QTest::newRow("through one left out") << QPoint(60, 60) << 0 << 2 << 3;
    QTest::newRow("nothing keeps the pick") << QPoint(500, 500) << 3 << 0 << 3;
    QTest::newRow("through the menu bar") << QPoint(20, 15) << 2 << 0 << 3;
    QTest::newRow("the menu bar alone keeps the pick") << QPoint(700, 5) << 2 << 0 << 2;
    QTest::newRow("nothing at all") << QPoint(500, 500) << 0 << 0 << 0;
}

void TestWindowOutlines::picks()
{
    QFETCH(QPoint, point);
    QFETCH(int, current);
    QFETCH(int, leftOut);
    const WindowOutlines made =
        outlines({{{0, 0, 800, 20}, 25}, {{50, 40, 200, 90}}, {{10, 10, 100, 80}}});
    QTEST(made.pick(point, current, [leftOut](int pick) { return pick == leftOut; }), "pick");
}

void TestWindowOutlines::dockScreen_data()
{
    QTest::addColumn<QList<QRect>>("screens");
    QTest::addColumn<QRect>("screen");
    const QRect primary(0, 0, 800, 600);
    QTest::newRow("one") << QList<QRect>{primary} << primary;
    QTest::newRow("beside") << QList<QRect>{primary, {800, 0, 800, 900}} << primary;
    QTest::newRow("above") << QList<QRect>{primary, {0, -600, 800, 600}} << primary;
    QTest::newRow("to the right and below")
        << QList<QRect>{primary, {800, 600, 800, 600}} << primary;
    QTest::newRow("to the left and below")
        << QList<QRect>{primary, {-800, 600, 800, 600}} << primary;
    QTest::newRow("a chain, not in order")
        << QList<QRect>{primary, {100, 1100, 700, 400}, {0, 600, 900, 500}}
        << QRect(100, 1100, 700, 400);
}

void TestWindowOutlines::dockScreen()
{
    QFETCH(QList<QRect>, screens);
    QTEST(MenuBarDesktop::dockScreen(screens), "screen");
}

QTEST_APPLESS_MAIN(TestWindowOutlines)
#include "test_windowoutlines.moc"
