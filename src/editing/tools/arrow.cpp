#include "editing/tools/arrow.h"

#include "base/planegeometry.h"
#include "editing/shapeparts.h"
#include "editing/tiles.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype s_points = 5;
constexpr qsizetype s_headPoints = 3;

ArrowShape between(QPoint start, QPoint tip, int width)
{
    return {CreateArrowPolygon(start, tip, width), start};
}

}  // namespace

QPolygon CreateArrowPolygon(const QPoint &start, const QPoint &end, int width)
{
    const auto angle = static_cast<float>(CalAngle_Deg(start, end));
    const int half = static_cast<int>(width * 0.5);
    const int wing = 3 * half + 5;
    const double length = DistanceTo(start, end) - static_cast<float>(6 * half + 10);
    const auto at = [&](double along, double across) {
        return (QPointF(start) + RotateByDeg(angle, {along, across}, {})).toPoint();
    };
    return QPolygon({at(length, wing), end, at(length, -wing), at(length, 0), at(half, 0)});
}

void DrawArrow(QPainter &painter, const QColor &color, int width, const QPolygon &arrow)
{
    if (arrow.size() < s_headPoints)
        return;
    painter.setPen(QPen(color, 1));
    painter.setBrush(color);
    painter.drawPolygon(arrow.first(arrow.size() - 2));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, width));
    painter.drawLine(arrow.last(), arrow.at(arrow.size() - 2));
}

std::optional<ArrowShape> ArrowShape::from(const Drag &drag)
{
    return between(drag.start, drag.end, drag.width);
}

void ArrowShape::draw(QPainter &painter, const EditMsg &style) const
{
    DrawArrow(painter, style.color, style.width, points);
}

void ArrowShape::cover(Tiles &tiles, const EditMsg &style) const
{
    if (points.size() < s_points)
        return;
    const double edge = Tiles::reachOf(1);
    tiles.addRect(QRectF(QPolygon(points.first(s_headPoints)).boundingRect())
                      .adjusted(-edge, -edge, edge, edge));
    tiles.addLine(points.last(), points.at(s_headPoints), Tiles::reachOf(style.width));
}

bool ArrowShape::hit(QPointF point, qreal grace, const EditMsg &style) const
{
    if (points.size() < s_points)
        return false;
    const QPolygonF head = QPolygon(points.first(s_headPoints));
    const QPolygonF shaft = QPolygon(points.sliced(s_headPoints));
    return head.containsPoint(point, Qt::WindingFill) || isOnLine(head, point, 1, grace) ||
           isOnLine(shaft, point, style.width, grace);
}

ArrowShape ArrowShape::withEnd(qsizetype end, QPoint at, const EditMsg &style) const
{
    return end == 0 ? between(at, points.value(1), style.width) : between(start, at, style.width);
}

// The head's size follows from the line's width.
ArrowShape ArrowShape::mapped(const PictureMap &map, const EditMsg &style) const
{
    if (map.keepsLengths())
        return {map(points), map(start)};
    return between(map(start), map(points.value(1)), style.width);
}

void ArrowShape::write(QJsonObject &to) const
{
    to["points"_L1] = numbersOf(points);
    to["start"_L1] = QJsonArray{start.x(), start.y()};
}

ArrowShape ArrowShape::read(ShapeParts &parts)
{
    const QPolygon points = parts.points("points"_L1, s_points, s_points);
    // Arrows that were kept before they could be changed don't tell their start.
    const bool tellsStart = parts.value("start"_L1).isArray();
    return {points, tellsStart ? parts.points("start"_L1, 1, 1).first() : points.last()};
}
