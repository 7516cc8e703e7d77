#include "helper/scrollingarea.h"

#include "helper/pixelrows.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace {

// Every so many pixels are enough to tell a ground.
constexpr int s_sampling = 4;
// Device pixels.
constexpr int s_gridLine = 2;    // the widest
constexpr int s_padding = 8;     // ground beside a grid line, where more of a table follows
constexpr int s_widestBar = 48;  // a scroll bar of a desktop scaled by 2 and more
constexpr int s_thinnestThumb = 2;
constexpr int s_buttonEdge = 2;  // between the track and the button at its end
constexpr int s_thumbRoom = 6;   // between a thumb and the end of its track

// The colour that most of an area has, looked at here and there.
QRgb commonColour(const QImage &image, const QRect &area)
{
    std::unordered_map<QRgb, int> counts;
    for (int y = area.top(); y <= area.bottom(); y += s_sampling) {
        for (int x = area.left(); x <= area.right(); x += s_sampling)
            ++counts[pixelRow(image, y)[x]];
    }
    const auto most = std::max_element(counts.begin(), counts.end(),
                                       [](auto &a, auto &b) { return a.second < b.second; });
    return most->first;
}

/// The lines of pixels around what moved.
class Surroundings
{
public:
    Surroundings(const QImage &before, const QImage &after, const Movement &movement)
        : m_before(withPixels(before)), m_after(withPixels(after)),
          m_mask(visibleBits(m_before) & visibleBits(m_after)), m_rows(movement.rows),
          m_moved(movement.moved), m_ground(commonColour(m_after, m_moved) & m_mask),
          m_isOdd(m_after.height())
    {
        // Rows that deny the movement where it is certain, as one that is hovered, tell nothing
        // elsewhere either.
        for (int y = m_moved.top(); y + m_rows <= m_moved.bottom(); ++y) {
            const QRgb *was = pixelRow(m_before, y + m_rows);
            const QRgb *is = pixelRow(m_after, y);
            for (int x = m_moved.left(); x <= m_moved.right() && !m_isOdd[y]; ++x)
                m_isOdd[y] = ((was[x] ^ is[x]) & m_mask) != 0;
        }
    }

    QRect widened() const
    {
        QRect area = m_moved;
        const auto column = [&](int x) { return kindOf(x, x, m_moved.top(), m_moved.bottom()); };
        area.setLeft(reach(m_moved.left(), -1, 0, column));
        area.setRight(reach(m_moved.right(), 1, m_after.width() - 1, column));
        const auto line = [&](int y) { return kindOf(area.left(), area.right(), y, y + m_rows); };
        area.setTop(reach(m_moved.top(), -1, 0, line));
        // The last rows of what moved are known in the earlier picture only.
        area.setBottom(reach(m_moved.bottom(), 1, m_after.height() - 1,
                             [&](int y) { return line(y - m_rows); }));
        return area;
    }

    QRect withoutBar(QRect area) const
    {
        const auto column = [&](int x) { return kindOf(x, x, m_moved.top(), m_moved.bottom()); };
        const auto isBar = [&](int from, int to) {
            return std::abs(to - from) < s_widestBar && from != to;
        };
        const auto trimmed = [&](int from, int step, int end) {
            const int reached = reach(from, step, end, column);
            // Blank room beside a bar is the track's.
            return isBar(reached, end) && endsInBar(reached + step, end) ? reached : end;
        };
        area.setRight(std::max(area.left(), trimmed(m_moved.right(), 1, area.right())));
        area.setLeft(std::min(area.right(), trimmed(m_moved.left(), -1, area.left())));
        return area;
    }

private:
    enum class Kind {
        Along,   ///< what is on it has moved with the rest, or comes again at that distance
        Ground,  ///< it is blank
        Plain,   ///< it has one other colour, as a grid line, a frame or the track of a scroll bar
        Other    ///< it has not gone along
    };

    // Of the pixels in columns [left, right] and rows [top, bottom - rows] of the later picture.
    Kind kindOf(int left, int right, int top, int bottom) const
    {
        const QRgb first = pixelRow(m_after, std::max(top, 0))[left] & m_mask;
        bool isPlain = true;
        for (int y = std::max(top, 0); y <= bottom - m_rows; ++y) {
            if (y + m_rows >= m_after.height() || m_isOdd[y])
                continue;
            const QRgb *was = pixelRow(m_before, y + m_rows);
            const QRgb *is = pixelRow(m_after, y);
            for (int x = left; x <= right; ++x) {
                if ((was[x] ^ is[x]) & m_mask)
                    return Kind::Other;
                isPlain = isPlain && (is[x] & m_mask) == first;
            }
        }
        if (!isPlain)
            return Kind::Along;
        return first == m_ground ? Kind::Ground : Kind::Plain;
    }

    // The last line from `from` towards `end` that belongs to what moved. Lines of one colour do if
    // more of it lies beyond them.
    template<typename KindOf> int reach(int from, int step, int end, const KindOf &kindAt) const
    {
        int reached = from;
        int plain = 0;
        int blank = 0;
        for (int at = from + step; (at - end) * step <= 0; at += step) {
            switch (kindAt(at)) {
            case Kind::Other:
                return reached;
            case Kind::Along:
                plain = blank = 0;
                reached = at;
                break;
            case Kind::Plain:
                plain += 1 + blank;
                blank = 0;
                break;
            case Kind::Ground:
                ++blank;
                if (plain == 0 || (plain <= s_gridLine && blank >= s_padding)) {
                    plain = blank = 0;
                    reached = at;
                }
                break;
            }
        }
        return reached;
    }

    // Whether a thumb has moved, or stands, in these columns.
    bool endsInBar(int from, int to) const
    {
        for (int x = std::min(from, to); x <= std::max(from, to); ++x) {
            if (kindOf(x, x, m_moved.top(), m_moved.bottom()) == Kind::Other)
                return true;
        }
        return false;
    }

    QImage m_before;
    QImage m_after;
    QRgb m_mask;
    int m_rows;
    QRect m_moved;
    QRgb m_ground;
    std::vector<quint8> m_isOdd;  // per row of the later picture
};

/// The columns in which a scroll bar may stand, with its thumb at the top and at the end.
class Bar
{
public:
    Bar(const QImage &first, const QImage &last, int left, int right)
        : m_first(withPixels(first)), m_last(withPixels(last)),
          m_mask(visibleBits(m_first) & visibleBits(m_last)), m_left(left), m_right(right)
    {
    }

    // Where the thumb has left and where it is now, and beyond that the track and its buttons. Only
    // a bar that lies beside the row `within` counts.
    std::optional<RowSpan> rows(int within) const
    {
        int bottom = m_first.height();
        int top = 0;
        while (top < bottom && thickness(top) < s_thinnestThumb)
            ++top;
        while (bottom > top && thickness(bottom - 1) < s_thinnestThumb)
            --bottom;
        if (top > within || bottom <= within)
            return {};
        int width = 0;
        for (int y = top; y < bottom; ++y)
            width = std::max(width, thickness(y));
        const int room = s_thumbRoom + width * 3 / 2;
        return RowSpan{top - trackBeyond(m_last, top, -1, std::min(room, top)),
                       bottom + trackBeyond(m_first, bottom - 1, 1,
                                            std::min(room, m_first.height() - bottom))};
    }

private:
    // Columns of a row in which the two looks differ.
    int thickness(int y) const
    {
        int result = 0;
        for (int x = m_left; x < m_right; ++x)
            result += changes(x, y);
        return result;
    }
    bool changes(int x, int y) const
    {
        return ((pixelRow(m_first, y)[x] ^ pixelRow(m_last, y)[x]) & m_mask) != 0;
    }
    // Rows beyond `y`, at most `most`, through which a column of the track goes on.
    int trackBeyond(const QImage &look, int y, int step, int most) const
    {
        // Up to the thumb's other side: what lies beyond the bar is no part of it.
        int right = m_right;
        while (right > m_left + 1 && !changes(right - 1, y))
            --right;
        int longest = 0;
        for (int x = m_left; x < right; ++x) {
            const QRgb track = pixelRow(look, y)[x] & m_mask;
            int length = 0;
            for (int i = 1; i <= most && i <= length + 1 + s_buttonEdge; ++i) {
                if ((pixelRow(look, y + i * step)[x] & m_mask) == track)
                    length = i;
            }
            longest = std::max(longest, length);
        }
        return longest;
    }

    QImage m_first;
    QImage m_last;
    QRgb m_mask;
    int m_left;
    int m_right;
};

bool canBeTold(const QImage &before, const QImage &after, const Movement &movement)
{
    return !before.isNull() && before.size() == after.size() && !movement.moved.isEmpty() &&
           movement.rows > 0 && after.rect().contains(movement.moved);
}

}  // namespace

QRect scrollingArea(const QImage &before, const QImage &after, const Movement &movement)
{
    if (!canBeTold(before, after, movement))
        return {};
    return Surroundings(before, after, movement).widened();
}

QRect withoutScrollBar(const QImage &before, const QImage &after, const Movement &movement,
                       const QRect &told)
{
    if (!canBeTold(before, after, movement) || !after.rect().contains(told))
        return told;
    return Surroundings(before, after, movement).withoutBar(told | movement.moved);
}

std::optional<RowSpan> scrollBarBeside(const QImage &first, const QImage &last, const QRect &area)
{
    if (first.isNull() || first.size() != last.size() || !first.rect().contains(area))
        return {};
    const int right = area.right() + 1;
    const Bar atRight(first, last, right, std::min(right + s_widestBar, first.width()));
    const Bar atLeft(first, last, std::max(area.left() - s_widestBar, 0), area.left());
    for (const Bar *bar : {&atRight, &atLeft}) {
        if (const auto rows = bar->rows(area.center().y()))
            return rows;
    }
    return {};
}
