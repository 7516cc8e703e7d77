#pragma once

#include <QImage>
#include <QPoint>

#include <array>
#include <vector>

/// A small patch of a picture, told by what is in it alone: the same patch is a landmark wherever a
/// movement brings it.
struct Landmark {
    quint32 hash = 0;  ///< never 0
    qint16 x = 0;
    qint16 y = 0;
};

constexpr int s_landmarkWidth = 16;
constexpr int s_landmarkHeight = 8;

/// Those of a picture of 32 bits a pixel, sorted by their hashes. One in 2 to the power of `rarity`
/// patches is one; plain ground has none.
std::vector<Landmark> landmarksOf(const QImage &picture, int rarity);

/// The same ones, each told by its column, or by its row, as well: what comes often beside each
/// other is still a landmark for what moves straight up or down.
std::vector<Landmark> landmarksInLine(std::vector<Landmark> landmarks, Qt::Orientation line);

/// Calls `run` with the landmarks of `sought` that come in `known` too, where neither has many of
/// the kind.
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

/// Landmarks on a plane, to be found by their hashes.
class LandmarkIndex
{
public:
    /// Of equal ones only the first few are kept: what comes often tells no place.
    void insert(const Landmark &landmark);
    /// Calls `found` with each landmark that has this hash.
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

    std::vector<Landmark> m_slots{};  // a power of two of them; hash 0 is empty
    size_t m_count = 0;
};
