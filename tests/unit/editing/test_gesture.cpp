#include "editing/gesture.h"
#include "rows.h"

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
    void arrows()
    {
        const auto check = [&](const QByteArray &row, QPoint end, int width,
                               const QPolygon &points) {
            expect(row, CreateArrowPolygon({100, 100}, end, width), points);
        };
        const auto points = [](std::initializer_list<QPoint> list) {
            return QPolygon(QList(list));
        };
        check("thin", {200, 100}, 1,
              points({{190, 105}, {200, 100}, {190, 95}, {190, 100}, {100, 100}}));
        check("wide", {200, 100}, 4,
              points({{178, 111}, {200, 100}, {178, 89}, {178, 100}, {102, 100}}));
        check("downward", {100, 200}, 1,
              points({{95, 190}, {100, 200}, {105, 190}, {100, 190}, {100, 100}}));
        check("shorter than its head", {104, 100}, 1,
              points({{94, 105}, {104, 100}, {94, 95}, {94, 100}, {100, 100}}));
        check("no length", {100, 100}, 1,
              points({{90, 105}, {100, 100}, {90, 95}, {90, 100}, {100, 100}}));
    }

    // Some drags record nothing, on purpose; an ellipse tells what the others hold.
    void released()
    {
        const auto check = [&](const QByteArray &row, const ViewMapping &view, QPoint from,
                               QPoint to, const QRect &bounds) {
            expect(row, ellipse(drag(stateEllipse, from, to, view)), bounds);
        };
        check("start at the picture's corner", s_view, s_margin, s_margin + QPoint(30, 20), {});
        check("end at the picture's corner", s_view, s_margin + QPoint(30, 20), s_margin, {});
        check("no way between", s_view, {70, 40}, {70, 40}, {});
        check("the widget's corner, with a margin", s_view, {0, 0}, {70, 40}, {-50, -10, 70, 40});
        check("upward, to the left", s_view, {90, 50}, {60, 20}, {10, 10, 30, 30});
        check("the end is held in the widget", s_view, {70, 40}, {500, 500}, {20, 30, 131, 60});
        check("on both sides", s_view, {70, 40}, {-500, -500}, {-50, -10, 70, 40});
        check("the start is not", s_view, {-60, 40}, {70, 50}, {-110, 30, 130, 10});
        check("one pixel at zoom 0.5", zoomed(0.5F), {10, 10}, {11, 10}, {20, 20, 2, 0});
        check("half a pixel at zoom 2", zoomed(2), {10, 10}, {11, 11}, {});
    }

    void releasedShapes()
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
        QCOMPARE(std::get<PolylineShape>(*line).points,
                 QPolygon(QList<QPoint>{{12, 13}, {500, -4}}));
        QVERIFY(!gesture.release(statePoly, {70, 40}, s_view, 1));
        // Each press begins a new one.
        gesture.press({60, 20}, s_view);
        const auto next = gesture.release(statePoly, {90, 50}, s_view, 1);
        QVERIFY(std::get<PolylineShape>(*next).points.isEmpty());

        // The start stays where it was pressed in the picture, whatever becomes of the zoom.
        gesture.press({60, 20}, s_view);
        gesture.moveTo({40, 60});
        QCOMPARE(ellipse(gesture.preview(stateEllipse, zoomed(2), 1)), QRect(10, 10, 10, 20));
        QCOMPARE(ellipse(gesture.release(stateEllipse, {40, 60}, zoomed(2), 1)),
                 QRect(10, 10, 10, 20));
    }

    void previews()
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
};

QTEST_GUILESS_MAIN(TestGesture)
#include "test_gesture.moc"
