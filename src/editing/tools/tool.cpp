#include "editing/tools/tool.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

// Of a dash and the gap behind it, without the caps, in widths of the pen. A dot is all cap.
struct Pattern {
    qreal dash = 0;
    qreal gap = 0;
    Qt::PenCapStyle cap = Qt::SquareCap;
};
constexpr Pattern s_dashed{2, 3, Qt::SquareCap};
constexpr Pattern s_dotted{0.02, 2, Qt::RoundCap};

qreal distance(QPointF a, QPointF b) { return std::hypot(a.x() - b.x(), a.y() - b.y()); }

qreal distanceToSegment(QPointF point, QPointF from, QPointF to)
{
    const QPointF way = to - from;
    const qreal length = QPointF::dotProduct(way, way);
    const qreal part =
        length > 0 ? std::clamp(QPointF::dotProduct(point - from, way) / length, 0., 1.) : 0;
    return distance(point, from + part * way);
}

float luminanceOf(const QColor &color)
{
    const auto linear = [](float part) {
        return part <= 0.04045F ? part / 12.92F : std::pow((part + 0.055F) / 1.055F, 2.4F);
    };
    return 0.2126F * linear(color.redF()) + 0.7152F * linear(color.greenF()) +
           0.0722F * linear(color.blueF());
}

}  // namespace

QRegion visiblePart(const QPainter &painter)
{
    const QRegion all = painter.transform().inverted().mapRect(painter.viewport());
    return painter.hasClipping() ? all & painter.clipRegion() : all;
}

void setDashes(QPainter &painter, const EditMsg &style, qreal length)
{
    if (style.dashes == Dashes::None)
        return;
    QPen pen = painter.pen();
    const Pattern &pattern = style.dashes == Dashes::Dashed ? s_dashed : s_dotted;
    const qreal widths = length / std::max(pen.widthF(), 1.);
    const qreal count = std::round(widths / (pattern.dash + pattern.gap));
    if (count < 1)
        return;
    const qreal stretch = widths / (count * (pattern.dash + pattern.gap));
    pen.setDashPattern({pattern.dash * stretch, pattern.gap * stretch});
    pen.setDashOffset(pattern.dash * stretch / 2);
    pen.setCapStyle(pattern.cap);
    painter.setPen(pen);
}

qreal lengthOf(const QPolygonF &line)
{
    qreal length = 0;
    for (qsizetype i = 1; i < line.size(); ++i)
        length += distance(line.at(i - 1), line.at(i));
    return length;
}

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

QRect boxAround(const QPolygon &points)
{
    const QRect inclusive = points.boundingRect();
    return points.isEmpty() ? QRect() : inclusive.adjusted(0, 0, -1, -1);
}

bool isFilled(const EditMsg &style) { return style.fill != Fill::None; }

EditMsg mapped(EditMsg style, const PictureMap &map)
{
    if (map.keepsLengths())
        return style;
    style.width = std::clamp(qRound(style.width * map.growth()), 1, s_widestLine);
    if (style.font.pointSizeF() > 0)
        style.font.setPointSizeF(
            std::clamp(style.font.pointSizeF() * map.growth(), 1., s_largestText));
    else
        style.font.setPixelSize(std::clamp(qRound(style.font.pixelSize() * map.growth()), 1,
                                           static_cast<int>(s_largestText)));
    return style;
}

// By the relative luminance of both, as the guidelines for readable texts weigh it.
QColor contrastTo(const QColor &color)
{
    // Where both contrasts, (1 + 0.05) / (l + 0.05) and (l + 0.05) / 0.05, are equal.
    return luminanceOf(color) > 0.1791F ? Qt::black : Qt::white;
}

QColor groundFor(const QColor &letters)
{
    // The contrast to white is 3 to 1.
    return luminanceOf(letters) > 0.3F ? Qt::black : Qt::white;
}
