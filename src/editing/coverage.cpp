#include "editing/coverage.h"

#include "editing/rendering.h"
#include "editing/tiles.h"

#include <algorithm>

namespace {

bool isDrawnIn(const QRect &part, const Geometry &geometry, EditMsg style)
{
    QImage image(part.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-part.topLeft());
    style.color = Qt::black;
    drawShape(painter, geometry, style);
    painter.end();
    const uchar *bytes = image.constBits();
    return std::any_of(bytes, bytes + image.sizeInBytes(), [](uchar byte) { return byte != 0; });
}

}  // namespace

QRegion coverage(const Geometry &geometry, const EditMsg &style, QSize picture, bool isFine)
{
    Tiles tiles(picture, shadowReach(geometry, style), isFine);
    std::visit([&](const auto &shape) { shape.cover(tiles, style); }, geometry);
    return tiles.region();
}

QRegion changeOf(const EditEntry &before, const EditEntry &after, QSize picture)
{
    Tiles tiles(picture, shadowReach(after.geometry, after.style));
    const auto isKnown = [&]<typename Shape>(const Shape &now) {
        if constexpr (requires { now.coverChange(tiles, now, after.style); }) {
            const auto *was = std::get_if<Shape>(&before.geometry);
            return was && now.coverChange(tiles, *was, after.style);
        }
        return false;
    };
    if (before.style == after.style && std::visit(isKnown, after.geometry))
        return tiles.region();
    return coverage(before.geometry, before.style, picture) +
           coverage(after.geometry, after.style, picture);
}

bool liesOutside(const Geometry &geometry, const EditMsg &style, QSize picture)
{
    const QPolygon points =
        std::visit([](const auto &shape) { return shape.drawnPoints(); }, geometry);
    const QRect all(QPoint(), picture);
    if (points.isEmpty() || std::any_of(points.begin(), points.end(),
                                        [&](QPoint point) { return all.contains(point); }))
        return false;
    // No point is in the picture, but lines may cross it or reach into it by their width. The tiles
    // cover slightly more than the shape, so each is tested by drawing.
    const QRegion tiles = coverage(geometry, style, picture);
    return std::none_of(tiles.begin(), tiles.end(),
                        [&](const QRect &tile) { return isDrawnIn(tile, geometry, style); });
}
