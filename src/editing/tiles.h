#pragma once

#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QRegion>
#include <QSize>

#include <vector>

/// Marks tiles of a picture that a shape may change. Picture coordinates; what lies outside of the
/// picture is left out.
class Tiles
{
public:
    /// Finer tiles take longer to mark, and follow the shape more closely.
    explicit Tiles(QSize picture, bool isFine = false);

    void addRect(const QRectF &rect);
    /// Adds a line that is drawn up to `reach` pixels around itself.
    void addLine(QPointF from, QPointF to, double reach);
    /// The same for the lines through points.
    void addOutline(const QPolygonF &points, double reach);

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
    int m_columns;
    int m_rows;
    std::vector<bool> m_taken;
};
