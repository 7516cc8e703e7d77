#pragma once

#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QRegion>
#include <QSize>

#include <functional>
#include <vector>

/// Marks tiles of a picture that a shape may change. Picture coordinates; what lies outside of the
/// picture is left out.
class Tiles
{
public:
    /// Whatever is added is taken for larger by `margin` pixels on each side. Finer tiles take
    /// longer to mark, and follow the shape more closely.
    explicit Tiles(QSize picture, int margin = 0, bool isFine = false);

    void addAll() { m_taken.assign(m_taken.size(), true); }
    void addRect(const QRectF &rect);
    /// Adds a line that is drawn up to `reach` pixels around itself.
    void addLine(QPointF from, QPointF to, double reach);
    /// The same for the lines through points.
    void addOutline(const QPolygonF &points, double reach);
    /// Adds each tile that an area touches and for which `isMeant` says so.
    void addWhere(const QRect &area, const std::function<bool(const QRect &tile)> &isMeant);

    /// How far a line of that width is drawn around itself.
    static double reachOf(int width);

    QRegion region() const;

private:
    size_t index(int row, int column) const
    {
        return static_cast<size_t>(row) * m_columns + column;
    }
    void addSpan(int row, double left, double right);

    int m_tile;  ///< the side of a tile
    QSize m_picture;
    int m_margin;
    int m_columns;
    int m_rows;
    std::vector<bool> m_taken;
};
