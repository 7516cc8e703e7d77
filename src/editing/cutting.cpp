#include "editing/cutting.h"

#include <QImage>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

// A point is inside a shape depending on the outlines that cross its row at or before it. These
// crossings are computed once for each row. To get exactly the toolkit's result, all computations
// use the same operations in the same order, because another order would round differently.

namespace {

// A crossing of the outline with a row; it applies to this column and all columns after it.
struct Crossing {
    int column = 0;
    int winding = 0;  // 1 downward, -1 upward
};

// A straight part of the outline. It crosses the rows from `top` up to but not including `bottom`.
struct Edge {
    QPointF top{};
    QPointF bottom{};
    int winding = 0;

    double at(double y) const
    {
        return top.x() + ((bottom.x() - top.x()) / (bottom.y() - top.y())) * (y - top.y());
    }
};

using Curve = std::array<QPointF, 4>;

QPointF middle(QPointF a, QPointF b) { return (a + b) * .5; }

std::pair<Curve, Curve> halves(const Curve &curve)
{
    const QPointF first = middle(curve[0], curve[1]);
    const QPointF second = middle(curve[1], curve[2]);
    const QPointF third = middle(curve[2], curve[3]);
    const QPointF left = middle(first, second);
    const QPointF right = middle(second, third);
    const QPointF centre = middle(left, right);
    return {{curve[0], first, left, centre}, {centre, right, third, curve[3]}};
}

// A row of the picture, and its crossings.
class Row
{
public:
    explicit Row(int width) : m_width(width) {}

    void begin(int y)
    {
        m_y = y;
        m_crossings.clear();
    }
    void cross(const Edge &edge) { add(edge.at(m_y), edge.winding); }
    void cross(const Curve &curve, int depth = 0);

    /// Clears the pixels outside of the shape. Columns before `from` and from `to` on are always
    /// outside.
    void cut(QRgb *line, int from, int to, Qt::FillRule rule);

private:
    void add(double x, int winding)
    {
        const double column = std::clamp<double>(std::ceil(x), 0, m_width);
        m_crossings.push_back({static_cast<int>(column), winding});
    }

    int m_width = 0;
    double m_y = 0;
    std::vector<Crossing> m_crossings;
};

// Halves the curve until it is a point or does not touch the row. A horizontal curve never touches
// it.
void Row::cross(const Curve &curve, int depth)
{
    constexpr double s_point = .001;
    constexpr int s_deepest = 32;
    const auto [left, right] =
        std::minmax({curve[0].x(), curve[1].x(), curve[2].x(), curve[3].x()});
    const auto [top, bottom] =
        std::minmax({curve[0].y(), curve[1].y(), curve[2].y(), curve[3].y()});
    const double height = bottom - top;
    if (!(m_y >= top && m_y < top + height))
        return;
    if (depth == s_deepest || (right - left < s_point && height < s_point)) {
        add(curve[0].x(), curve[3].y() > curve[0].y() ? 1 : -1);
        return;
    }
    const auto [first, second] = halves(curve);
    cross(first, depth + 1);
    cross(second, depth + 1);
}

void Row::cut(QRgb *line, int from, int to, Qt::FillRule rule)
{
    std::sort(m_crossings.begin(), m_crossings.end(),
              [](const Crossing &a, const Crossing &b) { return a.column < b.column; });
    const auto clear = [line](int begin, int end) {
        if (begin < end)
            std::memset(line + begin, 0, sizeof(QRgb) * static_cast<size_t>(end - begin));
    };
    const auto isInside = [rule](int winding) {
        return rule == Qt::WindingFill ? winding != 0 : winding % 2 != 0;
    };
    int winding = 0;
    int outside = 0;  // first column of the pixels to clear
    for (const Crossing &crossing : m_crossings) {
        const bool wasInside = isInside(winding);
        winding += crossing.winding;
        if (isInside(winding) == wasInside)
            continue;
        const int column = std::clamp(crossing.column, from, to);
        if (wasInside)
            outside = column;
        else
            clear(outside, column);
    }
    // The outline is closed, but a nearly horizontal part is left out, so the row may end inside.
    clear(isInside(winding) ? to : outside, m_width);
}

// The parts of the outline that can touch a picture of this height.
struct Outline {
    Outline(const QPainterPath &shape, int height);

    std::vector<Edge> edges;  // sorted by their first row
    std::vector<Curve> curves;

private:
    void addLine(QPointF from, QPointF to, int height);
};

Outline::Outline(const QPainterPath &shape, int height)
{
    QPointF start;
    QPointF last;
    for (int i = 0; i < shape.elementCount(); ++i) {
        const QPainterPath::Element &element = shape.elementAt(i);
        switch (element.type) {
        case QPainterPath::MoveToElement:
            addLine(last, start, height);
            start = element;
            last = element;
            break;
        case QPainterPath::LineToElement:
            addLine(last, element, height);
            last = element;
            break;
        default:
            curves.push_back({last, element, shape.elementAt(i + 1), shape.elementAt(i + 2)});
            last = shape.elementAt(i + 2);
            i += 2;
        }
    }
    if (last != start)
        addLine(last, start, height);
    std::sort(edges.begin(), edges.end(),
              [](const Edge &a, const Edge &b) { return a.top.y() < b.top.y(); });
}

void Outline::addLine(QPointF from, QPointF to, int height)
{
    if (qFuzzyCompare(from.y(), to.y()))
        return;
    int winding = 1;
    if (to.y() < from.y()) {
        std::swap(from, to);
        winding = -1;
    }
    if (to.y() > 0 && from.y() < height)
        edges.push_back({from, to, winding});
}

}  // namespace

void cutToShape(QImage &picture, const QPainterPath &shape)
{
    if (!picture.hasAlphaChannel() || picture.depth() != 32)
        picture.convertTo(QImage::Format_ARGB32_Premultiplied);
    const int width = picture.width();
    // Only pixels in the bounding box can be inside, including its far edges; none if the box has
    // no area.
    const QRectF box = shape.controlPointRect();
    const double far = box.width() > 0 ? std::floor(box.right()) + 1 : 0;
    const int to = static_cast<int>(std::clamp<double>(far, 0, width));
    const int from = static_cast<int>(std::clamp<double>(std::ceil(box.left()), 0, to));
    const Outline outline(shape, picture.height());
    std::vector<Edge> touched;
    auto next = outline.edges.begin();
    Row row(width);
    for (int y = 0; y < picture.height(); ++y) {
        row.begin(y);
        const auto isPast = [y](const Edge &edge) { return edge.bottom.y() <= y; };
        touched.erase(std::remove_if(touched.begin(), touched.end(), isPast), touched.end());
        for (; next != outline.edges.end() && next->top.y() <= y; ++next) {
            if (!isPast(*next))
                touched.push_back(*next);
        }
        for (const Edge &edge : touched)
            row.cross(edge);
        for (const Curve &curve : outline.curves)
            row.cross(curve);
        row.cut(reinterpret_cast<QRgb *>(picture.scanLine(y)), from, to, shape.fillRule());
    }
}
