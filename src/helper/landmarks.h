#pragma once

#include <QImage>
#include <QPoint>

#include <array>
#include <vector>

/// A small patch of a picture that is identified by its pixels only, so the same patch is found
/// again wherever it moves.
struct Landmark {
    quint32 hash = 0;  ///< never 0
    qint16 x = 0;
    qint16 y = 0;
};

constexpr int s_landmarkWidth = 16;
constexpr int s_landmarkHeight = 8;

/// The landmarks of a picture with 32 bits per pixel, sorted by hash. On average one of 2 to the
/// power of `rarity` patches is a landmark; blank patches are none.
std::vector<Landmark> landmarksOf(const QImage &picture, int rarity);

/// The same landmarks with hashes that include their column (Vertical) or row (Horizontal), sorted
/// by hash. A patch that occurs often side by side is still useful for a movement in this
/// direction.
std::vector<Landmark> landmarksInLine(std::vector<Landmark> landmarks, Qt::Orientation line);

/// Calls `run` with each pair of equal landmarks from `known` and `sought`, except for those that
/// occur often in one of them. Both must be sorted by hash.
template<typename Run>
void forCommon(const std::vector<Landmark> &known, const std::vector<Landmark> &sought,
               const Run &run)
{
    constexpr size_t mostEqual = 4;
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
        if (lastKnown - i <= mostEqual && lastSought - j <= mostEqual) {
            for (size_t a = i; a < lastKnown; ++a) {
                for (size_t b = j; b < lastSought; ++b)
                    run(known[a], sought[b]);
            }
        }
        i = lastKnown;
        j = lastSought;
    }
}

/// Landmarks on a plane, searchable by hash.
class LandmarkIndex
{
public:
    /// Only the first few of equal landmarks are kept, because frequent ones identify no position.
    void insert(const Landmark &landmark);
    /// Calls `found` with each landmark of this hash.
    template<typename Found> void find(quint32 hash, const Found &found) const
    {
        if (m_slots.empty())
            return;
        for (size_t at = place(hash); m_slots[at].hash; at = (at + 1) & (m_slots.size() - 1)) {
            if (m_slots[at].hash == hash)
                found(m_slots[at]);
        }
    }

private:
    size_t place(quint32 hash) const
    {
        return (quint64{hash} * 0x9e3779b97f4a7c15 >> 20) & (m_slots.size() - 1);
    }
    void put(const Landmark &landmark);

    std::vector<Landmark> m_slots{};  // the size is a power of two; hash 0 marks a free slot
    size_t m_count = 0;
};
