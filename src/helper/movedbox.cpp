#include "helper/movedbox.h"

#include "helper/evidence.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <utility>
#include <vector>

namespace {

// The range with the largest sum, extended by adjacent zeros.
std::pair<int, int> bestStretch(const std::vector<int> &scores)
{
    qint64 best = 0;
    qint64 sum = 0;
    size_t first = 0;
    std::pair<size_t, size_t> found{0, 0};
    for (size_t i = 0; i < scores.size(); ++i) {
        if (sum <= 0) {
            sum = 0;
            first = i;
        }
        sum += scores[i];
        if (sum > best) {
            best = sum;
            found = {first, i + 1};
        }
    }
    if (best > 0) {
        while (found.first > 0 && scores[found.first - 1] == 0)
            --found.first;
        while (found.second < scores.size() && scores[found.second] == 0)
            ++found.second;
    }
    return {static_cast<int>(found.first), static_cast<int>(found.second)};
}

/// Compares two views cell by cell for a given movement, and decides which cells moved and which
/// stayed.
class MovedCells
{
public:
    MovedCells(const QImage &before, const QImage &after, QPoint movement)
        : m_before(before), m_after(after), m_beforePixels(pixelRow(before, 0)),
          m_afterPixels(pixelRow(after, 0)),
          m_beforeStride(before.bytesPerLine() / qsizetype{sizeof(QRgb)}),
          m_afterStride(after.bytesPerLine() / qsizetype{sizeof(QRgb)}), m_movement(movement),
          m_bands((after.width() + s_cell - 1) / s_cell), m_rows(after.height()),
          m_scores(static_cast<size_t>(m_bands) * m_rows), m_known(before.rect()),
          m_limits(after.rect())
    {
        score();
        m_limits = withoutBars();
        // Content that came out from under a scroll bar or a footer is as new as content that
        // scrolled in, so the scores are computed again.
        m_known = roughBox();
        score();
    }

    QRect box() const
    {
        const QRect rough = roughBox();
        if (rough.isEmpty())
            return {};
        const QRect found = withEdges(withoutPlainRows(rough)) & m_limits;
        // Cells that extend beyond the box include the beginning of parts that stayed, so only
        // whole cells count.
        const bool isToTheEnd = found.right() == m_after.width() - 1;
        const int first = (found.left() + s_cell - 1) / s_cell;
        const int last = isToTheEnd ? m_bands : (found.right() + 1) / s_cell;
        int explained = 0;
        int denied = 0;
        Rows told;
        for (int y = found.top(); y <= found.bottom(); ++y) {
            bool tells = false;
            bool denies = false;
            for (int band = first; band < last; ++band) {
                const qint8 score = m_scores[index(band, y)];
                explained += score > 0;
                // New content may by chance equal the old content, for example in tables, so only
                // known cells deny.
                const bool isDenied = score < 0 && isKnown(band, y);
                denied += isDenied;
                tells = tells || score > 0;
                denies = denies || isDenied;
            }
            told.add(tells, denies);
        }
        return denied > explained || !told.agree() ? QRect() : found;
    }

    // A part that lies over the content and stayed contradicts the movement twice: the expected
    // content did not arrive there, and the old content did not leave. Blank pieces show this only
    // at their edges, so their bounding rectangle is used.
    QRegion stayed(const QRect &box) const
    {
        constexpr int most = 8;  // a larger part is content that has not been drawn yet
        const int columns = m_bands;
        const int rows = (m_rows + s_cell - 1) / s_cell;
        std::vector<quint8> blocks(static_cast<size_t>(columns) * rows);
        const auto mark = [&](QPoint at) {
            const QRect cell(at, QSize(s_cell, 1));
            if (!box.contains(cell) ||
                !isSame(after(at.y()) + at.x(), before(at.y()) + at.x(), s_cell))
                return;
            const auto row = static_cast<size_t>(at.y() / s_cell) * columns;
            blocks[row + cell.left() / s_cell] = blocks[row + cell.right() / s_cell] = 1;
        };
        for (int y = box.top(); y <= box.bottom(); ++y) {
            for (int band = 0; band < m_bands; ++band) {
                if (m_scores[index(band, y)] < 0 && isKnown(band, y)) {
                    mark({band * s_cell, y});
                    mark(QPoint(band * s_cell, y) + m_movement);
                }
            }
        }
        QRegion result;
        for (int block = 0; block < columns * rows; ++block) {
            QRect found;
            std::vector<int> open{block};
            while (!open.empty()) {
                const int at = open.back();
                open.pop_back();
                if (!std::exchange(blocks[at], 0))
                    continue;
                const int x = at % columns;
                const int y = at / columns;
                found |= QRect(x * s_cell, y * s_cell, s_cell, s_cell);
                for (int beside = 0; beside < 9; ++beside) {
                    const int toX = x + beside % 3 - 1;
                    const int toY = y + beside / 3 - 1;
                    if (toX >= 0 && toX < columns && toY >= 0 && toY < rows)
                        open.push_back(toY * columns + toX);
                }
            }
            found &= box;
            if (qint64{found.width()} * found.height() * most <= qint64{box.width()} * box.height())
                result |= found;
        }
        return result;
    }

private:
    size_t index(int band, int y) const
    {
        return static_cast<size_t>(y) * m_bands + static_cast<size_t>(band);
    }

    void score()
    {
        for (int y = 0; y < m_rows; ++y) {
            for (int band = 0; band < m_bands; ++band) {
                if (m_known == m_before.rect() || !isKnown(band, y))
                    m_scores[index(band, y)] = scoreOf(band, y);
            }
        }
    }

    // Whether the content of a cell can have been in the earlier view.
    bool isKnown(int band, int y) const
    {
        const int left = band * s_cell;
        const int right = std::min(left + s_cell, m_after.width()) - 1;
        return y + m_movement.y() >= m_known.top() && y + m_movement.y() <= m_known.bottom() &&
               left + m_movement.x() >= m_known.left() && right + m_movement.x() <= m_known.right();
    }

    std::pair<std::pair<int, int>, std::pair<int, int>> stretches() const
    {
        const auto first = bestStretch(columnScores({0, m_rows}));
        const auto rows = bestStretch(rowScores(first));
        return {bestStretch(columnScores(rows)), rows};
    }

    QRect roughBox() const
    {
        const auto [bands, rows] = stretches();
        return QRect(
                   QPoint(bands.first * s_cell, rows.first),
                   QPoint(std::min(bands.second * s_cell, m_after.width()) - 1, rows.second - 1)) &
               m_limits;
    }

    // Beside new content nothing is known that a plain bar could contradict. But what was there
    // before has moved inward, unless it is a bar.
    QRect withoutBars() const
    {
        const QRect rough = roughBox();
        QRect result = m_after.rect();
        if (m_movement.x() > 0)
            result.setRight(result.right() - barAt(result.topRight(), {-1, 0}, rough));
        else if (m_movement.x() < 0)
            result.setLeft(barAt(result.topLeft(), {1, 0}, rough));
        if (m_movement.y() > 0)
            result.setBottom(result.bottom() - barAt(result.bottomLeft(), {0, -1}, rough));
        else if (m_movement.y() < 0)
            result.setTop(barAt(result.topLeft(), {0, 1}, rough));
        return result;
    }

    // The number of lines from a side inward that did not move; `corner` is the beginning of the
    // outermost line.
    int barAt(QPoint corner, QPoint inwards, const QRect &rough) const
    {
        constexpr int mostPlain = 32;  // a plain margin is wider than that of a bar
        constexpr int samples = 512;
        const bool isColumn = inwards.x() != 0;
        // Compares each line only where nothing else stays beside it.
        const QRect inside = rough & rough.translated(m_movement);
        const int length = isColumn ? inside.height() : inside.width();
        const QPoint along = QPoint(isColumn ? 0 : 1, isColumn ? 1 : 0);
        const int step = length / samples + 1;
        const int size = isColumn ? m_after.width() : m_rows;
        const int shared = size - std::abs(isColumn ? m_movement.x() : m_movement.y());
        const int most = std::min(size / 4, shared);
        QPoint line = isColumn ? QPoint(corner.x(), inside.y()) : QPoint(inside.x(), corner.y());
        int result = 0;
        for (int depth = 0; depth < most && depth - result < mostPlain; ++depth, line += inwards) {
            int denied = 0;
            int told = 0;
            for (int i = 0; i < length; i += step) {
                const QPoint from = line + along * i;
                const QPoint to = from - m_movement;
                const QRgb is = after(to.y())[to.x()];
                const bool follows = is == before(from.y())[from.x()];
                denied += !follows;
                told += follows && is != before(to.y())[to.x()];
            }
            if (told > denied)
                break;
            if (denied > 1)
                result = depth + 1;
        }
        return result;
    }

    // 1 if the cell supports the movement, -1 if it contradicts it, else 0.
    qint8 scoreOf(int band, int y) const
    {
        const int x = band * s_cell;
        const int count = std::min(s_cell, m_after.width() - x);
        const QRgb *is = after(y) + x;
        const bool stays = isSame(is, before(y) + x, count);
        if (isKnown(band, y)) {
            const QPoint from = QPoint(x, y) + m_movement;
            const bool follows = isSame(is, before(from.y()) + from.x(), count);
            return qint8(follows ? (stays ? 0 : 1) : -1);
        }
        // New content differs from the old content, except for blank background.
        if (!stays)
            return 1;
        // A part that stayed ends where it borders on new content.
        const int beside = m_movement.y() < 0 ? y + 1 : y - 1;
        const bool turns = m_movement.x() == 0 ? beside >= 0 && beside < m_rows &&
                                                     !isSame(is, after(beside) + x, count)
                                               : count > 1 && !isSame(is, is + 1, count - 1);
        return turns && !hasGone(x, y, count) ? -1 : 0;
    }

    // Whether the old content of a cell has moved on: in a table the next row may look as if the
    // cell had stayed.
    bool hasGone(int x, int y, int count) const
    {
        const QPoint to = QPoint(x, y) - m_movement;
        return m_after.rect().contains(QRect(to, QSize(count, 1))) &&
               isSame(before(y) + x, after(to.y()) + to.x(), count);
    }

    std::vector<int> columnScores(std::pair<int, int> rows) const
    {
        std::vector<int> result(m_bands);
        for (int y = rows.first; y < rows.second; ++y) {
            for (int band = 0; band < m_bands; ++band)
                result[band] += m_scores[index(band, y)];
        }
        return result;
    }
    std::vector<int> rowScores(std::pair<int, int> bands) const
    {
        std::vector<int> result(m_rows);
        for (int y = 0; y < m_rows; ++y) {
            const auto from = m_scores.begin() + static_cast<ptrdiff_t>(index(0, y));
            result[y] = std::accumulate(from + bands.first, from + bands.second, 0);
        }
        return result;
    }

    // A row of one colour, such as a header's edge, looks the same whether it stayed or moved. If
    // it does not have the content's background colour, it belongs to the part that stayed beside
    // it.
    QRect withoutPlainRows(QRect rough) const
    {
        const QRgb ground = commonColour(m_after, rough);
        const auto isFrame = [&](int y) {
            const QRgb *is = pixelRow(m_after, y);
            return is[rough.left()] != ground &&
                   std::all_of(is + rough.left(), is + rough.right() + 1,
                               [is, &rough](QRgb pixel) { return pixel == is[rough.left()]; });
        };
        while (rough.top() > 0 && rough.height() > 1 && isFrame(rough.top()))
            rough.setTop(rough.top() + 1);
        while (rough.bottom() < m_rows - 1 && rough.height() > 1 && isFrame(rough.bottom()))
            rough.setBottom(rough.bottom() - 1);
        return rough;
    }

    // How many rows of each column say that it has moved along, and how many that it has not, at
    // the two ends of what moves.
    struct Columns {
        int first;  // those that tell anything
        int last;
        std::vector<int> denied;
        std::vector<int> told;
    };
    Columns columnsAt(const QRect &rough, int reach) const
    {
        const int width = m_after.width();
        const int top = std::max(rough.top(), rough.top() - m_movement.y());
        const int bottom = std::min(rough.bottom(), rough.bottom() - m_movement.y());
        // New content tells nothing about the sides of the moved part.
        const int first = m_movement.x() < 0 ? rough.left() - m_movement.x() : 0;
        const int last = m_movement.x() > 0 ? rough.right() - m_movement.x() : width - 1;
        std::vector<int> denied(width);
        std::vector<int> told(width);
        for (int y = top; y <= bottom; ++y) {
            const QRgb *is = pixelRow(m_after, y);
            const QRgb *was = pixelRow(m_before, y);
            const QRgb *from = pixelRow(m_before, y + m_movement.y()) + m_movement.x();
            for (int x = first; x <= last; ++x) {
                if (x == rough.left() + reach)
                    x = std::max(x, rough.right() + 1 - reach);
                if (x > last)
                    break;
                denied[x] += is[x] != from[x];
                told[x] += is[x] == from[x] && is[x] != was[x];
            }
        }
        return {first, last, std::move(denied), std::move(told)};
    }

    // A cell holds both the end of what moves and the beginning of a scroll bar: the sides are told
    // by single columns.
    QRect withEdges(const QRect &rough) const
    {
        constexpr int inside = 3 * s_cell;
        const int width = m_after.width();
        const int reach = std::min(inside, rough.width() / 2);
        const auto [first, last, denied, told] = columnsAt(rough, reach);
        const auto denies = [&, first = first, last = last, &denied = denied, &told = told](int x) {
            const bool isKnown = x >= first && x <= last;
            return isKnown ? denied[x] > 1 && denied[x] > told[x]
                           : x < rough.left() || x > rough.right();
        };
        int left = rough.left() + reach;
        while (left > 0 && !denies(left - 1))
            --left;
        int right = rough.right() - reach;
        while (right < width - 1 && !denies(right + 1))
            ++right;
        // There only columns that have changed contain new content.
        const auto changes = [&](int x) {
            int rows = 0;
            for (int y = rough.top(); y <= rough.bottom(); ++y)
                rows += pixelRow(m_after, y)[x] != pixelRow(m_before, y)[x];
            return rows > 1;
        };
        const auto lastChange = [&](int from, int way) {
            int result = from;
            for (int x = from - way * s_cell; x != from + way * s_cell; x += way)
                result = x >= 0 && x < width && changes(x) ? x : result;
            return result;
        };
        if (first > rough.left() && rough.left() > 0)
            left = lastChange(rough.left(), -1);
        if (last < rough.right() && rough.right() < width - 1)
            right = lastChange(rough.right(), 1);
        return withoutSideFrame(rough, left, right);
    }

    QRect withoutSideFrame(const QRect &rough, int left, int right) const
    {
        const int width = m_after.width();
        // Excludes the frame, which is between the moved part and the parts that stay.
        const QRgb ground = commonColour(m_after, rough);
        const auto isFrame = [&](int x) {
            const QRgb colour = pixelRow(m_after, rough.top())[x];
            for (int y = rough.top(); y <= rough.bottom(); ++y) {
                if (pixelRow(m_after, y)[x] != colour)
                    return false;
            }
            return colour != ground;
        };
        while (right < width - 1 && right > left && isFrame(right))
            --right;
        while (left > 0 && left < right && isFrame(left))
            ++left;
        return {QPoint(left, rough.top()), QPoint(right, rough.bottom())};
    }

    // Computed directly, because a call into the toolkit for each cell would take longer than the
    // comparison.
    const QRgb *before(int y) const { return m_beforePixels + y * m_beforeStride; }
    const QRgb *after(int y) const { return m_afterPixels + y * m_afterStride; }

    const QImage &m_before;
    const QImage &m_after;
    const QRgb *m_beforePixels;
    const QRgb *m_afterPixels;
    qsizetype m_beforeStride;  // in pixels
    qsizetype m_afterStride;
    QPoint m_movement;
    int m_bands;
    int m_rows;
    std::vector<qint8> m_scores;
    QRect m_known;   // the part of the earlier view that may have moved
    QRect m_limits;  // without bars at the sides where new content comes in
};

}  // namespace

Moved movedBox(const QImage &before, const QImage &after, QPoint movement)
{
    const MovedCells cells(before, after, movement);
    const QRect box = cells.box();
    return {.box = box, .stayed = cells.stayed(box)};
}
