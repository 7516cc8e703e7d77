#include "editing/tools/spotlight.h"

#include "editing/shapeparts.h"
#include "editing/shapes.h"
#include "editing/tiles.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRegion>

#include <algorithm>
#include <cmath>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

constexpr float s_darkness = 0.5F;
constexpr int s_part = 64;  // pixels

using Spot = SpotlightShape::Spot;

// A rectangle where the ellipse is the circle of radius 1 around (0, 0).
QRectF toCircle(const QRect &ellipse, const QRectF &rect)
{
    const QPointF middle = QRectF(ellipse).center();
    const qreal across = ellipse.width() / 2.;
    const qreal down = ellipse.height() / 2.;
    return {(rect.x() - middle.x()) / across, (rect.y() - middle.y()) / down, rect.width() / across,
            rect.height() / down};
}

// Whether all pixels of a part are wholly bright.
bool contains(const Spot &spot, const QRect &part)
{
    if (!spot.isRound)
        return spot.bounds.contains(part);
    const QRectF room = toCircle(spot.bounds, QRectF(part).adjusted(-1, -1, 1, 1));
    return std::hypot(std::max(-room.left(), room.right()), std::max(-room.top(), room.bottom())) <
           1;
}

// The ground of one part with ellipses left out. Parts lie where they do whatever is drawn of the
// picture, so that their pixels are always the same.
QImage around(const QList<Spot> &ellipses, const QRect &part, const QColor &dark)
{
    QImage result(part.size(), QImage::Format_ARGB32_Premultiplied);
    result.fill(dark);
    QPainter painter(&result);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.translate(-part.topLeft());
    for (const Spot &ellipse : ellipses)
        painter.drawEllipse(ellipse.bounds);
    return result;
}

int floored(int at) { return (at >= 0 ? at : at - s_part + 1) / s_part * s_part; }

}  // namespace

bool SpotlightShape::Spot::operator<(const Spot &other) const
{
    const auto parts = [](const Spot &spot) {
        return std::tuple(spot.bounds.x(), spot.bounds.y(), spot.bounds.width(),
                          spot.bounds.height(), spot.isRound);
    };
    return parts(*this) < parts(other);
}

std::optional<SpotlightShape> SpotlightShape::from(const Drag &drag)
{
    return drag.box && !drag.box->isEmpty() ? std::optional(SpotlightShape{*drag.box})
                                            : std::nullopt;
}

void SpotlightShape::settle(QList<EntryPtr> &shapes, const QList<ShapeId> & /*byAge*/)
{
    QList<EntryPtr *> spotlights;
    QList<Spot> all;
    for (EntryPtr &shape : shapes) {
        if (const auto *spotlight = std::get_if<SpotlightShape>(&shape->geometry)) {
            spotlights.append(&shape);
            all.append({spotlight->bounds, shape->style.isRound});
        }
    }
    std::sort(all.begin(), all.end());
    for (EntryPtr *entry : std::as_const(spotlights)) {
        SpotlightShape shape = std::get<SpotlightShape>((*entry)->geometry);
        const QList<Spot> areas = entry == spotlights.first() ? all : QList<Spot>();
        if (shape.spots == areas)
            continue;
        shape.spots = areas;
        *entry = std::make_shared<const EditEntry>(EditEntry{shape, (*entry)->style, (*entry)->id});
    }
}

void SpotlightShape::draw(QPainter &painter, const EditMsg &style) const
{
    if (spots.isEmpty())
        return;
    QRegion dark = visiblePart(painter);
    QList<Spot> ellipses;
    QRegion curved;
    for (const Spot &spot : spots) {
        if (!spot.isRound) {
            dark -= spot.bounds;
        } else if (!spot.bounds.isEmpty()) {
            ellipses.append(spot);
            curved += spot.bounds;
        }
    }
    curved &= dark;
    QColor color = style.color;
    color.setAlphaF(color.alphaF() * s_darkness);
    for (const QRect &rect : dark - curved)
        painter.fillRect(rect, color);
    const QRect all = curved.boundingRect();
    for (int y = floored(all.top()); y <= all.bottom(); y += s_part) {
        for (int x = floored(all.left()); x <= all.right(); x += s_part) {
            const QRect part(x, y, s_part, s_part);
            const QRegion drawn = curved & part;
            if (drawn.isEmpty() || std::any_of(ellipses.begin(), ellipses.end(),
                                               [&](auto &spot) { return contains(spot, part); }))
                continue;
            const QImage image = around(ellipses, part, color);
            for (const QRect &rect : drawn)
                painter.drawImage(rect.topLeft(), image, rect.translated(-part.topLeft()));
        }
    }
}

void SpotlightShape::cover(Tiles &tiles, const EditMsg & /*style*/) const
{
    if (!spots.isEmpty())
        tiles.addAll();
}

// Where a spot has come, gone or changed, but for what stays in the middle of one. The corners
// beside an ellipse count, too: they are drawn in another way, which may round otherwise.
bool SpotlightShape::coverChange(Tiles &tiles, const SpotlightShape &before,
                                 const EditMsg & /*style*/) const
{
    if (spots.isEmpty() != before.spots.isEmpty())
        tiles.addAll();
    const auto isBright = [](const QList<Spot> &by, const QRect &tile) {
        return std::any_of(by.begin(), by.end(),
                           [&](const Spot &spot) { return contains(spot, tile); });
    };
    const auto addFrom = [&](const QList<Spot> &some, const QList<Spot> &others) {
        for (const Spot &spot : some) {
            if (spot.bounds.isEmpty() || others.contains(spot))
                continue;
            tiles.addWhere(spot.bounds, [&](const QRect &tile) {
                return !(isBright(some, tile) && isBright(others, tile));
            });
        }
    };
    addFrom(spots, before.spots);
    addFrom(before.spots, spots);
    return true;
}

bool SpotlightShape::hit(QPointF point, qreal grace, const EditMsg &style) const
{
    QPainterPath edge;
    if (style.isRound)
        edge.addEllipse(bounds);
    else
        edge.addRect(bounds);
    return isOnLine(edge.toSubpathPolygons().value(0), point, 1, grace);
}

void SpotlightShape::write(QJsonObject &to) const
{
    to["bounds"_L1] = QJsonArray{bounds.x(), bounds.y(), bounds.width(), bounds.height()};
}

SpotlightShape SpotlightShape::read(ShapeParts &parts)
{
    const QPolygon corner = parts.points("bounds"_L1, 2, 2);
    return {{corner.first(), QSize(corner.last().x(), corner.last().y())}};
}
