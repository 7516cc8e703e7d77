#include "helper/movement.h"

#include "helper/pixelrows.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <numeric>
#include <optional>
#include <unordered_map>
#include <vector>

namespace {

// The width of a cell in pixels. Bands are narrow, so that a scroll bar or a caret does not affect
// the text beside it.
constexpr int s_band = 16;
// Rows that are hashed together, so that the hashes of a band are written one cache line at a time.
constexpr int s_block = 8;
// The number of matches that are unique in their band; fewer could be coincidence.
constexpr int s_enough = 10;
// A cell that contradicts a movement counts as much as this many cells that support it.
constexpr int s_against = 3;

// The number of spots that can't be explained by carets.
constexpr int s_manySpots = 4;
// The height of a horizontal scroll bar over the content.
constexpr int s_flat = 12;

using Hash = quint32;

// A sum of products of two pixels, each with a different odd number added: one multiplication for
// two pixels, without a dependency on the previous pair.
Hash hashOf(const QRgb *pixels, QRgb mask)
{
    static constexpr std::array<quint32, s_band> s_keys{
        0x9e3779b1, 0x85ebca77, 0xc2b2ae3d, 0x27d4eb2f, 0x165667b1, 0xd6e8feb9,
        0xcc9e2d51, 0x1b873593, 0xe6546b65, 0xa0761d65, 0xe7037ed1, 0x8ebc6af1,
        0x589965cd, 0x1d8e4e27, 0xeb44accb, 0x71a3f2c5};
    quint64 sum = 0;
    for (int pair = 0; pair < s_band; pair += 2) {
        const quint32 first = (pixels[pair] & mask) + s_keys[pair];
        const quint32 second = (pixels[pair + 1] & mask) + s_keys[pair + 1];
        sum += quint64{first} * second;
    }
    return static_cast<Hash>((sum * 0x9e3779b97f4a7c15) >> 32);
}

/// The hashes of all cells of a picture; a cell is a row of a band. The hashes of a band are
/// contiguous.
class Cells
{
public:
    Cells(const QImage &picture, QRgb mask)
        : m_rows(picture.height()), m_bands((picture.width() + s_band - 1) / s_band),
          m_hashes(static_cast<size_t>(m_rows) * m_bands)
    {
        const ptrdiff_t whole = picture.width() / s_band;
        const size_t rest = picture.width() % s_band;
        for (int top = 0; top < m_rows; top += s_block) {
            const int bottom = std::min(top + s_block, m_rows);
            std::array<const QRgb *, s_block> lines{};
            for (int y = top; y < bottom; ++y)
                lines[y - top] = pixelRow(picture, y);
            for (ptrdiff_t band = 0; band < whole; ++band) {
                Hash *to = m_hashes.data() + band * m_rows;
                for (int y = top; y < bottom; ++y)
                    to[y] = hashOf(lines[y - top] + band * s_band, mask);
            }
            for (int y = top; rest && y < bottom; ++y) {
                std::array<QRgb, s_band> last{};
                std::copy_n(lines[y - top] + whole * s_band, rest, last.begin());
                m_hashes[whole * m_rows + y] = hashOf(last.data(), mask);
            }
        }
    }

    int bands() const { return m_bands; }
    const Hash *band(int band) const
    {
        return m_hashes.data() + static_cast<size_t>(band) * m_rows;
    }

private:
    int m_rows;
    int m_bands;
    std::vector<Hash> m_hashes;
};

/// How well a distance explains the changes.
struct Fit {
    int rows = 0;
    int first = 0;  ///< the first row of the later picture that certainly moved
    int last = 0;   ///< the row after the last one
    int explained = 0;
    int unique = 0;   ///< moved turns that both pictures have only once
    int telling = 0;  ///< moved turns
    int denying = 0;  ///< turns that changed in another way
    std::vector<int> bands{};
};

// How the cells of a band or a row support a distance.
struct Counts {
    int same = 0;     ///< changed cells that match the distance
    int other = 0;    ///< changed cells that don't match
    int telling = 0;  ///< cells of `same` that differ from the cell above, so they are not blank
    int denying = 0;  ///< cells of `other` that differ from the cell above
};

/// Compares two pictures of a view cell by cell.
class Pair
{
public:
    Pair(const QImage &before, const QImage &after)
        : m_before(before), m_after(after), m_mask(visibleBits(before) & visibleBits(after)),
          m_height(before.height()), m_old(before, m_mask), m_new(after, m_mask), m_same(m_height),
          m_other(m_height), m_telling(m_height), m_fresh(m_height), m_match(m_height)
    {
        const size_t size = static_cast<size_t>(m_height);
        m_unchangedFrom = 0;
        for (int band = 0; band < m_old.bands(); ++band) {
            const Hash *was = m_old.band(band);
            const Hash *is = m_new.band(band);
            if (std::memcmp(was, is, size * sizeof(Hash)) == 0)
                continue;
            Band changes{.index = band,
                         .changed = std::vector<quint8>(size),
                         .turn = std::vector<quint8>(size)};
            for (int y = 0; y < m_height; ++y)
                changes.changed[y] = was[y] != is[y];
            for (int y = 1; y < m_height; ++y)
                changes.turn[y] = is[y] != is[y - 1];
            int end = m_height;
            while (!changes.changed[end - 1])
                --end;
            m_unchangedFrom = std::max(m_unchangedFrom, end);
            m_bands.push_back(std::move(changes));
        }
    }

    bool changed() const { return !m_bands.empty(); }
    bool isStill() const;
    std::vector<Fit> fits(int expected);
    Movement movement(const Fit &fit) const;
    /// The number of turns that moved by a fit's distance and that both pictures have only once,
    /// computed over all moved bands together: in a listing whose lines differ in a digit, no
    /// single band has any.
    int uniqueTurns(Fit fit);

private:
    struct Band {
        int index = 0;
        std::vector<quint8> changed{};  ///< for each row: differs between the pictures
        /// For each row of the later picture: differs from the row above.
        std::vector<quint8> turn{};
    };

    bool wentAlong(int index, const Fit &fit) const;
    bool isFlatBar(const QRect &spot) const;
    bool tellsBeside() const;
    std::optional<std::vector<QRect>> spots() const;
    std::vector<int> candidates(int expected);
    void vote(const Band &band);
    void compare(const Band &band, int distance);
    void tally(const std::vector<int> &bands, int distance);
    std::pair<int, int> bestRun(int from, int to) const;
    std::pair<int, int> solidPart(int distance) const;
    Counts countIn(int band, int distance, int first, int last);
    int unexplained(const Fit &fit) const;
    std::optional<Fit> fit(int distance, bool inSpots);
    std::pair<int, int> movedColumns(const Band &band, const Fit &fit) const;

    const QImage &m_before;
    const QImage &m_after;
    QRgb m_mask;
    int m_height;
    Cells m_old;
    Cells m_new;
    std::vector<Band> m_bands{};  ///< bands with changes
    int m_unchangedFrom = 0;      ///< from this row on, both pictures are equal
    std::vector<int> m_votes{};   ///< by distance
    std::vector<int> m_unique{};  ///< by distance; only turns that both pictures have once

    // For each row of the later picture, for the distance that is being tested.
    std::vector<quint16> m_same;
    std::vector<quint16> m_other;
    std::vector<quint16> m_telling;
    /// Cells that changed in place and are not explained by the distance.
    std::vector<quint16> m_fresh;
    std::vector<quint8> m_match;  ///< for one band
};

// Whether a spot may be a horizontal scroll bar that has appeared or disappeared at the bottom of
// the view: the background above and below it is the same.
bool Pair::isFlatBar(const QRect &spot) const
{
    if (spot.height() > s_flat || spot.top() * 2 < m_height || spot.bottom() + 1 >= m_height)
        return false;
    for (int band = spot.left(); band <= spot.right(); ++band) {
        if (m_new.band(band)[spot.top() - 1] != m_new.band(band)[spot.bottom() + 1])
            return false;
    }
    return true;
}

// The rectangles of all changes, in bands and rows. No value if one is too large for a spot in a
// view that did not scroll.
std::optional<std::vector<QRect>> Pair::spots() const
{
    constexpr int gap = 16;
    const int tallest = std::max(24, m_height / 4);
    const int widest = std::max(2, m_old.bands() / 4);
    std::vector<quint8> rows(m_height);
    for (const Band &band : m_bands)
        for (int y = 0; y < m_height; ++y)
            rows[y] |= band.changed[y];
    std::vector<QRect> result;
    for (int top = 0; top < m_height; ++top) {
        if (!rows[top])
            continue;
        int bottom = top;
        for (int y = top; y < m_height && y <= bottom + gap; ++y)
            if (rows[y])
                bottom = y;
        QRect spot;
        for (const Band &band : m_bands) {
            const auto end = band.changed.begin() + bottom + 1;
            if (std::find(band.changed.begin() + top, end, 1) == end)
                continue;
            if (spot.isEmpty() || band.index > spot.right() + 2) {
                if (!spot.isEmpty())
                    result.push_back(spot);
                spot = QRect(QPoint(band.index, top), QPoint(band.index, bottom));
            }
            spot.setRight(band.index);
            if ((spot.width() > widest && !isFlatBar(spot)) || spot.height() > tallest)
                return {};
        }
        result.push_back(spot);
        top = bottom;
    }
    return result;
}

// Whether bands without changes could prove a movement, because they have unique turns. If only the
// names below rows of icons differ, they have none.
bool Pair::tellsBeside() const
{
    std::vector<quint64> rows(m_height);
    auto next = m_bands.begin();
    for (int index = 0; index < m_new.bands(); ++index) {
        if (next != m_bands.end() && next->index == index) {
            ++next;
            continue;
        }
        const Hash *cells = m_new.band(index);
        for (int y = 0; y < m_height; ++y)
            rows[y] = (rows[y] ^ cells[y]) * 0x9e3779b97f4a7c15;
    }
    std::unordered_map<quint64, int> seen;
    for (int y = 1; y < m_height; ++y)
        seen[rows[y - 1] * 0x85ebca77U + rows[y]] += rows[y] != rows[y - 1];
    return std::count_if(seen.begin(), seen.end(),
                         [](const auto &turn) { return turn.second == 1; }) >= s_enough;
}

// Whether nothing scrolled. A single word on a page may have scrolled away. So a change larger than
// a caret counts as a spot only if enough turns above or below it stayed that are unique, unlike
// the lines of a table. For a flat bar fewer are enough.
bool Pair::isStill() const
{
    const auto places = spots();
    if (!places)
        return false;
    const auto isCaret = [](const QRect &spot) { return spot.width() <= 2 && spot.height() <= 32; };
    if (std::ssize(*places) >= s_manySpots && !tellsBeside())
        return false;
    return std::all_of(places->begin(), places->end(), [&](const QRect &spot) {
        if (isCaret(spot))
            return true;
        std::vector<quint8> stayed(m_height);
        for (int band = spot.left(); band <= spot.right(); ++band) {
            const Hash *was = m_old.band(band);
            const Hash *is = m_new.band(band);
            std::unordered_map<quint64, int> seen;
            for (int y = 1; y < m_height; ++y)
                ++seen[quint64{is[y - 1]} << 32 | is[y]];
            for (int y = 1; y < m_height; ++y)
                stayed[y] |= was[y] == is[y] && was[y - 1] == is[y - 1] && is[y] != is[y - 1] &&
                             seen[quint64{is[y - 1]} << 32 | is[y]] == 1;
        }
        const int share = places->size() == 1 && isFlatBar(spot) ? 32 : 8;
        return std::count(stayed.begin(), stayed.end(), 1) * share >= m_height;
    });
}

// The turns of a band, by what they turn from and to, each with the last of its rows first.
class TurnTable
{
public:
    struct Slot {
        Hash key = 0;
        int head = -1;
        int before = 0;
        int after = 0;
    };

    explicit TurnTable(int height)
    {
        while ((1 << m_bits) < height * 2)
            ++m_bits;
        m_slots.resize(size_t{1} << m_bits);
    }

    int find(Hash key) const
    {
        size_t at = (key * 0x9e3779b1U) >> (32 - m_bits);
        while (m_slots[at].before && m_slots[at].key != key)
            at = (at + 1) & (m_slots.size() - 1);
        return static_cast<int>(at);
    }
    Slot &operator[](int at) { return m_slots[at]; }

private:
    int m_bits = 4;
    std::vector<Slot> m_slots;
};

// Each place of the later picture where a band turns from one cell to another one votes for the
// distances to all such places of the earlier picture.
void Pair::vote(const Band &band)
{
    constexpr int many = 64;

    const Hash *was = m_old.band(band.index);
    const Hash *is = m_new.band(band.index);
    TurnTable table(m_height);
    std::vector<int> next(m_height, -1);
    std::vector<int> slotOf(m_height, -1);
    const auto turnAt = [](const Hash *cells, int y) {
        return cells[y - 1] * 0x85ebca77U + cells[y];
    };

    for (int y = m_height - 1; y > 0; --y) {
        if (was[y] == was[y - 1])
            continue;
        const Hash key = turnAt(was, y);
        TurnTable::Slot &slot = table[table.find(key)];
        slot.key = key;
        next[y] = slot.head;
        slot.head = y;
        ++slot.before;
    }
    for (int y = 1; y < m_height; ++y) {
        if (!band.turn[y])
            continue;
        const int at = table.find(turnAt(is, y));
        if (table[at].before) {
            slotOf[y] = at;
            ++table[at].after;
        }
    }
    for (int y = 1; y < m_height; ++y) {
        if (slotOf[y] < 0)
            continue;
        const TurnTable::Slot &slot = table[slotOf[y]];
        // Frequent turns are sampled, because they can't decide anyway.
        const int weight = slot.before > many ? 8 : 1;
        if (weight > 1 && y % weight)
            continue;
        const bool unique = slot.before == 1 && slot.after == 1;
        const bool changed = band.changed[y] | band.changed[y - 1];
        for (int old = slot.head; old >= 0; old = next[old]) {
            if (old <= y || !(changed || band.changed[old] || band.changed[old - 1]))
                continue;
            m_votes[old - y] += weight;
            m_unique[old - y] += unique;
        }
    }
}

std::vector<int> Pair::candidates(int expected)
{
    constexpr int most = 24;
    m_votes.assign(m_height, 0);
    m_unique.assign(m_height, 0);
    for (const Band &band : m_bands)
        vote(band);

    std::vector<int> distances(std::max(0, m_height - 1));
    std::iota(distances.begin(), distances.end(), 1);
    std::vector<int> result;
    const auto takeBest = [&](const std::vector<int> &votes, int share) {
        const auto count = std::min<ptrdiff_t>(most, std::ssize(distances));
        std::partial_sort(
            distances.begin(), distances.begin() + count, distances.end(),
            [&](int a, int b) { return votes[a] != votes[b] ? votes[a] > votes[b] : a < b; });
        for (ptrdiff_t i = 0; i < count; ++i) {
            const int votesFor = votes[distances[i]];
            if (votesFor > 0 && votesFor * share >= votes[distances[0]])
                result.push_back(distances[i]);
        }
    };
    takeBest(m_votes, 8);
    takeBest(m_unique, 4);
    if (expected > 0 && expected < m_height)
        result.push_back(expected);
    std::sort(result.begin(), result.end());
    result.erase(std::unique(result.begin(), result.end()), result.end());
    return result;
}

void Pair::compare(const Band &band, int distance)
{
    const Hash *was = m_old.band(band.index) + distance;
    const Hash *is = m_new.band(band.index);
    quint8 *match = m_match.data();
    const int rows = m_height - distance;
    for (int y = 0; y < rows; ++y)
        match[y] = was[y] == is[y];
}

void Pair::tally(const std::vector<int> &bands, int distance)
{
    for (auto *counts : {&m_same, &m_other, &m_telling, &m_fresh})
        std::fill(counts->begin(), counts->end(), quint16{0});
    const int rows = m_height - distance;
    const quint8 *match = m_match.data();
    for (const int index : bands) {
        const Band &band = m_bands[index];
        compare(band, distance);
        const quint8 *changed = band.changed.data();
        const quint8 *later = changed + distance;
        const quint8 *turn = band.turn.data();
        quint16 *same = m_same.data();
        quint16 *other = m_other.data();
        quint16 *telling = m_telling.data();
        quint16 *fresh = m_fresh.data();
        for (int y = 0; y < rows; ++y) {
            const quint8 any = changed[y] | later[y];
            same[y] += match[y] & any;
            other[y] += (match[y] ^ 1) & any;
            fresh[y] += (match[y] ^ 1) & changed[y];
        }
        for (int y = 1; y < rows; ++y)
            telling[y] += turn[y] & match[y] & match[y - 1] &
                          (changed[y] | changed[y - 1] | later[y] | later[y - 1]);
        for (int y = rows; y < m_height; ++y)
            fresh[y] += changed[y];
    }
}

// The range of rows from `from` up to but not including `to` that supports the distance most; it
// begins and ends with telling rows. Empty if there is none.
std::pair<int, int> Pair::bestRun(int from, int to) const
{
    qint64 best = 0;
    qint64 sum = 0;
    int first = from;
    int bestFirst = from;
    int bestLast = from;
    for (int y = from; y < to; ++y) {
        if (sum <= 0) {
            sum = 0;
            first = y;
        }
        sum += m_same[y] + m_telling[y] - s_against * m_other[y];
        if (sum > best) {
            best = sum;
            bestFirst = first;
            bestLast = y + 1;
        }
    }
    const auto tells = [&](int y) { return m_telling[y] > 0; };
    while (bestFirst < bestLast && !tells(bestFirst))
        ++bestFirst;
    while (bestFirst < bestLast && !tells(bestLast - 1))
        --bestLast;
    return {bestFirst, bestLast};
}

// The rows that moved by the distance. They may be interrupted by a highlighted row or an
// animation, so further ranges above and below are added if they support the distance themselves.
std::pair<int, int> Pair::solidPart(int distance) const
{
    const auto isEmpty = [](const std::pair<int, int> &run) { return run.first == run.second; };
    const int rows = m_height - distance;
    std::pair<int, int> part = bestRun(0, rows);
    for (auto above = bestRun(0, part.first); !isEmpty(above); above = bestRun(0, part.first))
        part.first = above.first;
    for (auto below = bestRun(part.second, rows); !isEmpty(below);
         below = bestRun(part.second, rows))
        part.second = below.second;
    // The last turn may be the border between the content and an equally blank footer.
    return {part.first, part.second - 1};
}

Counts Pair::countIn(int index, int distance, int first, int last)
{
    const Band &band = m_bands[index];
    compare(band, distance);
    const Hash *was = m_old.band(band.index);
    Counts counts;
    for (int y = first; y < last; ++y) {
        const int any = band.changed[y] | band.changed[y + distance];
        counts.same += m_match[y] & any;
        counts.other += (m_match[y] ^ 1) & any;
    }
    for (int y = std::max(first, 1); y <= last; ++y) {
        const int any = band.changed[y] | band.changed[y - 1] | band.changed[y + distance] |
                        band.changed[y + distance - 1];
        counts.telling += band.turn[y] & m_match[y] & m_match[y - 1] & any;
        counts.denying +=
            (band.turn[y] | (was[y + distance] != was[y + distance - 1])) & (m_match[y] ^ 1) & any;
    }
    return counts;
}

// Counts the changed cells above the moved rows, and those below the view's lower edge. That edge
// is unknown, since between the moved rows and the edge any new content is possible; the edge with
// the fewest changed cells is used.
int Pair::unexplained(const Fit &fit) const
{
    const int above = std::accumulate(m_fresh.begin(), m_fresh.begin() + fit.first, 0);
    int edge = fit.last + fit.rows;
    int below = 0;
    std::vector<int> changedFrom(m_height + 1);
    for (int y = m_height - 1; y >= edge; --y) {
        int changed = 0;
        for (const int band : fit.bands)
            changed += m_bands[band].changed[y];
        changedFrom[y] = changedFrom[y + 1] + changed;
    }
    int least = changedFrom[edge];
    for (; edge < m_height; ++edge) {
        below += m_fresh[edge - fit.rows];
        least = std::min(least, below + changedFrom[edge + 1]);
    }
    return above + least;
}

std::optional<Fit> Pair::fit(int distance, bool inSpots)
{
    Fit fit{.rows = distance, .unique = m_unique[distance]};
    // The first round uses all rows, the second one the moved rows only, because rows above and
    // below may have changed independently.
    fit.last = m_height - distance - 1;
    const auto takeBands = [&](int weight) {
        fit.bands.clear();
        for (int band = 0; band < static_cast<int>(m_bands.size()); ++band) {
            const Counts counts = countIn(band, distance, fit.first, fit.last);
            if (counts.telling > 0 && counts.same * weight >= counts.other)
                fit.bands.push_back(band);
        }
    };
    for (int round = 0; round < 2; ++round) {
        takeBands(1);
        // In a low view most of the rows have scrolled in or out after a large step, so more
        // contradiction is accepted.
        if (fit.bands.empty())
            takeBands(s_against);
        tally(fit.bands, distance);
        std::tie(fit.first, fit.last) = solidPart(distance);
        if (fit.last <= fit.first)
            return {};
    }
    for (int band = 0; band < static_cast<int>(m_bands.size()); ++band) {
        const Counts counts = countIn(band, distance, fit.first, fit.last);
        fit.telling += counts.telling;
        fit.denying += counts.denying;
    }

    fit.explained = std::accumulate(m_same.begin() + fit.first, m_same.begin() + fit.last, 0);
    if (unexplained(fit) * 4 > fit.explained || fit.denying * s_against > fit.telling)
        return {};
    // A spot that seems to have moved must be unique.
    if (inSpots && fit.unique < s_enough)
        return {};
    return fit;
}

std::vector<Fit> Pair::fits(int expected)
{
    const bool inSpots = spots().has_value();
    std::vector<Fit> result;
    for (const int distance : candidates(expected))
        if (const auto found = fit(distance, inSpots))
            result.push_back(*found);
    return result;
}

// Whether a band moved. A band without changes may have moved as well, if its content repeats at
// that distance.
bool Pair::wentAlong(int index, const Fit &fit) const
{
    const auto found = std::find_if(m_bands.begin(), m_bands.end(),
                                    [index](const Band &band) { return band.index == index; });
    if (found != m_bands.end())
        return std::binary_search(fit.bands.begin(), fit.bands.end(),
                                  static_cast<int>(found - m_bands.begin()));
    const Hash *was = m_old.band(index) + fit.rows;
    const Hash *is = m_new.band(index);
    return std::equal(is + fit.first, is + fit.last, was + fit.first);
}

int Pair::uniqueTurns(Fit fit)
{
    // A band that also contains something that stayed, such as a title beside a table, would spoil
    // all rows, so it is left out.
    std::vector<int> clear;
    for (const int band : fit.bands) {
        const Counts counts = countIn(band, fit.rows, fit.first, fit.last);
        if (counts.other * s_against <= counts.same)
            clear.push_back(band);
    }
    if (std::ssize(clear) * 4 >= std::ssize(fit.bands) * 3)
        fit.bands = std::move(clear);
    constexpr quint64 factor = 0x9e3779b97f4a7c15;
    std::vector<quint64> was(m_height);
    std::vector<quint64> is(m_height);
    std::vector<quint8> changed(m_height);
    for (const int index : fit.bands) {
        const Band &band = m_bands[index];
        for (int y = 0; y < m_height; ++y)
            changed[y] |= band.changed[y];
    }
    for (int index = 0; index < m_old.bands(); ++index) {
        const Hash *old = m_old.band(index);
        const Hash *now = m_new.band(index);
        if (!wentAlong(index, fit))
            continue;
        for (int y = 0; y < m_height; ++y) {
            was[y] = (was[y] ^ old[y]) * factor;
            was[y] ^= was[y] >> 32;
            is[y] = (is[y] ^ now[y]) * factor;
            is[y] ^= is[y] >> 32;
        }
    }
    // Content that is drawn in blocks has each row several times, but each turn only once.
    const auto turnAt = [](const std::vector<quint64> &rows, int y) {
        return rows[y - 1] * factor + rows[y];
    };
    std::unordered_map<quint64, std::pair<int, int>> seen;
    for (int y = 1; y < m_height; ++y) {
        ++seen[turnAt(was, y)].first;
        ++seen[turnAt(is, y)].second;
    }
    int result = 0;
    for (int y = fit.first + 1; y < fit.last; ++y)
        result += changed[y] && turnAt(is, y) == turnAt(was, y + fit.rows) &&
                  seen[turnAt(is, y)] == std::pair(1, 1);
    return result;
}

// The first and the last column of a band in which pixels moved that are not background.
std::pair<int, int> Pair::movedColumns(const Band &band, const Fit &fit) const
{
    const int left = band.index * s_band;
    const int right = std::min(left + s_band, m_after.width());
    std::pair<int, int> columns{right, left - 1};
    const Hash *was = m_old.band(band.index) + fit.rows;
    const Hash *is = m_new.band(band.index);
    for (int y = fit.first; y <= fit.last; ++y) {
        if (y == 0 || !band.turn[y] || was[y] != is[y] || was[y - 1] != is[y - 1])
            continue;
        const QRgb *here = pixelRow(m_after, y);
        const QRgb *above = pixelRow(m_after, y - 1);
        const QRgb *hereBefore = pixelRow(m_before, y);
        const QRgb *aboveBefore = pixelRow(m_before, y - 1);
        for (int x = left; x < right; ++x) {
            if (((here[x] ^ above[x]) & m_mask) &&
                (((here[x] ^ hereBefore[x]) | (above[x] ^ aboveBefore[x])) & m_mask)) {
                columns.first = std::min(columns.first, x);
                columns.second = std::max(columns.second, x);
            }
        }
    }
    return columns;
}

Movement Pair::movement(const Fit &fit) const
{
    int left = m_after.width();
    int right = -1;
    for (const int band : fit.bands) {
        const auto [first, last] = movedColumns(m_bands[band], fit);
        left = std::min(left, first);
        right = std::max(right, last);
    }
    const int bottom = std::min(fit.last + fit.rows, m_unchangedFrom);
    return {.kind = Movement::Kind::Moved,
            .rows = fit.rows,
            .moved = QRect(QPoint(left, fit.first), QPoint(right, bottom - 1)),
            .bottom = bottom};
}

std::vector<quint64> rowHashes(const Cells &cells, int rows)
{
    constexpr quint64 factor = 0x9e3779b97f4a7c15;
    std::vector<quint64> result(static_cast<size_t>(rows));
    for (int index = 0; index < cells.bands(); ++index) {
        const Hash *band = cells.band(index);
        for (size_t y = 0; y < result.size(); ++y) {
            result[y] = (result[y] ^ band[y]) * factor;
            result[y] ^= result[y] >> 32;
        }
    }
    return result;
}

// In a table with similar cells no row may be unique, but a wrong distance is contradicted in many
// cells. Returns the fit with hardly any contradiction if all others have many times as much, else
// null.
const Fit *leastDenied(const std::vector<Fit> &fits)
{
    constexpr int hardly = 12;
    constexpr int least = 16;  // rows
    constexpr int much = 4;
    const auto share = [](const Fit &fit) { return 1.0 * fit.denying / std::max(fit.telling, 1); };
    const Fit &best = *std::min_element(
        fits.begin(), fits.end(), [&](const Fit &a, const Fit &b) { return share(a) < share(b); });
    const double limit = much * std::max(share(best), 1.0 / (hardly * hardly));
    const bool isClear = std::all_of(fits.begin(), fits.end(), [&](const Fit &fit) {
        return &fit == &best || share(fit) >= limit;
    });
    // The border of a table matches the border of any other table.
    const bool isHigh = best.last - best.first >= least;
    return isClear && isHigh && share(best) * hardly <= 1 ? &best : nullptr;
}

}  // namespace

Movement findMovement(const QImage &before, const QImage &after, int expected)
{
    if (before.isNull() || before.size() != after.size())
        return {};
    const QImage earlier = withPixels(before);
    const QImage later = withPixels(after);
    Pair pair(earlier, later);
    if (!pair.changed())
        return {.kind = Movement::Kind::Still};

    const std::vector<Fit> fits = pair.fits(expected);
    if (fits.empty())
        return {.kind = pair.isStill() ? Movement::Kind::Still : Movement::Kind::Lost};
    // Two parts that moved by different distances contradict each other, so neither distance is
    // certain.
    const auto isCertain = [](int unique, const Fit &fit) {
        return unique >= std::max(s_enough, fit.denying * 2);
    };
    const Fit &best = *std::max_element(fits.begin(), fits.end(), [](const Fit &a, const Fit &b) {
        return a.unique != b.unique ? a.unique < b.unique : a.explained < b.explained;
    });
    if (isCertain(best.unique, best))
        return pair.movement(best);
    const Fit *clearest = nullptr;
    int most = 0;
    for (const Fit &fit : fits) {
        const int unique = pair.uniqueTurns(fit);
        if (unique <= most)
            continue;
        clearest = &fit;
        most = unique;
    }
    if (clearest && isCertain(most, *clearest))
        return pair.movement(*clearest);
    for (const Fit &fit : fits)
        if (fit.rows == expected)
            return pair.movement(fit);
    if (const Fit *fit = leastDenied(fits))
        return pair.movement(*fit);
    return {.kind = Movement::Kind::Doubtful};
}

namespace {

// A picture that is white where a pixel differs from its left neighbour.
QImage edgesOf(const QImage &picture)
{
    const QImage from = withPixels(picture);
    const QRgb mask = visibleBits(from);
    QImage result(from.size(), QImage::Format_RGB32);
    for (int y = 0; y < result.height(); ++y) {
        const QRgb *pixels = pixelRow(from, y);
        auto *to = reinterpret_cast<QRgb *>(result.scanLine(y));
        to[0] = 0;
        for (int x = 1; x < result.width(); ++x)
            to[x] = (pixels[x] ^ pixels[x - 1]) & mask ? RGB_MASK : 0;
    }
    return result;
}

}  // namespace

Movement findByEdges(const QImage &before, const QImage &after, int expected)
{
    const Movement movement = findMovement(before, after, expected);
    if (movement.kind != Movement::Kind::Lost || before.size() != after.size() || before.isNull())
        return movement;
    return findMovement(edgesOf(before), edgesOf(after), expected);
}

namespace {

// Whether a third of the unique rows of a view are in the later view, at most `slack` rows away.
// Only unique rows count, because in a listing or a table most cells of a scrolled view look as if
// they had stayed.
bool areThere(const QImage &before, const QImage &after, int slack)
{
    if (before.isNull() || before.size() != after.size())
        return false;
    const QImage earlier = withPixels(before);
    const QImage later = withPixels(after);
    const QRgb mask = visibleBits(earlier) & visibleBits(later);
    const std::vector<quint64> was = rowHashes(Cells(earlier, mask), before.height());
    const std::vector<quint64> is = rowHashes(Cells(later, mask), before.height());
    std::unordered_map<quint64, int> seen;
    for (const quint64 hash : was)
        ++seen[hash];
    int unique = 0;
    int kept = 0;
    const int rows = before.height();
    for (int y = 0; y < rows; ++y) {
        if (seen[was[y]] != 1)
            continue;
        ++unique;
        const auto first = is.begin() + std::max(y - slack, 0);
        const auto last = is.begin() + std::min(y + slack + 1, rows);
        kept += std::find(first, last, was[y]) != last;
    }
    return unique > 0 && kept * 3 >= unique;
}

}  // namespace

bool isInPlace(const QImage &before, const QImage &after) { return areThere(before, after, 0); }

bool isNearPlace(const QImage &before, const QImage &after) { return areThere(before, after, 1); }
