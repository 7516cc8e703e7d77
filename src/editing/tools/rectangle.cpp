#include "editing/tools/rectangle.h"

#include "editing/shapeparts.h"
#include "editing/tiles.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype s_points = 5;

}  // namespace

void DrawRect(QPainter &painter, const QColor &color, int width, const QPolygon &rect)
{
    if (rect.size() < s_points)
        return;
    painter.setPen(QPen(color, width));
    // Four lines instead of one outline, because the corners must look like those of separate
    // lines.
    for (qsizetype i = 0; i + 1 < s_points; ++i)
        painter.drawLine(rect.at(i), rect.at(i + 1));
}

std::optional<RectShape> RectShape::from(const Drag &drag)
{
    return drag.box ? std::optional(RectShape{QPolygon(*drag.box, true)}) : std::nullopt;
}

void RectShape::draw(QPainter &painter, const EditMsg &style) const
{
    if (style.dashes != Dashes::None || isFilled(style))
        painter.drawPolygon(outline);
    else
        DrawRect(painter, style.color, style.width, outline);
}

void RectShape::cover(Tiles &tiles, const EditMsg &style) const
{
    tiles.addOutline(outline, Tiles::reachOf(style.width));
    if (isFilled(style))
        tiles.addRect(outline.boundingRect());
}

bool RectShape::hit(QPointF point, qreal grace, const EditMsg &style) const
{
    return isOnLine(outline, point, style.width, grace) ||
           (isFilled(style) && outline.containsPoint(point.toPoint(), Qt::OddEvenFill));
}

void RectShape::write(QJsonObject &to) const { to["points"_L1] = numbersOf(outline); }

RectShape RectShape::read(ShapeParts &parts)
{
    return {parts.points("points"_L1, s_points, s_points)};
}
