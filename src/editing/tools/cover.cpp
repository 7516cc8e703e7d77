#include "editing/tools/cover.h"

#include "editing/shapeparts.h"
#include "editing/tiles.h"

#include <QHash>
#include <QPainter>
#include <QRegion>
#include <QVector3D>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_leastSide = 12;  // picture pixels
constexpr int s_sidesAcross = 4;
constexpr int s_looks = 128;  // in each direction, at most
// The colours are told apart roughly: 4 steps for each of red, green and blue.
constexpr int s_bits = 2;
constexpr size_t s_steps = 1 << s_bits;
constexpr int s_rarest = 16;      // one pixel of so many, for a colour that counts
constexpr int s_rarestInk = 256;  // the same for the one that differs most
constexpr float s_unlike = 1;     // steps, for one that is no blend
constexpr int s_whole = 256;      // a weight

using Counts = std::array<int, s_steps * s_steps * s_steps>;

// Some pixels of a part, opaque.
std::vector<QRgb> pixelsOf(const QImage &picture, const QRect &part)
{
    std::vector<QRgb> result;
    const int across = std::max(1, (part.width() + s_looks - 1) / s_looks);
    const int down = std::max(1, (part.height() + s_looks - 1) / s_looks);
    for (int y = part.top(); y <= part.bottom(); y += down) {
        for (int x = part.left(); x <= part.right(); x += across) {
            const QRgb pixel = picture.pixel(x, y);
            if (qAlpha(pixel) > 0)
                result.push_back(pixel | 0xff000000);
        }
    }
    return result;
}

// The colour of all to which it belongs.
size_t roughly(QRgb color)
{
    const auto step = [](int channel) { return static_cast<size_t>(channel) >> (8 - s_bits); };
    return (step(qRed(color)) * s_steps + step(qGreen(color))) * s_steps + step(qBlue(color));
}

// The commonest one of those that belong to a colour.
QRgb commonestOf(const std::vector<QRgb> &pixels, size_t color)
{
    QHash<QRgb, int> counts;
    for (const QRgb pixel : pixels) {
        if (roughly(pixel) == color)
            ++counts[pixel];
    }
    QRgb result = 0;
    for (auto count = counts.constBegin(); count != counts.constEnd(); ++count) {
        const int most = counts.value(result);
        if (count.value() > most || (count.value() == most && count.key() < result))
            result = count.key();
    }
    return result;
}

// Where a colour lies among all, each of which is one step away from those beside it.
QVector3D placeOf(size_t color)
{
    const size_t red = color / (s_steps * s_steps);
    const size_t green = color / s_steps % s_steps;
    const size_t blue = color % s_steps;
    return QVector3D(float(red), float(green), float(blue));
}

QRgb colorAt(QVector3D place)
{
    constexpr float step = 255.F / (s_steps - 1);
    return qRgb(qRound(place.x() * step), qRound(place.y() * step), qRound(place.z() * step));
}

// A number that looks like chance, always the same for the same one.
quint32 scattered(quint32 value)
{
    value = (value ^ (value >> 16)) * 0x7feb352dU;
    value = (value ^ (value >> 15)) * 0x846ca68bU;
    return value ^ (value >> 16);
}

QRgb between(QRgb a, QRgb b, quint32 weight)
{
    constexpr quint32 evens = 0x00ff00ff;
    const quint32 rest = s_whole - weight;
    const quint32 low = (((a & evens) * rest + (b & evens) * weight) >> 8) & evens;
    const quint32 high = ((a >> 8) & evens) * rest + ((b >> 8) & evens) * weight;
    return low | (high & ~evens);
}

// Which two squares a pixel lies between along one side of the area, and how far from the first one
// to the second.
struct Between {
    int first = 0;
    int second = 0;
    quint32 weight = 0;
};

// The same for a part of a side of `length` pixels, from the pixel `start` of it on.
std::vector<Between> along(int length, int side, bool isReversed, bool isBlurred, int start,
                           int count)
{
    // What is left at the end belongs to the last square: a narrow strip looks like an error.
    const int last = std::max(1, length / side) - 1;
    std::vector<Between> result(count);
    for (int i = 0; i < count; ++i) {
        const int at = isReversed ? length - 1 - start - i : start + i;
        Between &found = result[i];
        if (!isBlurred) {
            const int square = std::min(at / side, last);
            found = {square, square, 0};
            continue;
        }
        // From the middle of one square to that of the next.
        const int shifted = 2 * at + 1 - side;
        const int first = shifted < 0 ? -1 : shifted / (2 * side);
        const double part = double(shifted - first * 2 * side) / (2 * side);
        const double soft = part * part * (3 - 2 * part);
        found = {std::clamp(first, 0, last), std::min(first + 1, last),
                 static_cast<quint32>(std::lround(soft * s_whole))};
    }
    return result;
}

}  // namespace

void CoverArea::cover(Tiles &tiles, const EditMsg & /*style*/) const { tiles.addRect(bounds); }

QPolygon CoverArea::drawnPoints() const
{
    return QPolygon({bounds.topLeft(), bounds.bottomRight()});
}

bool CoverArea::hit(QPointF point, qreal grace, const EditMsg & /*style*/) const
{
    return QRectF(bounds).adjusted(-grace, -grace, grace, grace).contains(point);
}

void CoverArea::write(QJsonObject &to) const
{
    to["bounds"_L1] = QJsonArray{bounds.x(), bounds.y(), bounds.width(), bounds.height()};
}

CoverArea CoverArea::read(ShapeParts &parts)
{
    const QPolygon corner = parts.points("bounds"_L1, 2, 2);
    const QSize size(corner.last().x(), corner.last().y());
    parts.require(!size.isEmpty());
    return {{corner.first(), size}};
}

// The commonest colour, which counts twice, the one that differs most from it, and others that are
// no blend of both. What lies between a text and its ground would tell which text it is, and so
// would more than a rough idea of the text's own colour.
QList<QRgb> CoverBlocks::colorsOf(const QImage &picture, const QRect &area)
{
    const std::vector<QRgb> pixels = pixelsOf(picture, area & picture.rect());
    if (pixels.empty())
        return {qRgb(128, 128, 128)};
    Counts counts{};
    for (const QRgb pixel : pixels)
        ++counts[roughly(pixel)];
    const auto all = static_cast<int>(pixels.size());
    const size_t commonest = std::max_element(counts.begin(), counts.end()) - counts.begin();
    const QVector3D ground = placeOf(commonest);
    QVector3D ink = ground;
    for (size_t i = 0; i < counts.size(); ++i) {
        if (counts[i] * s_rarestInk > all &&
            placeOf(i).distanceToPoint(ground) > ink.distanceToPoint(ground))
            ink = placeOf(i);
    }
    const QRgb exactly = commonestOf(pixels, commonest);
    QList<QRgb> result{exactly, exactly};
    if (ink == ground)
        return result;
    result.append(colorAt(ink));
    for (size_t i = 0; i < counts.size() && result.size() < s_mostColors; ++i) {
        const QVector3D place = placeOf(i);
        if (counts[i] * s_rarest > all && place.distanceToPoint(ink) > s_unlike &&
            place.distanceToLine(ground, (ink - ground).normalized()) > s_unlike)
            result.append(commonestOf(pixels, i));
    }
    return result;
}

int CoverBlocks::side() const
{
    const int shorter = std::min(bounds.width(), bounds.height());
    return std::max(s_leastSide, (shorter + s_sidesAcross - 1) / s_sidesAcross);
}

QRgb CoverBlocks::colorOf(int column, int row) const
{
    const auto place = static_cast<quint32>(row) * 0x10001U + static_cast<quint32>(column);
    const quint32 chance = scattered(static_cast<quint32>(seed) ^ scattered(place));
    const auto count = static_cast<quint32>(colors.size());
    return between(colors.at(chance % count), colors.at((chance >> 16) % count), s_whole / 2);
}

void CoverBlocks::drawBlocks(QPainter &painter, bool isBlurred) const
{
    const QRegion drawn = visiblePart(painter) & bounds;
    if (drawn.isEmpty())
        return;
    if (colors.isEmpty()) {
        painter.fillRect(bounds, Qt::gray);
        return;
    }
    const bool isAcross = direction.m11() == 0;  // columns of squares have become rows
    const bool isBackX = isAcross ? direction.m21() < 0 : direction.m11() < 0;
    const bool isBackY = isAcross ? direction.m12() < 0 : direction.m22() < 0;
    const auto colorAt = [&](int across, int down) {
        return isAcross ? colorOf(down, across) : colorOf(across, down);
    };
    std::vector<QRgb> row;
    for (const QRect &part : drawn) {
        const QPoint from = part.topLeft() - bounds.topLeft();
        const std::vector<Between> xs =
            along(bounds.width(), side(), isBackX, isBlurred, from.x(), part.width());
        const std::vector<Between> ys =
            along(bounds.height(), side(), isBackY, isBlurred, from.y(), part.height());
        const int first = std::min(xs.front().first, xs.back().first);
        row.resize(std::max(xs.front().second, xs.back().second) - first + 1);
        QImage image(part.size(), QImage::Format_RGB32);
        for (int y = 0; y < part.height(); ++y) {
            for (size_t i = 0; i < row.size(); ++i) {
                const int at = first + static_cast<int>(i);
                row[i] = between(colorAt(at, ys[y].first), colorAt(at, ys[y].second), ys[y].weight);
            }
            auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
            for (const Between &across : xs)
                *line++ =
                    between(row[across.first - first], row[across.second - first], across.weight);
        }
        painter.drawImage(part.topLeft(), image);
    }
}

CoverBlocks CoverBlocks::mapped(const PictureMap &map) const
{
    CoverBlocks result{CoverArea::mapped(map), seed, colors, direction * map.direction()};
    return result;
}

void CoverBlocks::write(QJsonObject &to) const
{
    CoverArea::write(to);
    to["seed"_L1] = seed;
    to["colors"_L1] = namesOf(colors);
    to["direction"_L1] =
        QJsonArray{direction.m11(), direction.m12(), direction.m21(), direction.m22()};
}

CoverBlocks CoverBlocks::read(ShapeParts &parts)
{
    CoverBlocks result{CoverArea::read(parts)};
    result.seed = parts.number("seed"_L1);
    result.colors = parts.colors("colors"_L1, s_mostColors);
    const QPolygon axes = parts.points("direction"_L1, 2, 2);
    const QPoint right = axes.first();
    const QPoint down = axes.last();
    const auto isUnit = [](QPoint axis) { return axis.manhattanLength() == 1; };
    if (parts.require(isUnit(right) && isUnit(down) && QPoint::dotProduct(right, down) == 0))
        result.direction = QTransform(right.x(), right.y(), down.x(), down.y(), 0, 0);
    return result;
}

std::optional<QRect> areaOf(const Drag &drag)
{
    return drag.box && !drag.box->isEmpty() ? drag.box : std::nullopt;
}
