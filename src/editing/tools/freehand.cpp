#include "editing/tools/freehand.h"

#include "editing/shapeparts.h"
#include "editing/tiles.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

// More handles than these could not be told apart.
constexpr qsizetype s_mostEnds = 12;
constexpr qsizetype s_fewestKept = 3;

}  // namespace

void PolylineShape::draw(QPainter &painter, const EditMsg &style) const
{
    setDashes(painter, style, lengthOf(points));
    painter.drawPolyline(points);
}

void PolylineShape::cover(Tiles &tiles, const EditMsg &style) const
{
    tiles.addOutline(points, Tiles::reachOf(style.width));
}

// While it is drawn it grows at one of its ends. Only what is new has to be looked at, and the last
// part before it, whose cap is gone. Shorter lines may have other caps, and dashes are laid out
// anew.
bool PolylineShape::coverChange(Tiles &tiles, const PolylineShape &before,
                                const EditMsg &style) const
{
    const qsizetype kept = before.points.size();
    if (style.dashes != Dashes::None || kept < s_fewestKept || points.size() < kept)
        return false;
    const qsizetype grown = points.size() - kept + 2;
    if (points.first(kept) == before.points)
        tiles.addOutline(QPolygon(points.last(grown)), Tiles::reachOf(style.width));
    else if (points.last(kept) == before.points)
        tiles.addOutline(QPolygon(points.first(grown)), Tiles::reachOf(style.width));
    else
        return false;
    return true;
}

bool PolylineShape::hit(QPointF point, qreal grace, const EditMsg &style) const
{
    return isOnLine(points, point, style.width, grace);
}

QPolygon PolylineShape::ends() const { return points.size() <= s_mostEnds ? points : QPolygon(); }

PolylineShape PolylineShape::withEnd(qsizetype end, QPoint at, const EditMsg & /*style*/) const
{
    PolylineShape result = *this;
    result.points[end] = at;
    return result;
}

void PolylineShape::write(QJsonObject &to) const { to["points"_L1] = numbersOf(points); }

PolylineShape PolylineShape::read(ShapeParts &parts)
{
    return {parts.points("points"_L1, 0, ShapeParts::s_farthest)};
}
