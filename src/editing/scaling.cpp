#include "editing/scaling.h"

#include <array>
#include <cstring>
#include <utility>
#include <vector>

namespace {

// The toolkit scales each axis separately in fixed-point numbers: when shrinking, a pixel is the
// weighted sum of the pixels that it covers; when growing, it is interpolated between two
// neighbours. The same numbers are computed here, starting where the part begins.

constexpr quint32 s_fullWeight = 1 << 14;  // sum of the weights of all pixels that one pixel covers
constexpr quint32 s_fullShare = 1 << 8;    // sum of the shares of two neighbours

/// The source pixels of one result pixel along one axis.
struct Share {
    qsizetype first = 0;  ///< the first pixel of the image
    quint32 start = 0;    ///< weight of the first pixel, or its neighbour's share when growing
    quint32 step = 0;     ///< weight of each whole pixel
};

struct Axis {
    bool grows = false;
    std::vector<Share> shares{};
};

Axis axisOf(int from, int to, int start, int length)
{
    Axis axis{.grows = to >= from};
    axis.shares.reserve(length);
    const qint64 step = (static_cast<qint64>(from) << 16) / to;
    const qint64 origin = axis.grows ? 0x8000LL * from / to - 0x8000 : 0;
    const auto whole = static_cast<quint32>(((static_cast<qint64>(to) << 14) + from - 1) / from);
    for (int i = start; i < start + length; ++i) {
        const qint64 at = origin + i * step;
        const auto pixel = static_cast<qsizetype>(at >> 16);
        if (axis.grows) {
            const bool atEdge = pixel < 0 || pixel >= from - 1;
            axis.shares.push_back({.first = std::max<qsizetype>(0, pixel),
                                   .start = atEdge ? 0 : static_cast<quint32>((at >> 8) & 0xff)});
        } else {
            axis.shares.push_back(
                {.first = pixel,
                 .start = static_cast<quint32>(((0x10000 - (at & 0xffff)) * whole) >> 16),
                 .step = whole});
        }
    }
    return axis;
}

using Channels = std::array<quint32, 4>;

Channels channels(QRgb pixel)
{
    return {pixel & 0xff, (pixel >> 8) & 0xff, (pixel >> 16) & 0xff, pixel >> 24};
}

QRgb toPixel(const Channels &sums, int shift)
{
    return (sums[3] >> shift) << 24 | (sums[2] >> shift) << 16 | (sums[1] >> shift) << 8 |
           sums[0] >> shift;
}

void add(Channels &sums, const Channels &value, quint32 weight)
{
    for (size_t i = 0; i < sums.size(); ++i)
        sums[i] += value[i] * weight;
}

/// The weighted sum of the pixels that one pixel covers; they are `stride` apart, and
/// `value(offset)` returns a pixel.
template<typename Value> Channels covered(const Share &share, qsizetype stride, Value value)
{
    Channels sums{};
    qsizetype offset = 0;
    add(sums, value(offset), share.start);
    quint32 rest = s_fullWeight - share.start;
    for (; rest > share.step; rest -= share.step)
        add(sums, value(offset += stride), share.step);
    add(sums, value(offset + stride), rest);
    return sums;
}

// Two channels at a time: none of them runs into the next one.
QRgb between(QRgb a, QRgb b, quint32 share)
{
    constexpr quint32 even = 0x00ff00ff;
    const quint32 rest = s_fullShare - share;
    return ((((a & even) * rest + (b & even) * share) >> 8) & even) |
           ((((a >> 8) & even) * rest + ((b >> 8) & even) * share) & ~even);
}

Channels between(const Channels &a, const Channels &b, quint32 share)
{
    Channels sums{};
    for (size_t i = 0; i < sums.size(); ++i)
        sums[i] = (a[i] * (s_fullShare - share) + b[i] * share) >> 8;
    return sums;
}

/// One axis shrinks, with pixels `along` apart; the other may grow, with pixels `across` apart.
QRgb shrunk(const QRgb *source, const Share &shrinking, qsizetype along, const Share &growing,
            qsizetype across)
{
    const auto pixel = [](const QRgb *from) {
        return [from](qsizetype offset) { return channels(from[offset]); };
    };
    Channels sums = covered(shrinking, along, pixel(source));
    if (growing.start > 0) {
        sums = between(sums, covered(shrinking, along, pixel(source + across)), growing.start);
    }
    return toPixel(sums, 14);
}

QRgb shrunkBothWays(const QRgb *source, const Share &x, const Share &y, qsizetype line)
{
    const auto row = [&](qsizetype offset) {
        Channels sums =
            covered(x, 1, [&](qsizetype step) { return channels(source[offset + step]); });
        for (quint32 &sum : sums)
            sum >>= 4;
        return sums;
    };
    return toPixel(covered(y, line, row), 24);
}

// Both axes grow. Whatever the zoom, a row costs little more than its own pixels: what lies between
// two rows of the image is made once for all pixels that are made of it.
void growRow(QRgb *to, const QRgb *source, const Axis &columns, const Share &y, qsizetype line,
             std::vector<QRgb> &mixed)
{
    const qsizetype first = columns.shares.front().first;
    const Share &last = columns.shares.back();
    mixed.resize(last.first - first + (last.start ? 2 : 1));
    for (size_t i = 0; i < mixed.size(); ++i) {
        const QRgb *pixel = source + first + i;
        mixed[i] = y.start ? between(pixel[0], pixel[line], y.start) : pixel[0];
    }
    for (const Share &x : columns.shares) {
        const QRgb *pixel = mixed.data() + x.first - first;
        *to++ = x.start ? between(pixel[0], pixel[1], x.start) : pixel[0];
    }
}

}  // namespace

QImage scaledPart(const QImage &image, QSize size, const QRect &part)
{
    const Axis columns = axisOf(image.width(), size.width(), part.x(), part.width());
    const Axis rows = axisOf(image.height(), size.height(), part.y(), part.height());
    const auto line = static_cast<qsizetype>(image.bytesPerLine() / sizeof(QRgb));
    const auto *pixels = reinterpret_cast<const QRgb *>(image.constBits());
    QImage result(part.size(), image.format());
    std::vector<QRgb> mixed;
    for (int j = 0; j < part.height(); ++j) {
        const Share &y = rows.shares[j];
        auto *to = reinterpret_cast<QRgb *>(result.scanLine(j));
        if (columns.grows && rows.grows) {
            growRow(to, pixels + y.first * line, columns, y, line, mixed);
            continue;
        }
        for (const Share &x : columns.shares) {
            const QRgb *source = pixels + y.first * line + x.first;
            if (!columns.grows && !rows.grows) {
                *to++ = shrunkBothWays(source, x, y, line);
            } else if (!columns.grows) {
                *to++ = shrunk(source, x, 1, y, line);
            } else {
                *to++ = shrunk(source, y, line, x, 1);
            }
        }
    }
    return result;
}

QImage sharpPart(const QImage &image, QSize size, const QRect &part)
{
    const auto sourceOf = [](int at, int from, int to) {
        return static_cast<int>(static_cast<qint64>(at) * from / to);
    };
    std::vector<int> columns;
    columns.reserve(part.width());
    for (int x = part.left(); x <= part.right(); ++x)
        columns.push_back(sourceOf(x, image.width(), size.width()));
    QImage result(part.size(), image.format());
    int before = -1;
    for (int j = 0; j < part.height(); ++j) {
        const int row = sourceOf(part.y() + j, image.height(), size.height());
        if (row == std::exchange(before, row)) {
            std::memcpy(result.scanLine(j), result.constScanLine(j - 1), result.bytesPerLine());
            continue;
        }
        const auto *from = reinterpret_cast<const QRgb *>(image.constScanLine(row));
        auto *to = reinterpret_cast<QRgb *>(result.scanLine(j));
        for (const int column : columns)
            *to++ = from[column];
    }
    return result;
}
