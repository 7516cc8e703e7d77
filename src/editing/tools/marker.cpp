#include "editing/tools/marker.h"

#include "editing/shapeparts.h"
#include "editing/shapes.h"
#include "editing/tiles.h"

#include <QHash>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

// Of the disc's radius: what the digits' corners keep to.
constexpr qreal s_digitsReach = 0.74;
constexpr int s_digitsSize = 64;  // pixels; they are drawn as outlines, which grow to any size

int radiusOf(const MarkerShape &marker, const EditMsg &style)
{
    return marker.room + 2 * style.width;
}

// The digits around (0, 0), so that all numbers of as many digits are equally large.
QPainterPath digits(int number, QFont font, qreal reach)
{
    font.setPixelSize(s_digitsSize);
    font.setBold(true);
    const QString text = QString::number(number);
    QPainterPath written;
    written.addText({}, font, text);
    QPainterPath widest;
    widest.addText({}, font, QString(text.size(), u'0'));
    const QRectF room = widest.boundingRect();
    const QPointF middle(written.boundingRect().center().x(), room.center().y());
    const qreal scale = reach / std::max(std::hypot(room.width(), room.height()) / 2, 1.);
    return QTransform::fromScale(scale, scale).map(written.translated(-middle));
}

}  // namespace

void MarkerShape::settle(QList<EntryPtr> &shapes, const QList<ShapeId> &byAge)
{
    QHash<ShapeId, EntryPtr *> markers;
    for (EntryPtr &shape : shapes) {
        if (std::holds_alternative<MarkerShape>(shape->geometry))
            markers.insert(shape->id, &shape);
    }
    int number = 0;
    for (const ShapeId id : byAge) {
        const auto found = markers.constFind(id);
        if (found == markers.constEnd())
            continue;
        EntryPtr &entry = **found;
        MarkerShape marker = std::get<MarkerShape>(entry->geometry);
        number = marker.start > 0 ? marker.start : number + 1;
        if (marker.number == number)
            continue;
        marker.number = number;
        entry = std::make_shared<const EditEntry>(EditEntry{marker, entry->style, id});
    }
}

void MarkerShape::draw(QPainter &painter, const EditMsg &style) const
{
    const int radius = radiusOf(*this, style);
    painter.setPen(Qt::NoPen);
    painter.setBrush(style.color);
    painter.drawEllipse(middle, radius, radius);
    painter.setBrush(contrastTo(style.color));
    painter.drawPath(digits(number, style.font, radius * s_digitsReach).translated(middle));
}

void MarkerShape::drawShadow(QPainter &painter, const EditMsg &style) const
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(style.color);
    painter.drawEllipse(middle, radiusOf(*this, style), radiusOf(*this, style));
}

void MarkerShape::cover(Tiles &tiles, const EditMsg &style) const
{
    tiles.addRect(QRectF(box(style)).adjusted(-1, -1, 1, 1));
}

bool MarkerShape::hit(QPointF point, qreal grace, const EditMsg &style) const
{
    return isNearLine(QPolygonF({QPointF(middle)}), point, radiusOf(*this, style) + grace);
}

QRect MarkerShape::box(const EditMsg &style) const
{
    const int radius = radiusOf(*this, style);
    return {middle - QPoint(radius, radius), QSize(2 * radius, 2 * radius)};
}

MarkerShape MarkerShape::mapped(const PictureMap &map, const EditMsg & /*style*/) const
{
    MarkerShape result = *this;
    result.middle = map(middle);
    result.room = std::clamp(qRound(room * map.growth()), 1, s_widestLine);
    return result;
}

void MarkerShape::write(QJsonObject &to) const
{
    to["middle"_L1] = QJsonArray{middle.x(), middle.y()};
    to["room"_L1] = room;
    if (start > 0)
        to["start"_L1] = start;
}

MarkerShape MarkerShape::read(ShapeParts &parts)
{
    MarkerShape marker{.middle = parts.points("middle"_L1, 1, 1).first(),
                       .room = parts.number("room"_L1)};
    if (parts.value("start"_L1).isDouble())
        marker.start = parts.number("start"_L1);
    parts.require(marker.room >= 1 && marker.room <= s_widestLine);
    parts.require(marker.start >= 0 && marker.start <= s_highest);
    return marker;
}
