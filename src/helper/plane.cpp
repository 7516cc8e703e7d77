#include "helper/plane.h"

#include "helper/pixelrows.h"

#include <algorithm>
#include <cstring>
#include <new>

Plane::Plane() : m_tiles(static_cast<size_t>(s_tiles) * s_tiles) {}

template<typename Run> void Plane::forTiles(const QRect &area, const Run &run)
{
    const auto end = [](int at) { return (at + s_origin) / s_side * s_side + s_side - s_origin; };
    const int right = area.x() + area.width();
    const int bottom = area.y() + area.height();
    for (int y = area.y(); y < bottom; y = end(y)) {
        for (int x = area.x(); x < right; x = end(x))
            run(QRect(x, y, std::min(end(x), right) - x, std::min(end(y), bottom) - y));
    }
}

bool Plane::paint(QPoint at, const QImage &picture, const QRect &part, Over over)
{
    bool isWhole = true;
    forTiles(part.translated(at), [&](const QRect &piece) {
        Tile &tile = m_tiles[indexOf(piece.x(), piece.y())];
        if (!tile)
            tile.reset(new (std::nothrow) QRgb[size_t{s_side} * s_side]());
        if (!tile) {
            isWhole = false;
            return;
        }
        const QPoint from = piece.topLeft() - at;
        for (int y = 0; y < piece.height(); ++y) {
            QRgb *to = pixels(tile.get(), piece.x(), piece.y() + y);
            const QRgb *row = pixelRow(picture, from.y() + y) + from.x();
            if (over == Over::All)
                std::memcpy(to, row, sizeof(QRgb) * piece.width());
            else
                std::transform(to, to + piece.width(), row, to,
                               [](QRgb was, QRgb is) { return was ? was : is; });
        }
    });
    return isWhole;
}

QImage Plane::read(const QRect &area) const
{
    QImage result(area.size(), QImage::Format_ARGB32_Premultiplied);
    result.fill(0);
    const QRect held(-s_origin, -s_origin, 2 * s_origin, 2 * s_origin);
    forTiles(area & held, [&](const QRect &piece) {
        const Tile &tile = m_tiles[indexOf(piece.x(), piece.y())];
        if (!tile)
            return;
        const QPoint to = piece.topLeft() - area.topLeft();
        for (int y = 0; y < piece.height(); ++y)
            std::memcpy(result.scanLine(to.y() + y) + sizeof(QRgb) * to.x(),
                        pixels(tile.get(), piece.x(), piece.y() + y), sizeof(QRgb) * piece.width());
    });
    return result;
}

void Plane::moveTo(QImage &picture, QPoint to, const QRect &area)
{
    forTiles(area, [&](const QRect &piece) {
        Tile &tile = m_tiles[indexOf(piece.x(), piece.y())];
        if (!tile)
            return;
        const QPoint corner = piece.topLeft() - area.topLeft() + to;
        for (int y = 0; y < piece.height(); ++y)
            std::memcpy(picture.scanLine(corner.y() + y) + sizeof(QRgb) * corner.x(),
                        pixels(tile.get(), piece.x(), piece.y() + y), sizeof(QRgb) * piece.width());
        tile.reset();
    });
}
