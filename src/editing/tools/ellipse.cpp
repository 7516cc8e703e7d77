#include "editing/tools/ellipse.h"

#include "editing/shapeparts.h"
#include "editing/tiles.h"

#include <QPainter>
#include <QPainterPath>

using namespace Qt::StringLiterals;

namespace {

QPainterPath pathOf(const QRect &bounds)
{
    QPainterPath path;
    path.addEllipse(bounds);
    return path;
}

// One outline, slightly beside the curve.
QPolygonF outlineOf(const QRect &bounds) { return pathOf(bounds).toSubpathPolygons().value(0); }

}  // namespace

std::optional<EllipseShape> EllipseShape::from(const Drag &drag)
{
    return drag.box ? std::optional(EllipseShape{*drag.box}) : std::nullopt;
}

void EllipseShape::draw(QPainter &painter, const EditMsg &style) const
{
    // A whole number of dashes from axis to axis, so that it looks the same when it is turned.
    if (style.dashes != Dashes::None)
        setDashes(painter, style, pathOf(bounds).length() / 4);
    painter.drawEllipse(bounds);
}

// The outline lies over the fill.
void EllipseShape::drawShadow(QPainter &painter, const EditMsg &style) const
{
    if (isFilled(style)) {
        const qreal edge = style.width / 2.;
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(QRectF(bounds).adjusted(-edge, -edge, edge, edge));
    } else {
        draw(painter, style);
    }
}

void EllipseShape::cover(Tiles &tiles, const EditMsg &style) const
{
    const QPolygonF outline = outlineOf(bounds);
    tiles.addOutline(outline, Tiles::reachOf(style.width) + 1);
    if (isFilled(style))
        tiles.addRect(outline.boundingRect());
}

QPolygon EllipseShape::drawnPoints() const
{
    const QPoint middle = bounds.topLeft() + QPoint(bounds.width() / 2, bounds.height() / 2);
    return QList<QPoint>{{bounds.left(), middle.y()},
                         {middle.x(), bounds.top()},
                         {bounds.left() + bounds.width(), middle.y()},
                         {middle.x(), bounds.top() + bounds.height()}};
}

bool EllipseShape::hit(QPointF point, qreal grace, const EditMsg &style) const
{
    const QPolygonF outline = outlineOf(bounds);
    return isOnLine(outline, point, style.width, grace) ||
           (isFilled(style) && outline.containsPoint(point, Qt::OddEvenFill));
}

void EllipseShape::write(QJsonObject &to) const
{
    to["bounds"_L1] = QJsonArray{bounds.x(), bounds.y(), bounds.width(), bounds.height()};
}

EllipseShape EllipseShape::read(ShapeParts &parts)
{
    const QPolygon corner = parts.points("bounds"_L1, 2, 2);
    return {{corner.first(), QSize(corner.last().x(), corner.last().y())}};
}
