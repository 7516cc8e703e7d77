#include "helper/stitcher.h"

#include "helper/overview.h"
#include "helper/pixelrows.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>
#include <vector>

namespace {

constexpr quint64 s_factor = 0x9e3779b97f4a7c15;
// A place of a view is accepted if at most this many rows contradict it, and any other place is
// contradicted by this many times as many.
constexpr int s_hardly = 2;
constexpr int s_clearly = 4;

quint64 hashOf(const QRgb *pixels, int count, QRgb mask)
{
    quint64 hash = s_factor;
    for (int x = 0; x < count; ++x) {
        hash = (hash ^ (pixels[x] & mask)) * s_factor;
        hash ^= hash >> 32;
    }
    return hash;
}

bool differ(const QRgb *a, const QRgb *b, int count, QRgb mask)
{
    QRgb difference = 0;
    for (int x = 0; x < count; ++x)
        difference |= a[x] ^ b[x];
    return difference & mask;
}

// The offset that most of `all` rows vote for; none where another could be meant as well.
std::optional<int> clearOffset(const std::unordered_map<int, int> &votes, int all)
{
    int best = 0;
    int second = 0;
    int offset = 0;
    for (const auto &[at, count] : votes) {
        if (count > best) {
            second = std::exchange(best, count);
            offset = at;
        } else {
            second = std::max(second, count);
        }
    }
    // Among rows of icons whose names differ by a digit most rows look alike in many places, but
    // all of them in one only.
    const bool isClear =
        second * 4 <= best * 3 || all - second >= s_clearly * std::max(all - best, s_hardly);
    if (best == 0 || best * 4 < all * 3 || !isClear)
        return {};
    return offset;
}

}  // namespace

ScrollStitcher::ScrollStitcher(int heightLimit) : m_heightLimit(std::max(heightLimit, 1)) {}

QRgb *ScrollStitcher::row(int y) const
{
    return reinterpret_cast<QRgb *>(m_pixels.get()) + qsizetype{y} * m_last.width();
}

int ScrollStitcher::rows() const { return std::min(m_heightLimit, m_offset + m_last.height()); }

QImage ScrollStitcher::converted(const QImage &view) const
{
    const QImage::Format format = m_last.isNull() ? view.format() : m_last.format();
    const bool kept =
        format == QImage::Format_RGB32 || format == QImage::Format_ARGB32_Premultiplied;
    return view.convertToFormat(kept ? format : QImage::Format_ARGB32_Premultiplied);
}

void ScrollStitcher::takeOver(const QImage &view)
{
    if (view.isNull() || view.size() != m_last.size() || isFull())
        return;
    const QImage next = converted(view);
    takeSpots(next);
    m_last = next;
}

void ScrollStitcher::goBack(const QImage &view, int rows)
{
    if (view.isNull() || view.size() != m_last.size())
        return;
    m_last = converted(view);
    m_offset = std::max(0, m_offset - rows);
}

// The row after the last row of a view that can be compared with the content; a footer can't.
int ScrollStitcher::comparableEnd(const QImage &view, int offset) const
{
    const bool isKnown = !m_last.isNull() && view.size() == m_last.size() && offset >= 0;
    return isKnown ? std::min(m_moved.bottom() + 1, m_end - offset) : 0;
}

int ScrollStitcher::rowsThatDiffer(const QImage &view, int offset) const
{
    const int end = comparableEnd(view, offset);
    const QImage seen = converted(view);
    const int left = m_moved.left();
    int result = 0;
    for (int y = m_moved.top(); y < end; ++y)
        result += differ(pixelRow(seen, y) + left, row(offset + y) + left, m_moved.width(),
                         visibleBits(seen));
    return result;
}

void ScrollStitcher::patch(const QImage &view, int offset, int end)
{
    const QImage seen = converted(view);
    const size_t bytes = sizeof(QRgb) * static_cast<size_t>(view.width());
    for (int y = m_moved.top(); y < std::min(end, comparableEnd(view, offset)); ++y)
        std::memcpy(row(offset + y), seen.constScanLine(y), bytes);
}

Movement ScrollStitcher::add(const QImage &view, int expected)
{
    if (view.isNull())
        return {};
    const QImage next = converted(view);
    if (m_last.isNull()) {
        m_last = next;
        return {.kind = Movement::Kind::Still};
    }
    const Movement movement = findMovement(m_last, next, expected);
    if (isFull())
        return movement;
    if (movement.kind == Movement::Kind::Still) {
        takeSpots(next);
        m_last = next;
    } else if (movement.kind == Movement::Kind::Moved) {
        if (!appendMoved(next, movement))
            return {};
        m_last = next;
    }
    return movement;
}

void ScrollStitcher::addKnown(const QImage &view, int rows, const QRect &moved)
{
    if (isFull() || view.size() != m_last.size())
        return;
    const QImage next = converted(view);
    const Movement movement{
        .kind = Movement::Kind::Moved, .rows = rows, .moved = moved, .bottom = moved.bottom() + 1};
    if (appendMoved(next, movement))
        m_last = next;
}

bool ScrollStitcher::grow(int rows)
{
    // Allocates exactly what is needed: the system moves blocks of this size by remapping pages
    // instead of copying.
    void *grown = std::realloc(m_pixels.get(), sizeof(QRgb) * static_cast<size_t>(m_last.width()) *
                                                   static_cast<size_t>(rows));
    if (!grown)
        return false;
    static_cast<void>(m_pixels.release());
    m_pixels.reset(static_cast<uchar *>(grown));
    return true;
}

// Appends the content's rows from m_end up to but not including the row `bottom` of a view at
// `offset`.
bool ScrollStitcher::append(const QImage &view, int offset, int bottom)
{
    const int end = std::min(offset + bottom, m_heightLimit);
    if (end <= m_end)
        return true;
    if (!grow(end))
        return false;
    const size_t bytes = sizeof(QRgb) * static_cast<size_t>(m_last.width());
    for (; m_end < end; ++m_end)
        std::memcpy(row(m_end), view.constScanLine(m_end - offset), bytes);
    return true;
}

bool ScrollStitcher::appendMoved(const QImage &view, const Movement &movement)
{
    const int offset = m_offset + movement.rows;
    // Only now is it known that the last view's content extends down to here.
    if (!append(m_last, m_offset, movement.bottom))
        return false;
    // Content near the end that has changed since is taken from the later view, from the last row
    // on that both have in common.
    const int known = movement.bottom - movement.rows;
    if (known > movement.moved.top() && offset + known < m_end && !continues(view, offset, known))
        m_end = offset + known;
    if (!append(view, offset, movement.bottom))
        return false;
    m_offset = offset;
    m_moved |= movement.moved;
    return true;
}

bool ScrollStitcher::continues(const QImage &view, int offset, int from) const
{
    for (int y = from; y < view.height() && offset + y < m_end; ++y)
        if (differ(pixelRow(view, y), row(offset + y), view.width(), visibleBits(view)))
            return false;
    return true;
}

void ScrollStitcher::takeSpots(const QImage &view)
{
    const QRgb mask = visibleBits(view);
    const auto differsAt = [mask](const QRgb *a, const QRgb *b, int x) {
        return (a[x] ^ b[x]) & mask;
    };
    for (int y = m_moved.top(); y < view.height() && m_offset + y < m_end; ++y) {
        const QRgb *was = pixelRow(m_last, y);
        const QRgb *is = pixelRow(view, y);
        if (!differ(was, is, view.width(), mask))
            continue;
        for (int x = 0; x < view.width(); ++x)
            if (differsAt(was, is, x))
                row(m_offset + y)[x] = is[x];
    }
}

std::optional<int> ScrollStitcher::offsetOf(const QImage &view) const
{
    if (m_last.isNull() || view.size() != m_last.size())
        return {};
    const QImage sought = view.convertToFormat(m_last.format());
    const QRgb mask = visibleBits(m_last);
    const int top = m_end ? m_moved.top() : 0;
    const int bottom = m_end ? m_moved.bottom() + 1 : view.height();
    const int left = m_end ? m_moved.left() : 0;
    const int width = m_end ? m_moved.width() : view.width();
    const int end = m_end ? m_end : view.height();

    std::vector<quint64> content(end);
    std::unordered_map<quint64, std::vector<int>> places;
    for (int y = 0; y < end; ++y) {
        content[y] = hashOf((m_end ? row(y) : pixelRow(m_last, y)) + left, width, mask);
        places[content[y]].push_back(y);
    }
    std::vector<quint64> rows(bottom);
    for (int y = top; y < bottom; ++y)
        rows[y] = hashOf(pixelRow(sought, y) + left, width, mask);

    // Only rows that differ from the row above are counted, because blank rows don't.
    const auto turns = [&](int y) { return y > top && rows[y] != rows[y - 1]; };
    std::unordered_map<int, int> votes;
    int all = 0;
    for (int y = top; y < bottom; ++y) {
        if (!turns(y))
            continue;
        ++all;
        const auto found = places.find(rows[y]);
        if (found == places.end())
            continue;
        for (const int place : found->second)
            if (place > y - 1 && place > 0 && content[place - 1] == rows[y - 1])
                ++votes[place - y];
    }
    return clearOffset(votes, all);
}

QImage ScrollStitcher::finish(const QImage &above, const QImage &below)
{
    const int width = m_last.width();
    const QImage::Format format = m_last.format();
    const bool hasMore =
        (above.width() == width && !above.isNull()) || (below.width() == width && !below.isNull());
    if (!m_pixels && !hasMore) {
        m_last = m_last.copy(0, 0, width, rows());
        return std::exchange(m_last, {});
    }
    append(m_last, m_offset, m_last.height());
    if (above.width() == width && !above.isNull()) {
        const QImage header = converted(above);
        const int shift = std::min(header.height(), m_heightLimit);
        const int kept = std::min(m_end, m_heightLimit - shift);
        const size_t bytes = sizeof(QRgb) * static_cast<size_t>(width);
        if (grow(std::max(m_end, shift + kept))) {
            std::memmove(row(shift), row(0), bytes * static_cast<size_t>(kept));
            for (int y = 0; y < shift; ++y)
                std::memcpy(row(y), header.constScanLine(y), bytes);
            m_end = shift + kept;
        }
    }
    if (below.width() == width && !below.isNull())
        append(converted(below), m_end, below.height());
    m_last = {};
    m_moved = {};
    m_offset = 0;
    uchar *pixels = m_pixels.release();
    return QImage(pixels, width, std::exchange(m_end, 0), qsizetype{width} * 4, format, std::free,
                  pixels);
}

QRgb ScrollStitcher::pixel(int x, int y) const
{
    return (y < m_end ? row(y) : pixelRow(m_last, y - m_offset))[x];
}

QImage ScrollStitcher::overview(QSize box) const
{
    return sampledOverview({m_last.width(), rows()}, box,
                           [this](int x, int y) { return pixel(x, y); });
}
