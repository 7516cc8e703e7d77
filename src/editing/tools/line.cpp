#include "editing/tools/line.h"

#include "editing/shapeparts.h"
#include "editing/tiles.h"

#include <QPainter>

using namespace Qt::StringLiterals;

std::optional<LineShape> LineShape::from(const Drag &drag)
{
    return LineShape{QPolygon({drag.start, drag.pointer})};
}

void LineShape::draw(QPainter &painter, const EditMsg &style) const
{
    setDashes(painter, style, lengthOf(points));
    painter.drawPolyline(points);
}

void LineShape::cover(Tiles &tiles, const EditMsg &style) const
{
    tiles.addOutline(points, Tiles::reachOf(style.width));
}

bool LineShape::hit(QPointF point, qreal grace, const EditMsg &style) const
{
    return isOnLine(points, point, style.width, grace);
}

void LineShape::write(QJsonObject &to) const { to["points"_L1] = numbersOf(points); }

LineShape LineShape::withEnd(qsizetype end, QPoint at, const EditMsg & /*style*/) const
{
    LineShape result = *this;
    result.points[end] = at;
    return result;
}

LineShape LineShape::read(ShapeParts &parts) { return {parts.points("points"_L1, 2, 2)}; }
