#include "capture/polygonselection.h"

#include <QTest>

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
    void adjust_data();
    void adjust();
    void input_data();
    void input();
    void closing();
    void finishing();
    void deleting_data();
    void deleting();
    void keys_data();
    void keys();
    void emptyTakesKeys();
    void commandSnapsEveryPoint();
    void picture();
};

void TestPolygonSelection::adjust_data()
{
    QTest::addColumn<QPoint>("offset");
    QTest::addColumn<QPoint>("adjusted");
    // clang-format off
    QTest::newRow("right")           << QPoint(100, 20)   << QPoint(102, 0);
    QTest::newRow("right, from 360") << QPoint(100, -20)  << QPoint(102, 0);
    QTest::newRow("right and down")  << QPoint(60, 50)    << QPoint(55, 55);
    QTest::newRow("down")            << QPoint(10, 90)    << QPoint(0, 91);
    QTest::newRow("left and down")   << QPoint(-40, 60)   << QPoint(-51, 51);
    QTest::newRow("left")            << QPoint(-70, -9)   << QPoint(-71, 0);
    QTest::newRow("left and up")     << QPoint(-30, -30)  << QPoint(-30, -30);
    QTest::newRow("up")              << QPoint(-7, -80)   << QPoint(0, -80);
    QTest::newRow("right and up")    << QPoint(50, -30)   << QPoint(41, -41);
    QTest::newRow("the point itself") << QPoint(0, 0)     << QPoint(0, 0);
    // The first whole slopes on either side of 22.5 degrees.
    QTest::newRow("just under half way") << QPoint(169, 70) << QPoint(183, 0);
    QTest::newRow("just over half way")  << QPoint(128, 54) << QPoint(98, 98);
    // clang-format on
}

void TestPolygonSelection::adjust()
{
    QFETCH(QPoint, offset);
    const QPoint reference(200, 300);
    const PolygonSelection selection = clicked({{10, 10}, reference}, {7, 7});
    QTEST(selection.AdjustPoint(reference + offset, s_command) - reference, "adjusted");
    for (const Qt::KeyboardModifiers other :
         {s_none, s_command | Qt::ShiftModifier, Qt::KeyboardModifiers(Qt::AltModifier)})
        QCOMPARE(selection.AdjustPoint(reference + offset, other), reference + offset);
    PolygonSelection begun;
    begun.press({10, 10}, {10, 10}, s_none);
    QCOMPARE(begun.AdjustPoint(reference + offset, s_command), reference + offset);
}

void TestPolygonSelection::input_data()
{
    QTest::addColumn<QString>("events");
    QTest::addColumn<Points>("points");
    const QPoint a(10, 10);
    const QPoint b(200, 20);
    const QPoint c(150, 90);
    // Lower case: the pointer moves there; upper case: a button goes down, or up after "-".
    QTest::newRow("before the first press") << u"a"_s << Points{};
    QTest::newRow("first press") << u"aA"_s << Points{a};
    QTest::newRow("click: vertex and end") << u"aA-A"_s << Points{a, a};
    QTest::newRow("the end follows") << u"aA-Abc"_s << Points{a, c};
    QTest::newRow("second vertex") << u"aA-AbB-B"_s << Points{a, b, b};
    QTest::newRow("twice at one spot") << u"aA-AA-A"_s << Points{a, a};
    QTest::newRow("freehand") << u"aA-AbBcb-B"_s << Points{a, b, c, b, b};
    QTest::newRow("freehand at once") << u"aAbc-C"_s << Points{a, b, c, c};
    QTest::newRow("press away from the end") << u"aA-AbC-C"_s << Points{a, c, c};
    QTest::newRow("another button's release") << u"aA-Ab-B"_s << Points{a, b, b};
}

void TestPolygonSelection::input()
{
    QFETCH(QString, events);
    const QMap<QChar, QPoint> places{{u'a', {10, 10}}, {u'b', {200, 20}}, {u'c', {150, 90}}};
    PolygonSelection selection;
    for (qsizetype i = 0; i < events.size(); ++i) {
        const bool up = events[i] == u'-';
        i += up ? 1 : 0;
        const QPoint place = places[events[i].toLower()];
        if (up)
            selection.release(place, s_none);
        else if (events[i].isUpper())
            selection.press(place, place, s_none);
        else
            selection.move(place, s_none);
    }
    QTEST(inOrder(selection), "points");
}

void TestPolygonSelection::closing()
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

void TestPolygonSelection::finishing()
{
    PolygonSelection selection = clicked({{10, 10}, {90, 10}}, {50, 50});
    QVERIFY(!selection.finish());
    QVERIFY(!selection.key(Qt::Key_Return, s_none, s_surface).finished);
    click(selection, {50, 50});
    QVERIFY(!selection.key(Qt::Key_Enter, s_none, s_surface).finished);
    QVERIFY(selection.key(Qt::Key_Return, s_none, s_surface).finished);
    const Points polygon{{10, 10}, {90, 10}, {50, 50}};
    QCOMPARE(inOrder(selection), polygon);
    QVERIFY(selection.line().isEmpty());
    selection.move({300, 300}, s_none);
    QCOMPARE(inOrder(selection), polygon);
    // A line has no inside, wherever its end has been led.
    PolygonSelection flat = clicked({{10, 10}, {50, 50}, {91, 90}}, {200, 10});
    QVERIFY(!flat.key(Qt::Key_Return, s_none, s_surface).finished);
    QCOMPARE(flat.line().size(), 4);
}

void TestPolygonSelection::deleting_data()
{
    QTest::addColumn<Points>("vertices");
    QTest::addColumn<QPoint>("end");
    QTest::addColumn<Points>("after");
    const QPoint a(10, 10);
    const QPoint b(90, 10);
    const QPoint c(50, 50);
    const QPoint away(70, 80);
    QTest::newRow("end away") << Points{a, b, c} << away << Points{a, b, away};
    QTest::newRow("end on the last vertex") << Points{a, b, c} << c << Points{a, b};
    QTest::newRow("only the end left") << Points{a} << away << Points{};
    QTest::newRow("one vertex, end on it") << Points{a} << a << Points{};
    QTest::newRow("only the first left") << Points{a, b} << b << Points{};
    QTest::newRow("nothing") << Points{} << away << Points{};
}

void TestPolygonSelection::deleting()
{
    QFETCH(Points, vertices);
    QFETCH(QPoint, end);
    PolygonSelection selection = clicked(vertices, end);
    selection.key(Qt::Key_Backspace, s_none, s_surface);
    QTEST(inOrder(selection), "after");
    selection.key(Qt::Key_Backspace, Qt::ShiftModifier, s_surface);
    QVERIFY(selection.points().isEmpty());
}

void TestPolygonSelection::keys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QPoint>("end");
    const auto row = [](const char *name, Qt::Key key, Qt::KeyboardModifiers modifiers,
                        QPoint end) { QTest::newRow(name) << int(key) << modifiers << end; };
    const Qt::KeyboardModifiers shift = Qt::ShiftModifier;
    const Qt::KeyboardModifiers alt = Qt::AltModifier;
    row("left", Qt::Key_Left, s_none, {4, 598});
    row("right", Qt::Key_Right, s_none, {6, 598});
    row("up", Qt::Key_Up, s_none, {5, 597});
    row("down", Qt::Key_Down, s_none, {5, 599});
    row("shift+left, off the desktop", Qt::Key_Left, shift, {-5, 598});
    row("shift+right", Qt::Key_Right, shift, {15, 598});
    row("shift+up", Qt::Key_Up, shift, {5, 588});
    row("shift+down, off the desktop", Qt::Key_Down, shift, {5, 608});
    row("alt+left", Qt::Key_Left, alt, {1, 598});
    row("alt+right", Qt::Key_Right, alt, {799, 598});
    row("alt+up", Qt::Key_Up, alt, {5, 1});
    row("alt+down", Qt::Key_Down, alt, {5, 599});
    row("shift+alt+up", Qt::Key_Up, shift | alt, {5, 1});
    row("command+left", Qt::Key_Left, s_command, {4, 598});
}

void TestPolygonSelection::keys()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QPoint, end);
    const QPoint before(5, 598);
    PolygonSelection selection = clicked({{90, 90}}, before);
    QCOMPARE(selection.key(key, modifiers, s_surface).pointer, end);
    QCOMPARE(inOrder(selection), (Points{{90, 90}, end}));
    // On the last vertex the end takes it along.
    selection = clicked({{90, 90}, before}, before);
    selection.key(key, modifiers, s_surface);
    QCOMPARE(inOrder(selection), (Points{{90, 90}, end}));
}

void TestPolygonSelection::emptyTakesKeys()
{
    PolygonSelection selection;
    for (const int key : {Qt::Key_Left, Qt::Key_Down, Qt::Key_Backspace, Qt::Key_Return}) {
        const auto result = selection.key(key, Qt::AltModifier | Qt::ShiftModifier, s_surface);
        QVERIFY(!result.pointer && !result.finished && !result.changeViewMode);
    }
    QVERIFY(selection.key(Qt::Key_E, s_command, s_surface).changeViewMode);
    QVERIFY(selection.points().isEmpty());
}

void TestPolygonSelection::commandSnapsEveryPoint()
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

void TestPolygonSelection::picture()
{
    PolygonSelection selection = clicked({{40, 30}, {90, 20}, {60, 80}}, {60, 80});
    QVERIFY(selection.finish());
    QCOMPARE(selection.box(), QRect(40, 20, 50, 60));
    QCOMPARE(selection.polygonInBox(), QPolygonF({{20, 60}, {50, 0}, {0, 10}}));
    QVERIFY(clicked({{40, 30}, {90, 30}}, {60, 30}).box().isEmpty());
}

QTEST_APPLESS_MAIN(TestPolygonSelection)
#include "test_polygonselection.moc"
