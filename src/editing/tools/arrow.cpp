#include "editing/tools/arrow.h"

#include "base/planegeometry.h"
#include "editing/shapeparts.h"
#include "editing/tiles.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype s_points = 5;
constexpr qsizetype s_headPoints = 3;

ArrowShape between(QPoint start, QPoint tip, int width)
{
    return {CreateArrowPolygon(start, tip, width), start};
}

void drawHead(QPainter &painter, const QColor &color, const QPolygon &head)
{
    painter.setPen(QPen(color, 1));
    painter.setBrush(color);
    painter.drawPolygon(head);
    painter.setBrush(Qt::NoBrush);
}

// A point of the head as it lies in the one at the start.
QPoint atStart(const ArrowShape &arrow, QPoint point)
{
    return arrow.start + arrow.points.at(1) - point;
}

// Where the heads are: three points each.
QList<QPolygon> headsOf(const ArrowShape &arrow, const EditMsg &style)
{
    QList<QPolygon> result{arrow.points.first(s_headPoints)};
    if (style.heads == Heads::Both) {
        result.append(QPolygon());
        for (const QPoint point : std::as_const(result.first()))
            result.last().append(atStart(arrow, point));
    }
    return result;
}

QLine shaftOf(const ArrowShape &arrow, const EditMsg &style)
{
    const QPoint base = arrow.points.at(s_headPoints);
    switch (style.heads) {
    case Heads::Both:
        return {atStart(arrow, base), base};
    case Heads::Open:
        return {arrow.start, arrow.points.at(1)};
    default:
        return {arrow.points.last(), base};
    }
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
    drawHead(painter, color, arrow.first(arrow.size() - 2));
    painter.setPen(QPen(color, width));
    painter.drawLine(arrow.last(), arrow.at(arrow.size() - 2));
}

std::optional<ArrowShape> ArrowShape::from(const Drag &drag)
{
    return between(drag.start, drag.end, drag.width);
}

void ArrowShape::draw(QPainter &painter, const EditMsg &style) const
{
    if (points.size() < s_points)
        return;
    if (style.heads == Heads::One && style.dashes == Dashes::None) {
        DrawArrow(painter, style.color, style.width, points);
        return;
    }
    const bool isOpen = style.heads == Heads::Open;
    QPen pen = painter.pen();
    if (isOpen) {
        pen.setCapStyle(Qt::RoundCap);
        pen.setJoinStyle(Qt::RoundJoin);
    }
    const QLineF shaft = shaftOf(*this, style);
    QPainterPath lines;
    for (const QPolygon &head : headsOf(*this, style)) {
        if (isOpen)
            lines.addPolygon(head);
        else
            drawHead(painter, style.color, head);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(pen);
    if (style.dashes != Dashes::None) {
        painter.drawPath(lines);
        setDashes(painter, style, shaft.length());
        painter.drawLine(shaft);
    } else if (isOpen) {
        // All at once, so that a translucent colour is the same where lines meet.
        lines.moveTo(shaft.p1());
        lines.lineTo(shaft.p2());
        painter.drawPath(lines);
    } else {
        painter.drawLine(shaft);
    }
}

void ArrowShape::cover(Tiles &tiles, const EditMsg &style) const
{
    if (points.size() < s_points)
        return;
    const double edge = Tiles::reachOf(style.heads == Heads::Open ? style.width : 1);
    for (const QPolygon &head : headsOf(*this, style))
        tiles.addRect(QRectF(head.boundingRect()).adjusted(-edge, -edge, edge, edge));
    const QLine shaft = shaftOf(*this, style);
    tiles.addLine(shaft.p1(), shaft.p2(), Tiles::reachOf(style.width));
}

bool ArrowShape::hit(QPointF point, qreal grace, const EditMsg &style) const
{
    if (points.size() < s_points)
        return false;
    const bool isOpen = style.heads == Heads::Open;
    const auto isOnHead = [&](const QPolygonF &head) {
        return isOnLine(head, point, isOpen ? style.width : 1, grace) ||
               (!isOpen && head.containsPoint(point, Qt::WindingFill));
    };
    const QList<QPolygon> heads = headsOf(*this, style);
    const QLineF shaft = shaftOf(*this, style);
    return std::any_of(heads.begin(), heads.end(), isOnHead) ||
           isOnLine(QPolygonF({shaft.p1(), shaft.p2()}), point, style.width, grace);
}

QRect ArrowShape::box(const EditMsg &style) const
{
    if (points.size() < s_points)
        return {};
    QPolygon all = points;
    for (const QPolygon &head : headsOf(*this, style))
        all.append(head);
    return boxAround(all);
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
