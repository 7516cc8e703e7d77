#include "editing/gesture.h"

#include <QTest>

namespace {

// A picture of 100 x 80 in the middle of a widget of 201 x 100.
constexpr ViewMapping s_view{.widget = {201, 100}, .picture = {100, 80}};
constexpr QPoint s_margin(50, 10);

ViewMapping zoomed(float scale) { return {.widget{200, 200}, .picture{400, 400}, .scale = scale}; }

std::optional<Geometry> drag(stateEnum tool, QPoint from, QPoint to, const ViewMapping &view)
{
    DrawingGesture gesture;
    gesture.press(from, view);
    gesture.moveTo(to);
    return gesture.release(tool, to, view, 1);
}

QRect ellipse(const std::optional<Geometry> &shape)
{
    return shape ? std::get<EllipseShape>(*shape).bounds : QRect();
}

}  // namespace

class TestGesture : public QObject
{
    Q_OBJECT

private slots:
    void toPicture_data();
    void toPicture();
    void arrows_data();
    void arrows();
    void released_data();
    void released();
    void releasedShapes();
    void previews();
};

void TestGesture::toPicture_data()
{
    QTest::addColumn<float>("scale");
    QTest::addColumn<QPoint>("position");
    QTest::addColumn<QPoint>("picture");
    QTest::newRow("origin") << 2.0F << QPoint(0, 0) << QPoint(0, 0);
    QTest::newRow("cut toward zero") << 2.0F << QPoint(3, 5) << QPoint(1, 2);
    QTest::newRow("a zoomed pixel left of it is still 0") << 2.0F << QPoint(-1, -1) << QPoint(0, 0);
    QTest::newRow("further left") << 2.0F << QPoint(-2, -3) << QPoint(-1, -1);
    QTest::newRow("zoomed out") << 0.5F << QPoint(7, 9) << QPoint(14, 18);
    QTest::newRow("a division in single precision")
        << 1.4F << QPoint(7, 14) << QPoint(static_cast<int>(7 / 1.4F), static_cast<int>(14 / 1.4F));
}

void TestGesture::toPicture()
{
    QFETCH(const float, scale);
    QFETCH(const QPoint, position);
    QTEST(zoomed(scale).toPicture(position), "picture");
}

void TestGesture::arrows_data()
{
    QTest::addColumn<QPoint>("end");
    QTest::addColumn<int>("width");
    QTest::addColumn<QPolygon>("points");
    const auto points = [](std::initializer_list<QPoint> list) { return QPolygon(QList(list)); };
    QTest::newRow("thin") << QPoint(200, 100) << 1
                          << points({{190, 105}, {200, 100}, {190, 95}, {190, 100}, {100, 100}});
    QTest::newRow("width 2 has a larger head")
        << QPoint(200, 100) << 2
        << points({{184, 108}, {200, 100}, {184, 92}, {184, 100}, {101, 100}});
    QTest::newRow("wide") << QPoint(200, 100) << 4
                          << points({{178, 111}, {200, 100}, {178, 89}, {178, 100}, {102, 100}});
    QTest::newRow("downward") << QPoint(100, 200) << 1
                              << points(
                                     {{95, 190}, {100, 200}, {105, 190}, {100, 190}, {100, 100}});
    QTest::newRow("shorter than its head")
        << QPoint(104, 100) << 1
        << points({{94, 105}, {104, 100}, {94, 95}, {94, 100}, {100, 100}});
    QTest::newRow("no length") << QPoint(100, 100) << 1
                               << points({{90, 105}, {100, 100}, {90, 95}, {90, 100}, {100, 100}});
}

void TestGesture::arrows()
{
    QFETCH(const QPoint, end);
    QFETCH(const int, width);
    QTEST(CreateArrowPolygon({100, 100}, end, width), "points");
}

// Some drags record nothing, on purpose; an ellipse tells what the others hold.
void TestGesture::released_data()
{
    QTest::addColumn<ViewMapping>("view");
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QRect>("bounds");
    QTest::newRow("start at the picture's corner")
        << s_view << s_margin << s_margin + QPoint(30, 20) << QRect();
    QTest::newRow("end at the picture's corner")
        << s_view << s_margin + QPoint(30, 20) << s_margin << QRect();
    QTest::newRow("no way between") << s_view << QPoint(70, 40) << QPoint(70, 40) << QRect();
    QTest::newRow("the widget's corner, with a margin")
        << s_view << QPoint(0, 0) << QPoint(70, 40) << QRect(-50, -10, 70, 40);
    QTest::newRow("upward, to the left")
        << s_view << QPoint(90, 50) << QPoint(60, 20) << QRect(10, 10, 30, 30);
    QTest::newRow("the end is held in the widget")
        << s_view << QPoint(70, 40) << QPoint(500, 500) << QRect(20, 30, 131, 60);
    QTest::newRow("on both sides")
        << s_view << QPoint(70, 40) << QPoint(-500, -500) << QRect(-50, -10, 70, 40);
    QTest::newRow("the start is not")
        << s_view << QPoint(-60, 40) << QPoint(70, 50) << QRect(-110, 30, 130, 10);
    QTest::newRow("one pixel at zoom 0.5")
        << zoomed(0.5F) << QPoint(10, 10) << QPoint(11, 10) << QRect(20, 20, 2, 0);
    QTest::newRow("half a pixel at zoom 2")
        << zoomed(2) << QPoint(10, 10) << QPoint(11, 11) << QRect();
}

void TestGesture::released()
{
    QFETCH(const ViewMapping, view);
    QFETCH(const QPoint, from);
    QFETCH(const QPoint, to);
    QTEST(ellipse(drag(stateEllipse, from, to, view)), "bounds");
}

void TestGesture::releasedShapes()
{
    const auto rectangle = drag(stateRect, {90, 50}, {60, 20}, s_view);
    QCOMPARE(std::get<RectShape>(*rectangle).outline,
             QPolygon(QList<QPoint>{{10, 10}, {40, 10}, {40, 40}, {10, 40}, {10, 10}}));
    const auto arrow = drag(stateArrow, {60, 20}, {90, 50}, s_view);
    QCOMPARE(std::get<ArrowShape>(*arrow).points, CreateArrowPolygon({10, 10}, {40, 40}, 1));
    QVERIFY(!drag(stateText, {60, 20}, {90, 50}, s_view));

    // A freehand line has the points of its moves, and neither the press nor the release.
    DrawingGesture gesture;
    gesture.press({60, 20}, s_view);
    gesture.extendLine({12, 13});
    gesture.extendLine({500, -4});
    const auto line = gesture.release(statePoly, {90, 50}, s_view, 1);
    QCOMPARE(std::get<PolylineShape>(*line).points, QPolygon(QList<QPoint>{{12, 13}, {500, -4}}));
    QVERIFY(!gesture.release(statePoly, {70, 40}, s_view, 1));
    // Each press begins a new one.
    gesture.press({60, 20}, s_view);
    const auto next = gesture.release(statePoly, {90, 50}, s_view, 1);
    QVERIFY(std::get<PolylineShape>(*next).points.isEmpty());

    // The start stays where it was pressed in the picture, whatever becomes of the zoom.
    gesture.press({60, 20}, s_view);
    gesture.moveTo({40, 60});
    QCOMPARE(ellipse(gesture.preview(stateEllipse, zoomed(2), 1)), QRect(10, 10, 10, 20));
    QCOMPARE(ellipse(gesture.release(stateEllipse, {40, 60}, zoomed(2), 1)), QRect(10, 10, 10, 20));
}

void TestGesture::previews()
{
    const ViewMapping view = zoomed(0.75F);
    DrawingGesture gesture;
    gesture.press({10, 10}, view);
    QVERIFY(!gesture.preview(stateArrow, view, 1));
    gesture.moveTo({13, 15});
    // The extent is cut as a whole: 3 and 5 pixels make 4 and 6, where the corners lie 4 and 7
    // apart.
    QCOMPARE(ellipse(gesture.preview(stateEllipse, view, 1)), QRect(13, 13, 4, 6));
    QCOMPARE(ellipse(gesture.release(stateEllipse, {13, 15}, view, 1)), QRect(13, 13, 4, 7));
    QVERIFY(!gesture.preview(stateEllipse, view, 1));

    // An arrow does not ask where its ends are, and a line is drawn from its last point.
    gesture.press({0, 0}, view);
    gesture.moveTo({0, 20});
    gesture.extendLine({1, 2});
    gesture.extendLine({3, 4});
    QVERIFY(!gesture.preview(stateRect, view, 1));
    QVERIFY(gesture.preview(stateArrow, view, 1));
    const auto line = gesture.preview(statePoly, view, 1);
    QCOMPARE(std::get<PolylineShape>(*line).points, QPolygon(QList<QPoint>{{3, 4}, {1, 2}}));
    QVERIFY(!gesture.preview(stateMove, view, 1));
    QVERIFY(gesture.drop());
    gesture.moveTo({0, 30});
    QVERIFY(!gesture.preview(statePoly, view, 1));
}

QTEST_GUILESS_MAIN(TestGesture)
#include "test_gesture.moc"
