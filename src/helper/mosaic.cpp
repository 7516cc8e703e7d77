#include "helper/mosaic.h"

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

// Pixels in a cell, a piece of a row: what is compared at once.
constexpr int s_cell = 16;
// Rows that are looked at to choose between movements.
constexpr int s_sampledRows = 256;
// One patch in 2 to the power of these is a landmark; in a small view more have to be.
constexpr int s_rarity = 7;
constexpr int s_smallRarity = 4;
constexpr int s_smallView = 400'000;  // pixels
// Of patches that come more often in a view no landmark is made.
constexpr int s_mostEqual = 4;
constexpr qsizetype s_candidates = 6;
constexpr size_t s_witnesses = 1000;
// Landmarks that have to agree on a movement, cells that have to tell of it, and those that have to
// tell it from another one.
constexpr int s_fewestVotes = 3;
constexpr int s_enough = 8;
constexpr int s_decides = 4;
// A view is known by a sixth of it, somewhat less than the quarter that two looks are asked to
// share: what stays in its place is no part of that.
constexpr int s_sharedPart = 6;
// Looks by which a change of what stays in its place counts.
constexpr size_t s_memory = 3;

const QRgb *row(const QImage &picture, int y)
{
    return reinterpret_cast<const QRgb *>(picture.constScanLine(y));
}

// A loop of known length, which is a few instructions.
bool sameCell(const QRgb *a, const QRgb *b)
{
    QRgb difference = 0;
    for (int x = 0; x < s_cell; ++x)
        difference |= a[x] ^ b[x];
    return difference == 0;
}

bool isSame(const QRgb *a, const QRgb *b, int count)
{
    return count == s_cell ? sameCell(a, b) : std::memcmp(a, b, sizeof(QRgb) * count) == 0;
}

// 32 bits a pixel, opaque where the picture knows no transparency.
QImage opaque(const QImage &picture, const QRect &area)
{
    if (picture.format() != QImage::Format_RGB32)
        return picture.copy(area).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QImage result(area.size(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < area.height(); ++y) {
        const QRgb *from = row(picture, area.y() + y) + area.x();
        auto *to = reinterpret_cast<QRgb *>(result.scanLine(y));
        for (int x = 0; x < area.width(); ++x)
            to[x] = from[x] | ~RGB_MASK;
    }
    return result;
}

/// The places that landmarks vote for, the best first.
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

/// Rows of pixels in which a movement explains something, and those of them that deny it as well. A
/// bar over a row or a film denies rows as a whole; where a wrong distance makes lines of a listing
/// agree but for a digit, most rows do both.
struct Rows {
    int told = 0;
    int mixed = 0;

    void add(bool tells, bool denies)
    {
        told += tells;
        mixed += tells && denies;
    }
    bool agree() const { return told > 0 && mixed * 3 <= told; }
};

/// What those landmarks of a view that come in it but once say of a movement: in a listing most of
/// a view is found again at any distance, but not these.
struct Witnesses {
    int agree = 0;
    int deny = 0;

    bool areSure() const { return agree >= s_fewestVotes && agree >= 2 * deny; }
};

// `known` is where the view was before, or what lies on the plane under it; of that, what is 0 is
// unknown. Where `last` is not null, what is there as it was tells of what stays.
Witnesses witnesses(const QImage &known, const QImage &view, QPoint movement,
                    const std::vector<Landmark> &landmarks, const QRect &part, const QImage &last)
{
    const QRect patch(0, 0, s_landmarkWidth, s_landmarkHeight);
    const auto isThere = [&view](const QImage &picture, QPoint from, QPoint to) {
        for (int y = 0; y < s_landmarkHeight; ++y) {
            if (!sameCell(row(view, from.y() + y) + from.x(), row(picture, to.y() + y) + to.x()))
                return false;
        }
        return true;
    };
    Witnesses result;
    // They lie in the order of their hashes: any few of them are from all over the view.
    const size_t step = landmarks.size() / s_witnesses + 1;
    for (size_t i = 0; i < landmarks.size(); i += step) {
        const bool isOnly =
            (i == 0 || landmarks[i - 1].hash != landmarks[i].hash) &&
            (i + 1 == landmarks.size() || landmarks[i + 1].hash != landmarks[i].hash);
        const QPoint at(landmarks[i].x, landmarks[i].y);
        const QPoint from = at + movement;
        if (!isOnly || !part.contains(patch.translated(at)) ||
            !known.rect().contains(patch.translated(from)) || row(known, from.y())[from.x()] == 0 ||
            row(known, from.y() + s_landmarkHeight - 1)[from.x() + s_landmarkWidth - 1] == 0)
            continue;
        if (isThere(known, at, from))
            ++result.agree;
        else if (last.isNull() || !isThere(last, at, at))
            ++result.deny;
    }
    return result;
}

/// What a movement makes of the cells of a few rows of a view.
struct Trial {
    enum : quint8 { No, Yes, Unknown };

    QPoint movement{};
    int bands = 0;  // cells in a row
    int step = 1;   // from one row to the next
    std::vector<quint8> cells{};

    /// The rows of a part in which it explains what another one doesn't.
    Rows rowsOver(const Trial &other, const QRect &part) const
    {
        Rows result;
        const int first = (part.left() + s_cell - 1) / s_cell;
        const int last = (part.right() + 1) / s_cell;
        for (int y = 0; y <= part.bottom(); y += step) {
            const auto from = static_cast<ptrdiff_t>(y / step) * bands;
            bool tells = false;
            bool denies = false;
            for (ptrdiff_t i = from + first; i < from + last; ++i) {
                tells = tells || (cells[i] == Yes && other.cells[i] == No);
                denies = denies || cells[i] == No;
            }
            if (y >= part.top())
                result.add(tells, denies);
        }
        return result;
    }
    /// Cells that this one explains and another one doesn't.
    int over(const Trial &other) const
    {
        int result = 0;
        for (size_t i = 0; i < cells.size(); ++i)
            result += cells[i] == Yes && other.cells[i] == No;
        return result;
    }
};

// `known` is where the view was before, or what lies on the plane under it; of that, what is 0 is
// unknown.
Trial trialOf(const QImage &known, const QImage &view, QPoint movement, bool hasGaps = false)
{
    const int step = std::max(1, view.height() / s_sampledRows);
    const int width = view.width();
    Trial trial{.movement = movement, .bands = (width + s_cell - 1) / s_cell, .step = step};
    trial.cells.reserve(static_cast<size_t>(view.height() / step + 1) * (width / s_cell + 1));
    for (int y = 0; y < view.height(); y += step) {
        const int from = y + movement.y();
        const bool hasRow = from >= 0 && from < known.height();
        const QRgb *is = row(view, y);
        const QRgb *was = hasRow ? row(known, from) + movement.x() : nullptr;
        for (int x = 0; x < width; x += s_cell) {
            const int count = std::min(s_cell, width - x);
            const bool isKnown = hasRow && x + movement.x() >= 0 &&
                                 x + count + movement.x() <= known.width() &&
                                 !(hasGaps && (was[x] == 0 || was[x + count - 1] == 0));
            trial.cells.push_back(!isKnown                         ? Trial::Unknown
                                  : isSame(is + x, was + x, count) ? Trial::Yes
                                                                   : Trial::No);
        }
    }
    return trial;
}

// The one that explains what no other one can; null if several do as well. `still` is what is
// explained without.
const Trial *decided(const std::vector<Trial> &trials, const Trial &still)
{
    if (trials.empty())
        return nullptr;
    const Trial *best = &trials.front();
    for (const Trial &trial : trials) {
        if (trial.over(*best) > s_decides * best->over(trial) + s_decides)
            best = &trial;
    }
    const int evidence = best->over(still);
    if (evidence < s_enough)
        return nullptr;
    for (const Trial &trial : trials) {
        if (&trial == best || trial.over(still) * s_decides < evidence)
            continue;
        if (best->over(trial) <= s_decides * trial.over(*best) + s_decides)
            return nullptr;
    }
    return best;
}

// The stretch with the largest sum, widened by what counts as nothing.
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

QRgb commonColour(const QImage &picture, const QRect &area)
{
    constexpr int every = 8;
    std::unordered_map<QRgb, int> counts;
    for (int y = area.top(); y <= area.bottom(); y += every) {
        for (int x = area.left(); x <= area.right(); x += every)
            ++counts[row(picture, y)[x]];
    }
    const auto most = std::max_element(counts.begin(), counts.end(),
                                       [](auto &a, auto &b) { return a.second < b.second; });
    return most == counts.end() ? 0 : most->first;
}

/// Two views, one of which the content has moved to, cell by cell: what went along and what stayed.
class MovedCells
{
public:
    MovedCells(const QImage &before, const QImage &after, QPoint movement)
        : m_before(before), m_after(after), m_movement(movement),
          m_bands((after.width() + s_cell - 1) / s_cell), m_rows(after.height()),
          m_scores(static_cast<size_t>(m_bands) * m_rows)
    {
        for (int y = 0; y < m_rows; ++y) {
            for (int band = 0; band < m_bands; ++band)
                m_scores[index(band, y)] = scoreOf(band, y);
        }
    }

    /// The box of what moved; empty where too much of it is not as the movement wants it.
    QRect box() const
    {
        auto bands = bestStretch(columnScores({0, m_rows}));
        const auto rows = bestStretch(rowScores(bands));
        bands = bestStretch(columnScores(rows));
        if (bands.first == bands.second || rows.first == rows.second)
            return {};
        int explained = 0;
        int denied = 0;
        Rows told;
        for (int y = rows.first; y < rows.second; ++y) {
            const int explainedBefore = explained;
            const int deniedBefore = denied;
            for (int band = bands.first; band < bands.second; ++band) {
                explained += m_scores[index(band, y)] > 0;
                denied += m_scores[index(band, y)] < 0;
            }
            told.add(explained > explainedBefore, denied > deniedBefore);
        }
        if (denied > explained || !told.agree())
            return {};
        const QRect rough(
            QPoint(bands.first * s_cell, rows.first),
            QPoint(std::min(bands.second * s_cell, m_after.width()) - 1, rows.second - 1));
        return withEdges(rough);
    }

private:
    size_t index(int band, int y) const
    {
        return static_cast<size_t>(y) * m_bands + static_cast<size_t>(band);
    }

    // 1 for what tells of the movement, -1 for what denies it.
    qint8 scoreOf(int band, int y) const
    {
        const int x = band * s_cell;
        const int count = std::min(s_cell, m_after.width() - x);
        const QRgb *is = row(m_after, y) + x;
        const bool stays = isSame(is, row(m_before, y) + x, count);
        const QPoint from = QPoint(x, y) + m_movement;
        if (from.y() >= 0 && from.y() < m_rows && from.x() >= 0 &&
            from.x() + count <= m_before.width()) {
            const bool follows = isSame(is, row(m_before, from.y()) + from.x(), count);
            return qint8(follows ? (stays ? 0 : 1) : -1);
        }
        // What comes into view is something else than what was there, but for plain ground.
        if (!stays)
            return 1;
        const bool turns = m_movement.x() == 0
                               ? y > 0 && !isSame(is, row(m_after, y - 1) + x, count)
                               : count > 1 && !isSame(is, is + 1, count - 1);
        return turns ? -1 : 0;
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

    // A cell holds both the end of what moves and the beginning of a scroll bar: the sides are told
    // by single columns.
    QRect withEdges(const QRect &rough) const
    {
        constexpr int inside = 3 * s_cell;
        const int width = m_after.width();
        const int top = std::max(rough.top(), rough.top() - m_movement.y());
        const int bottom = std::min(rough.bottom(), rough.bottom() - m_movement.y());
        const int reach = std::min(inside, rough.width() / 2);
        const int first = std::max(0, -m_movement.x());
        const int last = std::min(width, width - m_movement.x()) - 1;
        std::vector<int> denied(width);
        std::vector<int> told(width);
        for (int y = top; y <= bottom; ++y) {
            const QRgb *is = row(m_after, y);
            const QRgb *was = row(m_before, y);
            const QRgb *from = row(m_before, y + m_movement.y()) + m_movement.x();
            for (int x = first; x <= last; ++x) {
                if (x == rough.left() + reach)
                    x = std::max(x, rough.right() + 1 - reach);
                denied[x] += is[x] != from[x];
                told[x] += is[x] == from[x] && is[x] != was[x];
            }
        }
        const auto denies = [&](int x) {
            return x >= first && x <= last && denied[x] > 1 && denied[x] > told[x];
        };
        int left = rough.left() + reach;
        while (left > 0 && !denies(left - 1))
            --left;
        int right = rough.right() - reach;
        while (right < width - 1 && !denies(right + 1))
            ++right;
        // Of what stays, the frame lies nearer.
        const QRgb ground = commonColour(m_after, rough);
        const auto isFrame = [&](int x) {
            const QRgb colour = row(m_after, rough.top())[x];
            for (int y = rough.top(); y <= rough.bottom(); ++y) {
                if (row(m_after, y)[x] != colour)
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

    const QImage &m_before;
    const QImage &m_after;
    QPoint m_movement;
    int m_bands;
    int m_rows;
    std::vector<qint8> m_scores;
};

// Calls `run` with the landmarks of `sought` that come in `known` too, where neither has many of
// the kind.
template<typename Run>
void forCommon(const std::vector<Landmark> &known, const std::vector<Landmark> &sought,
               const Run &run)
{
    const auto endOf = [](const std::vector<Landmark> &all, size_t from) {
        size_t end = from;
        while (end < all.size() && all[end].hash == all[from].hash)
            ++end;
        return end;
    };
    for (size_t i = 0, j = 0; i < known.size() && j < sought.size();) {
        if (known[i].hash != sought[j].hash) {
            ++(known[i].hash < sought[j].hash ? i : j);
            continue;
        }
        const size_t lastKnown = endOf(known, i);
        const size_t lastSought = endOf(sought, j);
        if (lastKnown - i <= s_mostEqual && lastSought - j <= s_mostEqual) {
            for (size_t a = i; a < lastKnown; ++a) {
                for (size_t b = j; b < lastSought; ++b)
                    run(known[a], sought[b]);
            }
        }
        i = lastKnown;
        j = lastSought;
    }
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
        const QRect part = MovedCells(m_last, view, *movement).box();
        const Share share = shareOf(part);
        isHalfDrawn = share == Share::Some;
        if (share == Share::Most) {
            learn(part);
            // Only now is it known what of the first view is content.
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

// Against the last view.
std::optional<QPoint> Mosaic::movementOf(const QImage &view,
                                         const std::vector<Landmark> &landmarks) const
{
    Votes votes;
    const int furthestX = view.width() * (s_sharedPart - 1) / s_sharedPart;
    const int furthestY = view.height() * (s_sharedPart - 1) / s_sharedPart;
    forCommon(m_lastLandmarks, landmarks, [&](const Landmark &was, const Landmark &is) {
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

// Against all that has been painted.
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
    // Plain ground would be explained anywhere.
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

// Whether nothing but spots has changed: a caret, a picture that came late, a row under the
// pointer. In a listing that has gone by as many lines as it has numbers, something has changed in
// each.
bool Mosaic::isInPlace(const QImage &view, const std::vector<Landmark> &landmarks) const
{
    constexpr int mostSpots = 8;  // one above the other
    constexpr int gap = 4;        // rows within one
    const QRect part = hasMoved() ? usualPart() : view.rect();
    int changed = 0;
    int spots = 0;
    int last = -gap;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        if (isSame(row(view, y) + part.left(), row(m_last, y) + part.left(), part.width()))
            continue;
        ++changed;
        spots += y - last > gap;
        last = y;
    }
    const Witnesses told = witnesses(m_last, view, {}, landmarks, part, {});
    return changed * 2 <= part.height() && spots <= mostSpots && told.agree >= told.deny;
}

// How much of what usually moves has moved. A program may be seen when it has drawn but half of its
// view, and a spot that moves by itself is no movement of the view.
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

// What stays in its place may come later, as a heading does that stays at the top once it is there,
// and a single look may be mistaken about it.
QRect Mosaic::usualPart() const
{
    const auto usual = [this](int (QRect::*edge)() const) {
        std::vector<int> edges;
        for (const QRect &part : m_parts)
            edges.push_back((part.*edge)());
        std::nth_element(edges.begin(), edges.begin() + std::ssize(edges) / 2, edges.end());
        return edges[edges.size() / 2];
    };
    return {QPoint(usual(&QRect::left), usual(&QRect::top)),
            QPoint(usual(&QRect::right), usual(&QRect::bottom))};
}

void Mosaic::learn(const QRect &part)
{
    if (m_parts.size() == s_memory)
        m_parts.erase(m_parts.begin());
    m_parts.push_back(part);
}

// Takes the last view's place as that of `view`.
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
    m_isFull = !m_plane.paint(m_at, view, shown) || m_isFull;
    m_extent |= area;
    for (const Side side : {Top, Bottom, Left, Right})
        paintStrip(side, view, shown);
}

// What may be painted of an area.
QRect Mosaic::withinLimits(const QRect &area)
{
    const QRect all = m_extent | area;
    const int width = std::min(all.width(), m_sideLimit);
    const int height = static_cast<int>(
        std::min<qint64>({all.height(), m_sideLimit, m_areaLimit / std::max(width, 1)}));
    if (QSize(width, height) == all.size())
        return area;
    m_isFull = true;
    // It grows where the limits leave it room: on the one side that the area is on.
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

void Mosaic::paintStrip(Side side, const QImage &view, const QRect &part)
{
    const bool isAcross = side == Top || side == Bottom;
    const QRect place = part.translated(m_at);
    const bool isOutermost = side == Top      ? place.top() == m_extent.top()
                             : side == Bottom ? place.bottom() == m_extent.bottom()
                             : side == Left   ? place.left() == m_extent.left()
                                              : place.right() == m_extent.right();
    QRect from = part;
    if (side == Top)
        from = QRect(part.x(), 0, part.width(), part.y());
    else if (side == Bottom)
        from = QRect(QPoint(part.x(), part.bottom() + 1), QPoint(part.right(), view.height() - 1));
    else if (side == Left)
        from = QRect(0, part.y(), part.x(), part.height());
    else
        from = QRect(QPoint(part.right() + 1, part.y()), QPoint(view.width() - 1, part.bottom()));
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
    // Along the side it lies as the content does, across it begins at 0.
    const QPoint at = isAcross ? QPoint(m_at.x(), -from.y()) : QPoint(-from.x(), m_at.y());
    const QRect to = from.translated(at);
    const QRect known = strip->extent & to;
    if (known != to && !known.isEmpty() && strip->follows) {
        const QImage was = strip->plane.read(known);
        int turns = 0;
        int other = 0;
        for (int y = 0; y < was.height(); ++y) {
            const QRgb *is = row(view, known.y() + y - at.y()) + known.x() - at.x();
            for (int x = 1; x < was.width(); ++x) {
                turns += is[x] != is[x - 1];
                other += is[x] != row(was, y)[x];
            }
        }
        strip->follows = other * s_decides <= turns;
    }
    if (!strip->follows || (known == to && !isOutermost))
        return;
    // What is known has been seen where it belongs.
    for (const QRect &piece : isOutermost ? QRegion(to) : QRegion(to) - known)
        strip->plane.paint(at, view, piece.translated(-at));
    strip->extent |= to;
}

bool Mosaic::reachesAlong(Side side) const
{
    const Strip *strip = m_strips.at(side).get();
    if (!strip)
        return false;
    return side == Top || side == Bottom ? strip->extent.left() <= m_extent.left() &&
                                               strip->extent.right() >= m_extent.right()
                                         : strip->extent.top() <= m_extent.top() &&
                                               strip->extent.bottom() >= m_extent.bottom();
}

QImage Mosaic::overview(QSize box) const
{
    if (!hasMoved())
        return sampledOverview(m_last.size(), box,
                               [this](int x, int y) { return row(m_last, y)[x]; });
    return sampledOverview(m_extent.size(), box, [this](int x, int y) {
        return m_plane.pixel(m_extent.topLeft() + QPoint(x, y));
    });
}

QImage Mosaic::finish()
{
    if (!hasMoved())
        return std::exchange(m_last, {});
    std::array<int, 4> thickness{};
    for (const Side side : {Top, Bottom, Left, Right}) {
        if (reachesAlong(side)) {
            const QRect &extent = m_strips.at(side)->extent;
            thickness.at(side) = side == Top || side == Bottom ? extent.height() : extent.width();
        }
    }
    const QRect inside(QPoint(thickness[Left], thickness[Top]), m_extent.size());
    const QSize size(inside.x() + inside.width() + thickness[Right],
                     inside.y() + inside.height() + thickness[Bottom]);
    // Memory that is zero, and none until it is written to.
    const qsizetype rowBytes = qsizetype{size.width()} * qsizetype{sizeof(QRgb)};
    auto *pixels = static_cast<uchar *>(std::calloc(static_cast<size_t>(size.height()), rowBytes));
    if (!pixels)
        return {};
    QImage result(pixels, size.width(), size.height(), rowBytes,
                  QImage::Format_ARGB32_Premultiplied, std::free, pixels);
    m_plane.moveTo(result, inside.topLeft(), m_extent);
    for (const Side side : {Top, Bottom, Left, Right}) {
        if (thickness.at(side) == 0)
            continue;
        Strip &strip = *m_strips.at(side);
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
        strip.plane.moveTo(result, to, from);
    }
    for (const bool isRight : {false, true}) {
        for (const bool isBottom : {false, true}) {
            const QSize corner(thickness.at(isRight ? Right : Left),
                               thickness.at(isBottom ? Bottom : Top));
            const QPoint from(isRight ? m_last.width() - corner.width() : 0,
                              isBottom ? m_last.height() - corner.height() : 0);
            const QPoint to(isRight ? size.width() - corner.width() : 0,
                            isBottom ? size.height() - corner.height() : 0);
            for (int y = 0; y < corner.height(); ++y)
                std::memcpy(result.scanLine(to.y() + y) + sizeof(QRgb) * to.x(),
                            row(m_last, from.y() + y) + from.x(), sizeof(QRgb) * corner.width());
        }
    }
    QRgb all = ~QRgb{0};
    for (int y = 0; y < size.height(); ++y) {
        const QRgb *line = row(result, y);
        all = std::accumulate(line, line + size.width(), all, std::bit_and<>());
    }
    if (qAlpha(all) == 0xff)
        result.reinterpretAsFormat(QImage::Format_RGB32);
    return result;
}
