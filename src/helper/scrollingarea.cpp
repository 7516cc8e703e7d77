#include "helper/scrollingarea.h"

#include "helper/evidence.h"
#include "helper/pixelrows.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

// The difference of a colour component between neighbouring rows of one background.
constexpr int s_shade = 6;
// Device pixels.
constexpr int s_edge = 24;         // edge of the moved part, whose background continues beside it
constexpr int s_gridLine = 2;      // maximum width
constexpr int s_header = 64;       // maximum height if something else is beside it
constexpr int s_highHeader = 160;  // maximum height if it is as wide as the window
constexpr int s_sidePane = 60;     // minimum width
constexpr int s_shadow = 32;       // maximum length
constexpr int s_leastShadow = 3;
constexpr int s_shadowStep = 16;  // difference of grey between rows
constexpr int s_acrossEdge = 16;  // background on both sides of an area's edge
// Background beside a grid line; more of it means that the table continues.
constexpr int s_padding = 8;
constexpr int s_widestBar = 48;  // scroll bar of a desktop scaled by 2 or more
constexpr int s_overlay = 24;    // scroll bar over the content
constexpr int s_thumbRows = 12;  // a moved thumb is at least this high
constexpr int s_thinnestThumb = 2;
constexpr int s_buttonEdge = 2;  // between the track and the button at its end
constexpr int s_thumbRoom = 6;   // between a thumb and the end of its track

/// The lines of pixels around the moved part.
class Surroundings
{
public:
    Surroundings(const QImage &before, const QImage &after, const Movement &movement)
        : m_before(withPixels(before)), m_after(withPixels(after)),
          m_mask(visibleBits(m_before) & visibleBits(m_after)), m_rows(movement.rows),
          m_moved(movement.moved), m_ground(commonColour(m_after, m_moved) & m_mask),
          m_isOdd(m_after.height())
    {
        // Rows that contradict the movement where it is certain, such as highlighted ones, are not
        // used elsewhere either.
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
        area.setLeft(leftEnd(0));
        area.setRight(withoutOverlay(rightEnd(m_after.width() - 1)));
        const auto line = [&](int y) { return kindOf(area.left(), area.right(), y, y + m_rows); };
        area.setTop(reach(m_moved.top(), -1, 0, line));
        // The last rows of the moved part are known from the earlier picture only.
        area.setBottom(reach(m_moved.bottom(), 1, m_after.height() - 1,
                             [&](int y) { return line(y - m_rows); }));
        return area;
    }

    QRect withoutBar(QRect area) const
    {
        const auto isBar = [&](int reached, int step, int end) {
            return reached != end && std::abs(end - reached) < s_widestBar &&
                   endsInBar(reached + step, end);
        };
        // A blank part beside a scroll bar belongs to its track.
        if (const int right = rightEnd(area.right()); isBar(right, 1, area.right()))
            area.setRight(std::max(area.left(), right));
        if (const int left = leftEnd(area.left()); isBar(left, -1, area.left()))
            area.setLeft(std::min(area.right(), left));
        area.setRight(withoutOverlay(area.right()));
        return area;
    }

private:
    enum class Kind {
        Along,   ///< its pixels moved with the rest, or repeat at that distance
        Ground,  ///< blank
        Plain,   ///< of one other colour: a grid line, a frame or the track of a scroll bar
        Other    ///< it did not move with the rest
    };

    // The number of rows of a column that contradict the movement.
    int deniedIn(int x) const
    {
        int result = 0;
        for (int y = m_moved.top(); y + m_rows <= m_moved.bottom(); ++y)
            result += ((pixelRow(m_before, y + m_rows)[x] ^ pixelRow(m_after, y)[x]) & m_mask) != 0;
        return result;
    }

    // A thumb over the content would appear in the picture in pieces, so its columns are cut off.
    // The columns beside it show how many contradictions are normal.
    int withoutOverlay(int right) const
    {
        const int first = right - s_overlay;
        const int usual = first - s_overlay < m_moved.left()
                              ? 0
                              : std::max(deniedIn(first), deniedIn(first - s_overlay / 2));
        for (int x = first; x <= right && first > m_moved.left(); ++x) {
            if (deniedIn(x) > usual + s_thumbRows)
                return x - 1;
        }
        return right;
    }

    // The kind of the pixels in columns [left, right] and rows [top, bottom - rows] of the later
    // picture.
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

    // The last column to the left (right) that belongs to the moved part, at most `end`. The
    // background may have another colour there, for example behind line numbers.
    int leftEnd(int end) const
    {
        const QRect edge(m_moved.left(), m_moved.top(), std::min(m_moved.width(), s_edge),
                         m_moved.height());
        return sideEnd(m_moved.left(), -1, end, edge);
    }
    int rightEnd(int end) const
    {
        const int width = std::min(m_moved.width(), s_edge);
        const QRect edge(m_moved.right() + 1 - width, m_moved.top(), width, m_moved.height());
        return sideEnd(m_moved.right(), 1, end, edge);
    }
    int sideEnd(int from, int step, int end, const QRect &edge) const
    {
        const QRgb ground = commonColour(m_after, edge) & m_mask;
        return reach(from, step, end, [&](int x) {
            const Kind kind = kindOf(x, x, m_moved.top(), m_moved.bottom());
            const bool isGround =
                kind == Kind::Plain && (pixelRow(m_after, m_moved.top())[x] & m_mask) == ground;
            return isGround ? Kind::Ground : kind;
        });
    }

    // The last line from `from` towards `end` that belongs to the moved part. Lines of one colour
    // are included only if more of the moved part follows.
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

    // Whether these columns contain a thumb that has moved or stayed.
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
    std::vector<quint8> m_isOdd;  // for each row of the later picture
};

/// The columns that may contain a scroll bar, in pictures with its thumb at the top and at the end.
class Bar
{
public:
    Bar(const QImage &first, const QImage &last, int left, int right)
        : m_first(withPixels(first)), m_last(withPixels(last)),
          m_mask(visibleBits(m_first) & visibleBits(m_last)), m_left(left), m_right(right)
    {
    }

    // The rows between the thumb's old and new position, extended by the track and its buttons.
    // Counts only a scroll bar that is beside the row `within` and does not lie over the content,
    // whose edge is the column `beside`.
    std::optional<RowSpan> rows(int within, int beside) const
    {
        int bottom = m_first.height();
        int top = 0;
        while (top < bottom && thickness(top) < s_thinnestThumb)
            ++top;
        while (bottom > top && thickness(bottom - 1) < s_thinnestThumb)
            --bottom;
        if (top > within || bottom <= within || liesOver(beside, top, bottom))
            return {};
        int width = 0;
        for (int y = top; y < bottom; ++y)
            width = std::max(width, thickness(y));
        const int room = s_thumbRoom + width * 3 / 2;
        const int start = top - trackBeyond(m_last, top, -1, std::min(room, top), beside);
        return RowSpan{start - shadowAbove(start, end(top)),
                       bottom + trackBeyond(m_first, bottom - 1, 1,
                                            std::min(room, m_first.height() - bottom), beside)};
    }

private:
    // Whether the pixels that the thumb has left equal the content beside them in most rows.
    bool liesOver(int beside, int top, int bottom) const
    {
        int same = 0;
        int all = 0;
        for (int y = top; y < top + (bottom - top) / 2; ++y) {
            const QRgb *line = pixelRow(m_last, y);
            for (int x = m_left; x < m_right; ++x) {
                if (!changes(x, y))
                    continue;
                ++all;
                same += ((line[x] ^ line[beside]) & m_mask) == 0;
            }
        }
        return same * 2 > all || all == 0;
    }

    // The number of columns of a row in which the pictures differ.
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
    // The number of rows beyond `y`, at most `most`, in which a column of the track continues. A
    // line that crosses both the content and the scroll bar is the frame around them.
    int trackBeyond(const QImage &look, int y, int step, int most, int beside) const
    {
        const int right = end(y);
        const int from = beside < m_left ? std::max(beside - s_edge, 0) : m_left;
        const int to = beside < m_left ? right : std::min(beside + s_edge, look.width());
        int longest = 0;
        for (int x = m_left; x < right; ++x) {
            const QRgb track = pixelRow(look, y)[x] & m_mask;
            int length = 0;
            for (int i = 1; i <= most && i <= length + 1 + s_buttonEdge; ++i) {
                const QRgb *line = pixelRow(look, y + i * step);
                const QRgb pixel = line[x] & m_mask;
                if (pixel == track)
                    length = i;
                else if (std::all_of(line + from, line + to,
                                     [&](QRgb other) { return (other & m_mask) == pixel; }))
                    break;
            }
            longest = std::max(longest, length);
        }
        return longest;
    }

    // The end of the scroll bar: the thumb's far edge in a row in which it moved.
    int end(int y) const
    {
        int right = m_right;
        while (right > m_left + 1 && !changes(right - 1, y))
            --right;
        return right;
    }
    // The number of rows above `y` that become darker upward beside a button's arrow: a shadow cast
    // by something above the scroll bar.
    int shadowAbove(int y, int right) const
    {
        int rows = 0;
        const auto goesOn = [&] {
            int darker = 0;
            for (int x = m_left; x < right; ++x) {
                const int here = qGray(pixelRow(m_last, y - rows)[x]);
                const int above = qGray(pixelRow(m_last, y - rows - 1)[x]);
                darker += above < here && here - above <= s_shadowStep;
            }
            return darker * 3 >= (right - m_left) * 2;
        };
        while (rows < y && goesOn())
            ++rows;
        return rows < s_leastShadow ? 0 : rows;
    }

    QImage m_first;
    QImage m_last;
    QRgb m_mask;
    int m_left;
    int m_right;
};

// What stays above and below an area that scrolls: a header, a footer, and the shadows of both.
class Neighbours
{
public:
    Neighbours(const QImage &first, const QImage &last, const QRect &area, const QRect &inside)
        : m_earlier(withPixels(first)), m_later(withPixels(last)),
          m_mask(visibleBits(m_earlier) & visibleBits(m_later)), m_area(area), m_inside(inside)
    {
    }

    int rowsAbove() const { return rowsBeyond(m_area.top(), -1, m_inside.top(), m_earlier); }
    int rowsBelow() const { return rowsBeyond(m_area.bottom(), 1, m_inside.bottom(), m_later); }

private:
    int rowsBeyond(int edge, int step, int end, const QImage &look) const
    {
        const auto isLeft = [&](int rows) {
            return (end - (edge + (rows + 1) * step)) * step >= 0;
        };
        const auto turnsAt = [&](int rows) {
            return !isAlike(look, edge + (rows + 1) * step, edge + (rows + 2) * step);
        };
        int rows = 0;
        while (rows < s_shadow && isLeft(rows) && !stays(edge + (rows + 1) * step))
            ++rows;
        const int shadow = rows;
        // Its border, its ground, its border.
        for (int i = 0; i < s_gridLine && isLeft(rows + 1); ++i) {
            if (turnsAt(rows))
                ++rows;
        }
        const int border = rows;
        while (isLeft(rows + 1) && !turnsAt(rows))
            ++rows;
        if (rows > border && isLeft(rows))
            ++rows;
        const bool isWide = m_inside.width() - m_area.width() < s_sidePane;
        return rows > (isWide ? s_highHeader : s_header) || goesBeyond(edge, step, rows) ? shadow
                                                                                         : rows;
    }

    // Whether a bar above or below goes on to the side without a border, over a pane that lies
    // there.
    bool goesBeyond(int edge, int step, int rows) const
    {
        int left = 0;
        int right = 0;
        for (int i = 1; i <= rows; ++i) {
            const QRgb *line = pixelRow(m_earlier, edge + i * step);
            const auto isPlain = [&](int from) {
                return std::all_of(line + from, line + from + s_acrossEdge, [&](QRgb pixel) {
                    return ((pixel ^ line[from]) & m_mask) == 0;
                });
            };
            left += m_area.left() - s_acrossEdge / 2 >= m_inside.left() &&
                    isPlain(m_area.left() - s_acrossEdge / 2);
            right += m_area.right() + s_acrossEdge / 2 < m_inside.right() &&
                     isPlain(m_area.right() - s_acrossEdge / 2);
        }
        return std::max(left, right) * 2 > rows;
    }

    // A shadow that lies on the content changes with it.
    bool stays(int y) const
    {
        const QRgb *was = pixelRow(m_earlier, y) + m_area.left();
        const QRgb *is = pixelRow(m_later, y) + m_area.left();
        const size_t bytes = sizeof(QRgb) * static_cast<size_t>(m_area.width());
        return m_mask == RGB_MASK
                   ? std::equal(was, was + m_area.width(), is,
                                [](QRgb a, QRgb b) { return ((a ^ b) & RGB_MASK) == 0; })
                   : std::memcmp(was, is, bytes) == 0;
    }

    bool isAlike(const QImage &look, int a, int b) const
    {
        const QRgb one = ground(look, a);
        const QRgb other = ground(look, b);
        return std::abs(qRed(one) - qRed(other)) <= s_shade &&
               std::abs(qGreen(one) - qGreen(other)) <= s_shade &&
               std::abs(qBlue(one) - qBlue(other)) <= s_shade;
    }

    QRgb ground(const QImage &look, int y) const
    {
        return commonColour(look, QRect(m_area.left(), y, m_area.width(), 1));
    }

    QImage m_earlier;
    QImage m_later;
    QRgb m_mask;
    QRect m_area;
    QRect m_inside;
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
    if (const auto rows = atRight.rows(area.center().y(), area.right()))
        return rows;
    return atLeft.rows(area.center().y(), area.left());
}

RowSpan withNeighbours(const QImage &first, const QImage &last, const QRect &area,
                       const QRect &inside)
{
    const RowSpan own{area.top(), area.bottom() + 1};
    if (first.isNull() || first.size() != last.size() || !inside.contains(area))
        return own;
    const Neighbours neighbours(first, last, area, inside);
    return {own.top - neighbours.rowsAbove(), own.bottom + neighbours.rowsBelow()};
}
