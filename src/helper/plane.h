#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>

#include <memory>
#include <vector>

/// Pixels on a plane that can grow in all directions. They are stored in tiles, so existing pixels
/// never move in memory. A pixel that has not been painted is 0. Coordinates are between -32,768
/// and 32,767.
class Plane
{
public:
    Plane();

    enum class Over {
        All,
        Nothing  ///< paints only pixels that have not been painted yet
    };
    /// Paints `part` of a picture whose top left corner is at `at`. Returns false if there is no
    /// memory left; some of it may have been painted.
    bool paint(QPoint at, const QImage &picture, const QRect &part, Over over = Over::All);
    QRgb pixel(QPoint at) const
    {
        const Tile &tile = m_tiles[indexOf(at.x(), at.y())];
        return tile ? *pixels(tile.get(), at.x(), at.y()) : 0;
    }
    /// The pixels of `area` as a picture.
    QImage read(const QRect &area) const;
    /// Copies the pixels of `area` to `to` in a picture, and frees the tiles meanwhile, so that
    /// memory is not needed for both.
    void moveTo(QImage &picture, QPoint to, const QRect &area);

private:
    static constexpr int s_origin = 32768;
    static constexpr int s_side = 256;
    static constexpr int s_tiles = 2 * s_origin / s_side;  // in each direction

    using Tile = std::unique_ptr<QRgb[]>;
    static size_t indexOf(int x, int y) { return tileAt(y) * s_tiles + tileAt(x); }
    static size_t tileAt(int at) { return static_cast<unsigned>(at + s_origin) / s_side; }
    static size_t inTile(int at) { return static_cast<unsigned>(at + s_origin) % s_side; }
    static QRgb *pixels(QRgb *tile, int x, int y) { return tile + inTile(y) * s_side + inTile(x); }
    /// Calls `run(part)` for each part of `area` that is in one tile, one row of tiles after the
    /// other.
    template<typename Run> static void forTiles(const QRect &area, const Run &run);

    std::vector<Tile> m_tiles;
};
