#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>

#include <memory>
#include <vector>

/// Pixels on a plane that grows on any side, kept in tiles: what is there never moves in memory. A
/// pixel that nobody has painted is 0. Places lie between -32,768 and 32,767.
class Plane
{
public:
    Plane();

    enum class Over {
        All,
        Nothing  ///< only where nobody has painted
    };
    /// Paints `part` of a picture, whose top left corner lies at `at`. False, with some of it
    /// painted, where there is no memory left.
    bool paint(QPoint at, const QImage &picture, const QRect &part, Over over = Over::All);
    QRgb pixel(QPoint at) const
    {
        const Tile &tile = m_tiles[indexOf(at.x(), at.y())];
        return tile ? *pixels(tile.get(), at.x(), at.y()) : 0;
    }
    /// The given rectangle as a picture.
    QImage read(const QRect &area) const;
    /// Writes the given rectangle into a picture at `to`, and forgets it on the way: both need not
    /// be in memory.
    void moveTo(QImage &picture, QPoint to, const QRect &area);

private:
    static constexpr int s_origin = 32768;
    static constexpr int s_side = 256;
    static constexpr int s_tiles = 2 * s_origin / s_side;  // each way

    using Tile = std::unique_ptr<QRgb[]>;
    static size_t indexOf(int x, int y) { return tileAt(y) * s_tiles + tileAt(x); }
    static size_t tileAt(int at) { return static_cast<unsigned>(at + s_origin) / s_side; }
    static size_t inTile(int at) { return static_cast<unsigned>(at + s_origin) % s_side; }
    static QRgb *pixels(QRgb *tile, int x, int y) { return tile + inTile(y) * s_side + inTile(x); }
    /// Calls `run(part)` for each part of `area` that lies in one tile, row of tiles by row.
    template<typename Run> static void forTiles(const QRect &area, const Run &run);

    std::vector<Tile> m_tiles;
};
