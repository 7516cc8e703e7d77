#include "editing/tools/tool.h"

#include <algorithm>
#include <cmath>

namespace {

qreal distance(QPointF a, QPointF b) { return std::hypot(a.x() - b.x(), a.y() - b.y()); }

qreal distanceToSegment(QPointF point, QPointF from, QPointF to)
{
    const QPointF way = to - from;
    const qreal length = QPointF::dotProduct(way, way);
    const qreal part =
        length > 0 ? std::clamp(QPointF::dotProduct(point - from, way) / length, 0., 1.) : 0;
    return distance(point, from + part * way);
}

}  // namespace

bool isNearLine(const QPolygonF &line, QPointF point, qreal reach)
{
    if (line.size() == 1)
        return distance(line.first(), point) <= reach;
    for (qsizetype i = 1; i < line.size(); ++i) {
        if (distanceToSegment(point, line.at(i - 1), line.at(i)) <= reach)
            return true;
    }
    return false;
}

bool isOnLine(const QPolygonF &line, QPointF point, int width, qreal grace)
{
    return isNearLine(line, point, std::max(width, 1) / 2. + grace);
}
