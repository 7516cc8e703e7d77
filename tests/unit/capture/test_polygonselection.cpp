#include "capture/polygonselection.h"
#include "rows.h"

using namespace Qt::StringLiterals;

namespace {

constexpr Qt::KeyboardModifiers s_none = Qt::NoModifier;
constexpr Qt::KeyboardModifiers s_command = Qt::ControlModifier;
constexpr QSize s_surface(800, 600);

using Points = QList<QPoint>;

// The pointer goes there, and clicks.
bool click(PolygonSelection &selection, QPoint at, Qt::KeyboardModifiers modifiers = s_none)
{
    selection.move(at, modifiers);
    if (selection.press(at, at, modifiers))
        return true;
    selection.release(at, modifiers);
    return false;
}

// Clicks set these vertices, and the pointer goes on to `end`.
PolygonSelection clicked(const Points &vertices, QPoint end)
{
    PolygonSelection selection;
    selection.setSurface(s_surface);
    for (const QPoint vertex : vertices)
        click(selection, vertex);
    selection.move(end, s_none);
    return selection;
}

// First vertex first, the rubber end last.
Points inOrder(const PolygonSelection &selection)
{
    Points result;
    for (const QPointF &point : selection.points())
        result.prepend(point.toPoint());
    return result;
}

}  // namespace

class TestPolygonSelection : public QObject
{
    Q_OBJECT

private slots:
    void adjust()
    {
        const auto check = [&](const QByteArray &row, QPoint offset, QPoint adjusted) {
            const QPoint reference(200, 300);
            const PolygonSelection selection = clicked({{10, 10}, reference}, {7, 7});
            expect(row, selection.AdjustPoint(reference + offset, s_command) - reference, adjusted);
            for (const Qt::KeyboardModifiers other :
                 {s_none, s_command | Qt::ShiftModifier, Qt::KeyboardModifiers(Qt::AltModifier)})
                expect(row, selection.AdjustPoint(reference + offset, other), reference + offset);
            PolygonSelection begun;
            begun.press({10, 10}, {10, 10}, s_none);
            expect(row, begun.AdjustPoint(reference + offset, s_command), reference + offset);
        };
        check("right", {100, 20}, {102, 0});
        check("right, from 360", {100, -20}, {102, 0});
        check("right and down", {60, 50}, {55, 55});
        check("down", {10, 90}, {0, 91});
        check("left and down", {-40, 60}, {-51, 51});
        check("left", {-70, -9}, {-71, 0});
        check("left and up", {-30, -30}, {-30, -30});
        check("up", {-7, -80}, {0, -80});
        check("right and up", {50, -30}, {41, -41});
        check("the point itself", {0, 0}, {0, 0});
        // The first whole slopes on either side of 22.5 degrees.
        check("just under half way", {169, 70}, {183, 0});
        check("just over half way", {128, 54}, {98, 98});
    }

    void input()
    {
        const QPoint a(10, 10);
        const QPoint b(200, 20);
        const QPoint c(150, 90);
        const QMap<char, QPoint> places{{'a', a}, {'b', b}, {'c', c}};
        // Lower case: the pointer moves there; upper case: a button goes down, or up after "-".
        const auto check = [&](const QByteArray &row, const QByteArray &events,
                               const Points &points) {
            PolygonSelection selection;
            for (qsizetype i = 0; i < events.size(); ++i) {
                const bool up = events[i] == '-';
                i += up ? 1 : 0;
                const QPoint place = places[events.toLower()[i]];
                if (up)
                    selection.release(place, s_none);
                else if (events[i] < 'a')
                    selection.press(place, place, s_none);
                else
                    selection.move(place, s_none);
            }
            expect(row, inOrder(selection), points);
        };
        check("before the first press", "a", {});
        check("first press", "aA", {a});
        check("click: vertex and end", "aA-A", {a, a});
        check("the end follows", "aA-Abc", {a, c});
        check("second vertex", "aA-AbB-B", {a, b, b});
        check("twice at one spot", "aA-AA-A", {a, a});
        check("freehand", "aA-AbBcb-B", {a, b, c, b, b});
        check("freehand at once", "aAbc-C", {a, b, c, c});
        check("press away from the end", "aA-AbC-C", {a, c, c});
        check("another button's release", "aA-Ab-B", {a, b, b});
    }

    // What is set on the last row or column is set at the edge behind it.
    void lastPixels()
    {
        PolygonSelection selection = clicked({{799, 10}, {20, 599}, {798, 598}}, {799, 599});
        QCOMPARE(inOrder(selection), (Points{{800, 10}, {20, 600}, {798, 598}, {800, 600}}));
        selection.finish();
        QCOMPARE(selection.box(), QRect(20, 10, 780, 590));
    }

    void closing()
    {
        const QPoint first(100, 100);
        PolygonSelection selection;
        // A drag that has not been let go yet closes nothing, however many its points.
        selection.press(first, first, s_none);
        for (const QPoint to : {QPoint(200, 100), {200, 200}, {100, 200}, first})
            selection.move(to, s_none);
        QVERIFY(!selection.closeMark(first).has_value());
        selection = clicked({first, {200, 100}}, first);
        QVERIFY(!selection.closeMark(first).has_value());
        QVERIFY(!click(selection, first));

        selection = clicked({first, {200, 100}, {150, 200}}, {300, 300});
        QVERIFY(!selection.closeMark({103, 105}).has_value());
        QCOMPARE(selection.closeMark({103, 104}), QPoint(95, 95));
        // The pointer decides, and the clicked point is kept.
        QVERIFY(!selection.press({103, 104}, {103, 105}, s_none));
        QVERIFY(selection.press({103, 104}, {103, 104}, s_none));
        QCOMPARE(inOrder(selection), (Points{first, {200, 100}, {150, 200}, {103, 104}}));
    }

    void finishing()
    {
        PolygonSelection selection = clicked({{10, 10}, {90, 10}}, {50, 50});
        QVERIFY(!selection.finish());
        QVERIFY(!selection.key(Qt::Key_Return, s_none).finished);
        click(selection, {50, 50});
        QVERIFY(!selection.key(Qt::Key_Enter, s_none).finished);
        QVERIFY(selection.key(Qt::Key_Return, s_none).finished);
        const Points polygon{{10, 10}, {90, 10}, {50, 50}};
        QCOMPARE(inOrder(selection), polygon);
        QVERIFY(selection.line().isEmpty());
        selection.move({300, 300}, s_none);
        QCOMPARE(inOrder(selection), polygon);
        // A line has no inside, wherever its end has been led.
        PolygonSelection flat = clicked({{10, 10}, {50, 50}, {91, 90}}, {200, 10});
        QVERIFY(!flat.key(Qt::Key_Return, s_none).finished);
        QCOMPARE(flat.line().size(), 4);
    }

    void deleting()
    {
        const auto check = [&](const QByteArray &row, const Points &vertices, QPoint end,
                               const Points &after) {
            PolygonSelection selection = clicked(vertices, end);
            selection.key(Qt::Key_Backspace, s_none);
            expect(row, inOrder(selection), after);
            selection.key(Qt::Key_Backspace, Qt::ShiftModifier);
            QVERIFY2(selection.points().isEmpty(), row);
        };
        const QPoint a(10, 10);
        const QPoint b(90, 10);
        const QPoint c(50, 50);
        const QPoint away(70, 80);
        check("end away", Points{a, b, c}, away, Points{a, b, away});
        check("end on the last vertex", Points{a, b, c}, c, Points{a, b});
        check("only the end left", Points{a}, away, Points{});
        check("one vertex, end on it", Points{a}, a, Points{});
        check("only the first left", Points{a, b}, b, Points{});
        check("nothing", Points{}, away, Points{});
    }

    void keys()
    {
        const auto check = [&](const QByteArray &row, int key, Qt::KeyboardModifiers modifiers,
                               QPoint end) {
            const QPoint before(5, 598);
            PolygonSelection selection = clicked({{90, 90}}, before);
            expect(row, selection.key(key, modifiers).pointer, end);
            expect(row, inOrder(selection), (Points{{90, 90}, end}));
            // On the last vertex the end takes it along.
            selection = clicked({{90, 90}, before}, before);
            selection.key(key, modifiers);
            expect(row, inOrder(selection), (Points{{90, 90}, end}));
        };
        const Qt::KeyboardModifiers shift = Qt::ShiftModifier;
        const Qt::KeyboardModifiers alt = Qt::AltModifier;
        check("left", Qt::Key_Left, s_none, {4, 598});
        check("right", Qt::Key_Right, s_none, {6, 598});
        check("up", Qt::Key_Up, s_none, {5, 597});
        check("down", Qt::Key_Down, s_none, {5, 599});
        check("shift+left, off the desktop", Qt::Key_Left, shift, {-5, 598});
        check("shift+right", Qt::Key_Right, shift, {15, 598});
        check("shift+up", Qt::Key_Up, shift, {5, 588});
        check("shift+down, off the desktop", Qt::Key_Down, shift, {5, 608});
        check("alt+left", Qt::Key_Left, alt, {1, 598});
        check("alt+right", Qt::Key_Right, alt, {799, 598});
        check("alt+up", Qt::Key_Up, alt, {5, 1});
        check("alt+down", Qt::Key_Down, alt, {5, 599});
        check("shift+alt+up", Qt::Key_Up, shift | alt, {5, 1});
        check("command+left", Qt::Key_Left, s_command, {4, 598});
    }

    void emptyTakesKeys()
    {
        PolygonSelection selection;
        for (const int key : {Qt::Key_Left, Qt::Key_Down, Qt::Key_Backspace, Qt::Key_Return}) {
            const auto result = selection.key(key, Qt::AltModifier | Qt::ShiftModifier);
            QVERIFY(!result.pointer && !result.finished && !result.changeViewMode);
        }
        QVERIFY(selection.key(Qt::Key_E, s_command).changeViewMode);
        QVERIFY(selection.points().isEmpty());
    }

    void commandSnapsEveryPoint()
    {
        PolygonSelection selection = clicked({{100, 100}}, {100, 100});
        click(selection, {190, 103}, s_command);
        QCOMPARE(inOrder(selection), (Points{{100, 100}, {190, 100}, {190, 100}}));
        selection.move({193, 170}, s_command);
        QCOMPARE(inOrder(selection).constLast(), QPoint(190, 170));
        selection.press({193, 170}, {193, 170}, s_command);
        // What was pressed is no vertex before the next point is set: (190, 100) still counts.
        selection.move({150, 168}, s_command);
        QCOMPARE(inOrder(selection).constLast(), QPoint(190 - 56, 100 + 56));
    }

    void picture()
    {
        PolygonSelection selection = clicked({{40, 30}, {90, 20}, {60, 80}}, {60, 80});
        QVERIFY(selection.finish());
        QCOMPARE(selection.box(), QRect(40, 20, 50, 60));
        QCOMPARE(selection.polygonInBox(), QPolygonF({{20, 60}, {50, 0}, {0, 10}}));
        QVERIFY(clicked({{40, 30}, {90, 30}}, {60, 30}).box().isEmpty());
    }
};

QTEST_APPLESS_MAIN(TestPolygonSelection)
#include "test_polygonselection.moc"
