#include "editing/coverage.h"

#include "editing/rendering.h"

#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int s_tile = 64;  // picture pixels
constexpr int s_stackedLines = 12;

/// Marks tiles of a picture.
class Tiles
{
public:
    explicit Tiles(QSize picture)
        : m_picture(picture), m_columns((picture.width() + s_tile - 1) / s_tile),
          m_rows((picture.height() + s_tile - 1) / s_tile),
          m_taken(static_cast<size_t>(m_columns) * m_rows)
    {
    }

    void addRect(const QRectF &rect)
    {
        for (int row = first(rect.top()); row <= last(rect.bottom(), m_rows); ++row)
            addSpan(row, rect.left(), rect.right());
    }

    /// Adds a line that is drawn up to `reach` pixels around itself.
    void addLine(const QPointF &a, const QPointF &b, double reach)
    {
        const QPointF d = b - a;
        const double top = std::min(a.y(), b.y()) - reach;
        const double bottom = std::max(a.y(), b.y()) + reach;
        for (int row = first(top); row <= last(bottom, m_rows); ++row) {
            // Clips the line to this row of tiles.
            double from = 0;
            double to = 1;
            if (std::abs(d.y()) > 1) {
                from = std::clamp((row * s_tile - reach - a.y()) / d.y(), 0., 1.);
                to = std::clamp(((row + 1) * s_tile + reach - a.y()) / d.y(), 0., 1.);
            }
            const auto [left, right] = std::minmax({a.x() + from * d.x(), a.x() + to * d.x()});
            addSpan(row, left - reach, right + reach);
        }
    }

    QRegion region() const
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
                        QRect(start * s_tile, row * s_tile, (column - start) * s_tile, s_tile) &
                        all);
                }
            }
        }
        QRegion region;
        region.setRects(rects.data(), static_cast<int>(rects.size()));
        return region;
    }

private:
    static int first(double at) { return std::max(0, static_cast<int>(std::floor(at / s_tile))); }

    static int last(double at, int count)
    {
        return static_cast<int>(std::min<double>(count - 1, std::floor(at / s_tile)));
    }

    size_t index(int row, int column) const
    {
        return static_cast<size_t>(row) * m_columns + column;
    }

    void addSpan(int row, double left, double right)
    {
        for (int column = first(left); column <= last(right, m_columns); ++column)
            m_taken[index(row, column)] = true;
    }

    QSize m_picture;
    int m_columns;
    int m_rows;
    std::vector<bool> m_taken;
};

// Half of the pen's width, the corners of its square caps, and the antialiased edge.
double reachOf(int width) { return std::max(0, width) * 0.75 + 2; }

template<typename Polygon> void addOutline(Tiles &tiles, const Polygon &points, double reach)
{
    for (qsizetype i = 1; i < points.size(); ++i)
        tiles.addLine(points.at(i - 1), points.at(i), reach);
}

void add(Tiles &, const EmptyShape &, const EditMsg &) {}

void add(Tiles &tiles, const RectShape &shape, const EditMsg &style)
{
    addOutline(tiles, shape.outline, reachOf(style.width));
}

void add(Tiles &tiles, const EllipseShape &shape, const EditMsg &style)
{
    QPainterPath path;
    path.addEllipse(shape.bounds);
    for (const QPolygonF &outline : path.toSubpathPolygons())
        addOutline(tiles, outline, reachOf(style.width) + 1);
}

void add(Tiles &tiles, const ArrowShape &shape, const EditMsg &style)
{
    if (shape.points.size() < 3)
        return;
    const double edge = reachOf(1);
    tiles.addRect(
        QRectF(QPolygon(shape.points.first(3)).boundingRect()).adjusted(-edge, -edge, edge, edge));
    tiles.addLine(shape.points.last(), shape.points.at(3), reachOf(style.width));
}

void add(Tiles &tiles, const PolylineShape &shape, const EditMsg &style)
{
    addOutline(tiles, shape.points, reachOf(style.width));
}

// Letters may extend beyond their bounding rectangle.
void add(Tiles &tiles, const TextShape &shape, const EditMsg &style)
{
    if (style.text.isEmpty())
        return;
    QImage image(1, 1, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setFont(style.font);
    // Any number of combining marks may be stacked on a letter.
    const bool hasMarks = std::any_of(style.text.begin(), style.text.end(),
                                      [](QChar character) { return character.isMark(); });
    const double lean = painter.fontMetrics().height() * (hasMarks ? s_stackedLines : 1);
    const QRectF bounds = textBounds(painter, shape.position, style.text);
    tiles.addRect(bounds.adjusted(-lean, -lean, lean, lean));
}

// Points that are drawn in any case.
QPolygon pointsOf(const EmptyShape &) { return {}; }

QPolygon pointsOf(const RectShape &shape) { return shape.outline; }

QPolygon pointsOf(const EllipseShape &shape)
{
    const QRect &box = shape.bounds;
    const QPoint middle = box.topLeft() + QPoint(box.width() / 2, box.height() / 2);
    return QList<QPoint>{{box.left(), middle.y()},
                         {middle.x(), box.top()},
                         {box.left() + box.width(), middle.y()},
                         {middle.x(), box.top() + box.height()}};
}

QPolygon pointsOf(const ArrowShape &shape) { return shape.points; }

QPolygon pointsOf(const PolylineShape &shape) { return shape.points; }

QPolygon pointsOf(const TextShape &shape) { return QList<QPoint>{shape.position}; }

bool isDrawnIn(const QRect &part, const Geometry &geometry, int lineWidth)
{
    QImage image(part.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-part.topLeft());
    drawShape(painter, geometry, {.width = lineWidth, .color = Qt::black});
    painter.end();
    const uchar *bytes = image.constBits();
    return std::any_of(bytes, bytes + image.sizeInBytes(), [](uchar byte) { return byte != 0; });
}

}  // namespace

QRegion coverage(const Geometry &geometry, const EditMsg &style, QSize picture)
{
    Tiles tiles(picture);
    std::visit([&](const auto &shape) { add(tiles, shape, style); }, geometry);
    return tiles.region();
}

bool liesOutside(const Geometry &geometry, const EditMsg &style, QSize picture)
{
    const QPolygon points = std::visit([](const auto &shape) { return pointsOf(shape); }, geometry);
    const QRect all(QPoint(), picture);
    if (points.isEmpty() || std::any_of(points.begin(), points.end(),
                                        [&](QPoint point) { return all.contains(point); }))
        return false;
    // No point is in the picture, but lines may cross it or reach into it by their width. The tiles
    // cover slightly more than the shape, so each is tested by drawing.
    const QRegion tiles = coverage(geometry, style, picture);
    return std::none_of(tiles.begin(), tiles.end(),
                        [&](const QRect &tile) { return isDrawnIn(tile, geometry, style.width); });
}
