#include "helper/mosaic.h"

#include "base/palette.h"
#include "helper/evidence.h"
#include "helper/movedbox.h"
#include "helper/movement.h"
#include "helper/overview.h"

#include <QRegion>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <numeric>
#include <unordered_map>
#include <utility>

namespace {

// One of 2 to the power of these patches is a landmark; small views need more landmarks.
constexpr int s_rarity = 7;
constexpr int s_smallRarity = 4;
constexpr int s_smallView = 400'000;  // pixels
// The number of positions that are tested, and the votes that each of them needs.
constexpr ptrdiff_t s_candidates = 6;
constexpr int s_fewestVotes = 3;
// A sixth of a view must be known to determine its position. Two successive views are expected to
// share a quarter, but parts that stay in place don't count.
constexpr int s_sharedPart = 6;
// How many views are remembered for deciding which parts stay in place.
constexpr size_t s_memory = 3;
// One of this many pixels may differ in equal parts; the ends of a scroll bar differ in more.
constexpr int s_strict = 16;

// The part as an image with 32 bits per pixel, opaque if the picture has no alpha channel.
QImage opaque(const QImage &picture, const QRect &area)
{
    if (picture.format() != QImage::Format_RGB32)
        return picture.copy(area).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QImage result(area.size(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < area.height(); ++y) {
        const QRgb *from = pixelRow(picture, area.y() + y) + area.x();
        auto *to = reinterpret_cast<QRgb *>(result.scanLine(y));
        for (int x = 0; x < area.width(); ++x)
            to[x] = from[x] | ~RGB_MASK;
    }
    return result;
}

/// Counts the landmarks' votes for positions; the best positions come first.
class Votes
{
public:
    void add(QPoint place) { ++m_counts[key(place)]; }

    QList<QPoint> best() const
    {
        std::vector<std::pair<int, quint32>> sorted;
        for (const auto &[place, count] : m_counts) {
            if (count >= s_fewestVotes)
                sorted.emplace_back(count, place);
        }
        const auto end = sorted.begin() + std::min<ptrdiff_t>(s_candidates, std::ssize(sorted));
        std::partial_sort(sorted.begin(), end, sorted.end(), std::greater<>());
        QList<QPoint> result;
        for (auto at = sorted.begin(); at != end; ++at)
            result.append(
                {static_cast<qint16>(at->second >> 16), static_cast<qint16>(at->second & 0xffff)});
        return result;
    }

private:
    static quint32 key(QPoint place)
    {
        return static_cast<quint32>(place.x()) << 16 | (static_cast<quint32>(place.y()) & 0xffff);
    }

    std::unordered_map<quint32, int> m_counts{};
};

// Whether what two looks show of the same strip is the same: of the turns along it hardly any
// differs.
bool repeats(const QImage &was, const QImage &is, bool isAcross)
{
    const QPoint back = isAcross ? QPoint(1, 0) : QPoint(0, 1);
    int turns = 0;
    int wrong = 0;
    for (int y = back.y(); y < was.height(); ++y) {
        const QRgb *wasRow = pixelRow(was, y);
        const QRgb *isRow = pixelRow(is, y);
        const QRgb *wasBack = pixelRow(was, y - back.y());
        const QRgb *isBack = pixelRow(is, y - back.y());
        for (int x = back.x(); x < was.width(); ++x) {
            const int previous = x - back.x();
            if (wasRow[x] == wasBack[previous] && isRow[x] == isBack[previous])
                continue;
            ++turns;
            wrong += wasRow[x] != isRow[x];
        }
    }
    return wrong * s_strict <= turns;
}

// In memory that is zero, and none until it is written to; null where there is no room.
QImage transparentPicture(QSize size)
{
    const qsizetype rowBytes = qsizetype{size.width()} * qsizetype{sizeof(QRgb)};
    auto *pixels = static_cast<uchar *>(std::calloc(static_cast<size_t>(size.height()), rowBytes));
    if (!pixels)
        return {};
    return {pixels,    size.width(), size.height(), rowBytes, QImage::Format_ARGB32_Premultiplied,
            std::free, pixels};
}

bool isOpaque(const QImage &picture)
{
    QRgb all = ~QRgb{0};
    for (int y = 0; y < picture.height(); ++y) {
        const QRgb *line = pixelRow(picture, y);
        all = std::accumulate(line, line + picture.width(), all, std::bit_and<>());
    }
    return qAlpha(all) == 0xff;
}

}  // namespace

Mosaic::Mosaic(int sideLimit, qint64 areaLimit) : m_sideLimit(sideLimit), m_areaLimit(areaLimit) {}

QSize Mosaic::size() const { return hasMoved() ? m_extent.size() : m_last.size(); }

Mosaic::Sight Mosaic::add(const QImage &picture, const QRect &area)
{
    QImage view = opaque(picture, area);
    if (view == m_last)
        return Sight::Still;
    const bool isSmall = view.width() * view.height() < s_smallView;
    std::vector<Landmark> landmarks = landmarksOf(view, isSmall ? s_smallRarity : s_rarity);
    const auto accept = [&] {
        m_last = std::move(view);
        m_lastLandmarks = std::move(landmarks);
    };
    if (m_last.isNull()) {
        accept();
        return Sight::Still;
    }
    bool isHalfDrawn = false;
    if (const auto movement = movementOf(view, landmarks)) {
        const auto [part, stayed] = movedBox(m_last, view, *movement);
        const Share share = shareOf(part);
        isHalfDrawn = share == Share::Some;
        if (share == Share::Most) {
            learn(*movement, part, stayed);
            // Only now is it known which part of the first view is content.
            if (!hasMoved())
                paint(m_last, m_lastLandmarks, part);
            m_at += *movement;
            m_lastMovement = *movement;
            paint(view, landmarks, part & usualPart());
            accept();
            return Sight::Moved;
        }
    }
    if (!isHalfDrawn && isInPlace(view, landmarks)) {
        forgetChanged(view);
        if (hasMoved())
            paint(view, landmarks, usualPart());
        accept();
        return Sight::Still;
    }
    if (const auto place = placeOf(view, landmarks)) {
        m_lastMovement = *place - m_at;
        m_at = *place;
        paint(view, landmarks, usualPart());
        accept();
        return Sight::Moved;
    }
    return Sight::Unclear;
}

// The movement since the last view.
std::optional<QPoint> Mosaic::movementOf(const QImage &view,
                                         const std::vector<Landmark> &landmarks) const
{
    if (const auto movement = movementAmong(view, m_lastLandmarks, landmarks))
        return movement;
    // In a repeating pattern, such as columns of equal numbers, a position further aside fits as
    // well as the one straight below, which is always the intended one.
    for (const Qt::Orientation line : {Qt::Vertical, Qt::Horizontal}) {
        if (const auto movement = movementAmong(view, landmarksInLine(m_lastLandmarks, line),
                                                landmarksInLine(landmarks, line)))
            return movement;
    }
    // Lines that differ in a digit only have no landmarks of their own, so all their rows together
    // are compared.
    if (const Movement up = findMovement(m_last, view); up.kind == Movement::Kind::Moved)
        return QPoint(0, up.rows);
    if (const Movement down = findMovement(view, m_last); down.kind == Movement::Kind::Moved)
        return QPoint(0, -down.rows);
    return {};
}

std::optional<QPoint> Mosaic::movementAmong(const QImage &view, const std::vector<Landmark> &known,
                                            const std::vector<Landmark> &landmarks) const
{
    Votes votes;
    const int furthestX = view.width() * (s_sharedPart - 1) / s_sharedPart;
    const int furthestY = view.height() * (s_sharedPart - 1) / s_sharedPart;
    forCommon(known, landmarks, [&](const Landmark &was, const Landmark &is) {
        const QPoint movement(was.x - is.x, was.y - is.y);
        if (!movement.isNull() && std::abs(movement.x()) <= furthestX &&
            std::abs(movement.y()) <= furthestY)
            votes.add(movement);
    });
    std::vector<Trial> trials;
    for (const QPoint movement : votes.best()) {
        if (witnesses(m_last, view, movement, landmarks, view.rect(), m_last).areSure())
            trials.push_back(trialOf(m_last, view, movement));
    }
    const Trial *best = decided(trials, trialOf(m_last, view, {}));
    return best ? std::optional(best->movement) : std::nullopt;
}

// The position among everything painted before.
std::optional<QPoint> Mosaic::placeOf(const QImage &view,
                                      const std::vector<Landmark> &landmarks) const
{
    if (!hasMoved())
        return {};
    const QRect part = usualPart();
    Votes votes;
    for (const Landmark &landmark : landmarks) {
        if (part.contains(landmark.x, landmark.y))
            m_index.find(landmark.hash, [&](const Landmark &known) {
                votes.add({known.x - landmark.x, known.y - landmark.y});
            });
    }
    // A blank background would match everywhere, so it is excluded.
    QImage plain(view.size(), view.format());
    plain.fill(commonColour(view, part));
    const Trial ground = trialOf(plain, view, {});
    std::vector<Trial> trials;
    for (const QPoint place : votes.best()) {
        const QImage known = m_plane.read(view.rect().translated(place));
        if (!witnesses(known, view, {}, landmarks, part, {}).areSure())
            continue;
        Trial trial = trialOf(known, view, {}, true);
        trial.movement = place;
        const auto unknown = std::count(trial.cells.begin(), trial.cells.end(), Trial::Unknown);
        if ((std::ssize(trial.cells) - unknown) * s_sharedPart >= std::ssize(trial.cells) &&
            trial.rowsOver(ground, part).agree())
            trials.push_back(std::move(trial));
    }
    const Trial *best = decided(trials, ground);
    return best ? std::optional(best->movement) : std::nullopt;
}

// Whether only spots have changed: a caret, a picture that loaded late, a highlighted row. If a
// numbered listing has scrolled by whole lines, something has changed in each line.
bool Mosaic::isInPlace(const QImage &view, const std::vector<Landmark> &landmarks) const
{
    constexpr int mostSpots = 8;  // one above the other
    constexpr int gap = 4;        // rows within one spot
    const QRect part = hasMoved() ? usualPart() : view.rect();
    int changed = 0;
    int spots = 0;
    int last = -gap;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        if (isSame(pixelRow(view, y) + part.left(), pixelRow(m_last, y) + part.left(),
                   part.width()))
            continue;
        ++changed;
        spots += y - last > gap;
        last = y;
    }
    const Witnesses told = witnesses(m_last, view, {}, landmarks, part, {});
    return changed * 2 <= part.height() && spots <= mostSpots && told.agree >= told.deny;
}

// How much of the usually moving part has moved. A program may be caught when it has drawn only
// half of its view, and a spot that moves by itself is not a movement of the view.
Mosaic::Share Mosaic::shareOf(const QRect &part) const
{
    constexpr int little = 8;
    const auto areaOf = [](const QRect &rect) { return qint64{rect.width()} * rect.height(); };
    const QRect usual = hasMoved() ? usualPart() : m_last.rect();
    const qint64 share = areaOf(part & usual);
    if (share * little <= areaOf(usual))
        return Share::Little;
    return !hasMoved() || share * 2 > areaOf(usual) ? Share::Most : Share::Some;
}

// The median of the last parts, because some parts stay in place only later, such as a heading that
// sticks to the top, and a single view may mislead.
QRect Mosaic::usualPart() const
{
    const auto usual = [](const std::vector<QRect> &parts, int (QRect::*edge)() const) {
        std::vector<int> edges;
        edges.reserve(parts.size());
        for (const QRect &part : parts)
            edges.push_back((part.*edge)());
        std::nth_element(edges.begin(), edges.begin() + std::ssize(edges) / 2, edges.end());
        return edges[edges.size() / 2];
    };
    QRect result = m_last.rect();
    for (const std::vector<QRect> &parts : m_parts) {
        if (!parts.empty())
            result &= QRect(QPoint(usual(parts, &QRect::left), usual(parts, &QRect::top)),
                            QPoint(usual(parts, &QRect::right), usual(parts, &QRect::bottom)));
    }
    return result;
}

void Mosaic::learn(QPoint movement, const QRect &part, const QRegion &stayed)
{
    if (m_stayed.size() == s_memory)
        m_stayed.erase(m_stayed.begin());
    m_stayed.push_back(stayed);
    for (const bool isUpright : {false, true}) {
        std::vector<QRect> &parts = m_parts.at(isUpright ? 1 : 0);
        if ((isUpright ? movement.y() : movement.x()) == 0)
            continue;
        if (parts.size() == s_memory)
            parts.erase(parts.begin());
        parts.push_back(part);
    }
}

// A part that changes without moving was drawn late and does not lie over the content.
void Mosaic::forgetChanged(const QImage &view)
{
    for (QRegion &stayed : m_stayed) {
        QRegion kept;
        for (const QRect &piece : stayed) {
            if (view.copy(piece) == m_last.copy(piece))
                kept |= piece;
        }
        stayed = kept;
    }
}

// Paints the view at the last view's position (m_at).
void Mosaic::paint(const QImage &view, const std::vector<Landmark> &landmarks, const QRect &part)
{
    const QRect area = withinLimits(part.translated(m_at));
    if (area.isEmpty())
        return;
    const QRect shown = area.translated(-m_at);
    const QPoint centre(s_landmarkWidth / 2, s_landmarkHeight / 2);
    for (const Landmark &landmark : landmarks) {
        const QPoint at(landmark.x, landmark.y);
        if (!shown.contains(QRect(at, QSize(s_landmarkWidth, s_landmarkHeight))))
            continue;
        const QPoint place = at + m_at;
        if (m_plane.pixel(place + centre) == 0)
            m_index.insert(
                {landmark.hash, static_cast<qint16>(place.x()), static_cast<qint16>(place.y())});
    }
    // Parts that lie over the content would otherwise be painted at each position that they had.
    QRegion over;
    for (const QRegion &stayed : m_stayed)
        over |= stayed;
    over &= shown;
    for (const QRect &piece : QRegion(shown) - over)
        m_isFull = !m_plane.paint(m_at, view, piece) || m_isFull;
    for (const QRect &piece : over)
        m_isFull = !m_plane.paint(m_at, view, piece, Plane::Over::Nothing) || m_isFull;
    m_extent |= area;
    for (const Side side : {Top, Bottom, Left, Right})
        paintStrip(side, view, shown);
}

// The part of an area that the limits allow.
QRect Mosaic::withinLimits(const QRect &area)
{
    const QRect all = m_extent | area;
    const int width = std::min(all.width(), m_sideLimit);
    const int height = static_cast<int>(
        std::min<qint64>({all.height(), m_sideLimit, m_areaLimit / std::max(width, 1)}));
    if (QSize(width, height) == all.size())
        return area;
    m_isFull = true;
    // The picture grows only within the limits, and only on the side where the area is.
    QRect allowed = all;
    if (m_extent.isEmpty() || area.right() > m_extent.right())
        allowed.setWidth(width);
    else
        allowed.setLeft(all.right() + 1 - width);
    if (m_extent.isEmpty() || area.bottom() > m_extent.bottom())
        allowed.setHeight(height);
    else
        allowed.setTop(all.bottom() + 1 - height);
    return area & allowed;
}

// What of the view lies on that side of the content.
QRect Mosaic::beside(Side side, QSize view, const QRect &part)
{
    switch (side) {
    case Top:
        return {part.x(), 0, part.width(), part.y()};
    case Bottom:
        return {QPoint(part.x(), part.bottom() + 1), QPoint(part.right(), view.height() - 1)};
    case Left:
        return {0, part.y(), part.x(), part.height()};
    default:
        return {QPoint(part.right() + 1, part.y()), QPoint(view.width() - 1, part.bottom())};
    }
}

void Mosaic::paintStrip(Side side, const QImage &view, const QRect &part)
{
    const bool isAcross = side == Top || side == Bottom;
    const QRect place = part.translated(m_at);
    const bool isOutermost = side == Top      ? place.top() == m_extent.top()
                             : side == Bottom ? place.bottom() == m_extent.bottom()
                             : side == Left   ? place.left() == m_extent.left()
                                              : place.right() == m_extent.right();
    const QRect from = beside(side, view.size(), part);
    std::unique_ptr<Strip> &strip = m_strips.at(side);
    const int thickness = isAcross ? from.height() : from.width();
    const bool fits =
        strip && thickness == (isAcross ? strip->extent.height() : strip->extent.width());
    if (!fits) {
        if (!isOutermost)
            return;
        strip = thickness > 0 ? std::make_unique<Strip>() : nullptr;
        if (!strip)
            return;
    }
    // In the strip's plane the position along the side is that of the content; across the side it
    // begins at 0.
    const QPoint at = isAcross ? QPoint(m_at.x(), -from.y()) : QPoint(-from.x(), m_at.y());
    const QRect to = from.translated(at);
    const QRect known = strip->extent & to;
    if (known != to && !known.isEmpty() && strip->follows)
        strip->follows =
            repeats(strip->plane.read(known), view.copy(known.translated(-at)), isAcross);
    if (!strip->follows || (known == to && !isOutermost))
        return;
    // Unless the view is the outermost one, known parts are kept, because they were seen in place.
    for (const QRect &piece : isOutermost ? QRegion(to) : QRegion(to) - known)
        strip->plane.paint(at, view, piece.translated(-at));
    strip->extent |= to;
}

// The thickness of the strip that is painted beside the content: all of it, or 0 if the strip is
// shorter than the content.
int Mosaic::thicknessOf(Side side) const
{
    const Strip *strip = m_strips.at(side).get();
    if (!strip)
        return 0;
    const QRect &extent = strip->extent;
    if (side == Top || side == Bottom)
        return extent.left() <= m_extent.left() && extent.right() >= m_extent.right()
                   ? extent.height()
                   : 0;
    return extent.top() <= m_extent.top() && extent.bottom() >= m_extent.bottom() ? extent.width()
                                                                                  : 0;
}

QRect Mosaic::lastPlace() const
{
    if (!hasMoved())
        return m_last.rect();
    return usualPart().translated(m_at).translated(QPoint(thicknessOf(Left), thicknessOf(Top)) -
                                                   m_extent.topLeft());
}

QImage Mosaic::overview(QSize box) const
{
    if (!hasMoved())
        return sampledOverview(m_last.size(), box,
                               [this](int x, int y) { return pixelRow(m_last, y)[x]; });
    // Parts that have not been seen are chequered, because a single colour could be taken for
    // content.
    constexpr int field = 6;  // pixels of the preview
    const std::array grounds{Palette::unseenBright.rgb(), Palette::unseenDark.rgb()};
    const int shown = overviewSize(m_extent.size(), box).width();
    const int side = std::max(1, field * m_extent.width() / std::max(1, shown));
    return sampledOverview(m_extent.size(), box, [&](int x, int y) {
        const QRgb pixel = m_plane.pixel(m_extent.topLeft() + QPoint(x, y));
        return pixel ? pixel : grounds.at((x / side + y / side) % 2);
    });
}

void Mosaic::moveStrips(QImage &result, const QRect &inside, const Thickness &thickness)
{
    for (const Side side : {Top, Bottom, Left, Right}) {
        if (thickness.at(side) == 0)
            continue;
        QRect from = m_extent;
        if (side == Top || side == Bottom)
            from = QRect(m_extent.x(), 0, m_extent.width(), thickness.at(side));
        else
            from = QRect(0, m_extent.y(), thickness.at(side), m_extent.height());
        const QPoint to(side == Left    ? 0
                        : side == Right ? inside.x() + inside.width()
                                        : inside.x(),
                        side == Top      ? 0
                        : side == Bottom ? inside.y() + inside.height()
                                         : inside.y());
        m_strips.at(side)->plane.moveTo(result, to, from);
    }
}

void Mosaic::paintCorners(QImage &result, const Thickness &thickness) const
{
    for (const bool isRight : {false, true}) {
        for (const bool isBottom : {false, true}) {
            const QSize corner(thickness.at(isRight ? Right : Left),
                               thickness.at(isBottom ? Bottom : Top));
            const QPoint from(isRight ? m_last.width() - corner.width() : 0,
                              isBottom ? m_last.height() - corner.height() : 0);
            const QPoint to(isRight ? result.width() - corner.width() : 0,
                            isBottom ? result.height() - corner.height() : 0);
            for (int y = 0; y < corner.height(); ++y)
                std::memcpy(result.scanLine(to.y() + y) + sizeof(QRgb) * to.x(),
                            pixelRow(m_last, from.y() + y) + from.x(),
                            sizeof(QRgb) * corner.width());
        }
    }
}

QImage Mosaic::finish()
{
    if (!hasMoved())
        return std::exchange(m_last, {});
    Thickness thickness{};
    for (const Side side : {Top, Bottom, Left, Right})
        thickness.at(side) = thicknessOf(side);
    const QRect inside(QPoint(thickness[Left], thickness[Top]), m_extent.size());
    const QSize size(inside.x() + inside.width() + thickness[Right],
                     inside.y() + inside.height() + thickness[Bottom]);
    QImage result = transparentPicture(size);
    if (result.isNull())
        return {};
    m_plane.moveTo(result, inside.topLeft(), m_extent);
    moveStrips(result, inside, thickness);
    paintCorners(result, thickness);
    if (isOpaque(result))
        result.reinterpretAsFormat(QImage::Format_RGB32);
    return result;
}
