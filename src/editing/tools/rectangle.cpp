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
    if (style.dashes != Dashes::None) {
        const QPen pen = painter.pen();
        painter.setPen(Qt::NoPen);
        painter.drawPolygon(outline);
        // Each side for itself, so that there is a dash around each corner.
        for (qsizetype i = 0; i + 1 < outline.size(); ++i) {
            const QLineF side(outline.at(i), outline.at(i + 1));
            painter.setPen(pen);
            setDashes(painter, style, side.length());
            painter.drawLine(side);
        }
    } else if (isFilled(style)) {
        painter.drawPolygon(outline);
    } else {
        DrawRect(painter, style.color, style.width, outline);
    }
}

// The sides lie over each other in the corners, and over the fill.
void RectShape::drawShadow(QPainter &painter, const EditMsg &style) const
{
    if (isFilled(style)) {
        const qreal edge = style.width / 2.;
        painter.setPen(Qt::NoPen);
        painter.drawRect(QRectF(box(style)).adjusted(-edge, -edge, edge, edge));
    } else if (style.dashes != Dashes::None) {
        draw(painter, style);
    } else {
        painter.drawPolygon(outline);
    }
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
