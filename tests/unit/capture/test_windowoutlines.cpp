#include "capture/windowoutlines.h"

#include "platform/menubardesktop.h"
#include "rows.h"

#include <QRandomGenerator>
#include <QRegion>

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
    void raw()
    {
        using Windows = QList<Window>;
        using Boxes = QList<QRect>;
        const auto check = [&](const QByteArray &row, const QList<Window> &windows,
                               const QList<QRect> &boxesFromRear, int menuBar) {
            const WindowOutlines made = outlines(windows);
            expect(row, boxes(made.rawPolygons()), boxesFromRear);
            expect(row, made.menuBarIndex(), menuBar);
        };
        const QRect a(10, 10, 100, 80);
        const QRect b(50, 40, 200, 90);
        const QRect c(5, 300, 70, 60);
        const QRect dock(300, 550, 200, 50);  // of the second window's picture
        check("none", Windows{}, Boxes{}, -2);
        check("rearmost first", Windows{{a}, {b}}, Boxes{b, a}, -2);
        check("no width, no height", Windows{{{1, 1, 0, 5}}, {a}, {{1, 1, 5, 0}}}, Boxes{a}, -2);
        check("the dock stands there twice", Windows{{a}, {b, 20}, {c, 19}}, Boxes{dock, dock, a},
              -2);
        check("the dock's level without a dock", Windows{{a}, {b, 20}, {c}}, Boxes{c, a, a}, -2);
        check("the same, at the end", Windows{{a}, {b, 20}}, Boxes{a, a}, -2);
        check("the same, in front: nothing to repeat", Windows{{b, 20}, {a}},
              Boxes{a, {0, 0, -1, -1}}, -2);
        check("the widest bar counts", Windows{{a, 25}, {b, 25}, {c, 25}}, Boxes{c, b, a}, 1);
        check("a bar at the rear", Windows{{c}, {b}, {a, 25}}, Boxes{a, b, c}, 0);
    }

    // A hundred windows in a heap: what is tinted must be exactly what is seen.
    void visibleIsExact()
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

    void picks()
    {
        const auto check = [&](const QByteArray &row, QPoint point, int leftOut, int pick) {
            const WindowOutlines made =
                outlines({{{0, 0, 800, 20}, 25}, {{50, 40, 200, 90}}, {{10, 10, 100, 80}}});
            expect(row, made.pick(point, [leftOut](int index) { return index == leftOut; }), pick);
        };
        check("the front one of two", {60, 60}, 0, 2);
        check("its first pixel", {50, 40}, 0, 2);
        check("beyond its last", {250, 60}, 0, 0);
        check("the one behind", {20, 60}, 0, 3);
        check("through one left out", {60, 60}, 2, 3);
        check("through the menu bar", {20, 15}, 0, 3);
        check("the menu bar alone", {700, 5}, 0, 0);
        check("nothing at all", {500, 500}, 0, 0);
    }

    void dockScreen()
    {
        const auto check = [&](const QByteArray &row, const QList<QRect> &screens,
                               const QRect &screen) {
            expect(row, MenuBarDesktop::dockScreen(screens), screen);
        };
        const QRect primary(0, 0, 800, 600);
        check("one", {primary}, primary);
        check("beside", {primary, {800, 0, 800, 900}}, primary);
        check("above", {primary, {0, -600, 800, 600}}, primary);
        check("to the right and below", {primary, {800, 600, 800, 600}}, primary);
        check("to the left and below", {primary, {-800, 600, 800, 600}}, primary);
        check("a chain, not in order", {primary, {100, 1100, 700, 400}, {0, 600, 900, 500}},
              {100, 1100, 700, 400});
    }
};

QTEST_APPLESS_MAIN(TestWindowOutlines)
#include "test_windowoutlines.moc"
