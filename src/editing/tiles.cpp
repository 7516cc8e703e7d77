#include "editing/tiles.h"

#include <algorithm>
#include <cmath>

namespace {

// Picture pixels.
constexpr int s_tile = 32;
constexpr int s_fineTile = 8;

int first(double at, int tile) { return std::max(0, static_cast<int>(std::floor(at / tile))); }

int last(double at, int tile, int count)
{
    return static_cast<int>(std::min<double>(count - 1, std::floor(at / tile)));
}

}  // namespace

Tiles::Tiles(QSize picture, int margin, bool isFine)
    : m_tile(isFine ? s_fineTile : s_tile), m_picture(picture), m_margin(margin),
      m_columns((picture.width() + m_tile - 1) / m_tile),
      m_rows((picture.height() + m_tile - 1) / m_tile),
      m_taken(static_cast<size_t>(m_columns) * m_rows)
{
}

// Half of the pen's width, the corners of its square caps, and the antialiased edge.
double Tiles::reachOf(int width) { return std::max(0, width) * 0.75 + 2; }

void Tiles::addRect(const QRectF &rect)
{
    for (int row = first(rect.top() - m_margin, m_tile);
         row <= last(rect.bottom() + m_margin, m_tile, m_rows); ++row)
        addSpan(row, rect.left() - m_margin, rect.right() + m_margin);
}

void Tiles::addLine(QPointF from, QPointF to, double reach)
{
    reach += m_margin;
    const QPointF way = to - from;
    const double top = std::min(from.y(), to.y()) - reach;
    const double bottom = std::max(from.y(), to.y()) + reach;
    for (int row = first(top, m_tile); row <= last(bottom, m_tile, m_rows); ++row) {
        // Clips the line to this row of tiles.
        double start = 0;
        double end = 1;
        if (std::abs(way.y()) > 1) {
            start = std::clamp((row * m_tile - reach - from.y()) / way.y(), 0., 1.);
            end = std::clamp(((row + 1) * m_tile + reach - from.y()) / way.y(), 0., 1.);
        }
        const auto [left, right] =
            std::minmax({from.x() + start * way.x(), from.x() + end * way.x()});
        addSpan(row, left - reach, right + reach);
    }
}

void Tiles::addOutline(const QPolygonF &points, double reach)
{
    for (qsizetype i = 1; i < points.size(); ++i)
        addLine(points.at(i - 1), points.at(i), reach);
}

void Tiles::addWhere(const QRect &area, const std::function<bool(const QRect &tile)> &isMeant)
{
    for (int row = first(area.top(), m_tile); row <= last(area.bottom(), m_tile, m_rows); ++row) {
        for (int column = first(area.left(), m_tile);
             column <= last(area.right(), m_tile, m_columns); ++column) {
            if (isMeant({column * m_tile, row * m_tile, m_tile, m_tile}))
                m_taken[index(row, column)] = true;
        }
    }
}

void Tiles::addSpan(int row, double left, double right)
{
    for (int column = first(left, m_tile); column <= last(right, m_tile, m_columns); ++column)
        m_taken[index(row, column)] = true;
}

QRegion Tiles::region() const
{
    std::vector<QRect> rects;
    const QRect all(QPoint(), m_picture);
    for (int row = 0; row < m_rows; ++row) {
        for (int column = 0; column < m_columns; ++column) {
            const int start = column;
            while (column < m_columns && m_taken[index(row, column)])
                ++column;
            if (column > start) {
                rects.push_back(
                    QRect(start * m_tile, row * m_tile, (column - start) * m_tile, m_tile) & all);
            }
        }
    }
    QRegion region;
    region.setRects(rects.data(), static_cast<int>(rects.size()));
    return region;
}
