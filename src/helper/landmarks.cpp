#include "helper/landmarks.h"

#include <algorithm>
#include <bit>

namespace {

constexpr int s_columnTurn = 3;  // rotation for each row of a patch, in bits
constexpr int s_rowTurn = 5;     // rotation for each column of a patch, in bits
constexpr int s_hashBits = 32;
constexpr size_t s_firstSlots = 1024;
constexpr int s_mostEqual = 4;

// Mixes by additions and shifts, so that equal bits of neighbouring pixels don't cancel each other;
// multiplications would take several times as long.
quint32 mixed(quint32 value)
{
    value += value << 10;
    value ^= value >> 6;
    value += value << 3;
    value ^= value >> 11;
    return value + (value << 15);
}

void sort(std::vector<Landmark> &landmarks)
{
    std::sort(landmarks.begin(), landmarks.end(),
              [](const Landmark &a, const Landmark &b) { return a.hash < b.hash; });
}

}  // namespace

// Uses rolling hashes: one for each column of eight pixels, which moves down the picture, and one
// of sixteen such columns, which moves along each row. So a patch at every pixel costs only a few
// operations.
std::vector<Landmark> landmarksOf(const QImage &picture, int rarity)
{
    const int width = picture.width();
    const int height = picture.height();
    std::vector<Landmark> result;
    if (width < s_landmarkWidth || height < s_landmarkHeight)
        return result;
    std::vector<quint32> columns(width);
    std::vector<quint32> scattered(width);
    std::vector<quint32> steps(width);
    std::array<std::vector<quint32>, s_landmarkHeight> rows;
    for (auto &row : rows)
        row.resize(width);
    for (int y = 0; y < height; ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        quint32 *row = rows[y % s_landmarkHeight].data();
        for (int x = 0; x < width; ++x) {
            const quint32 leaving = std::rotl(row[x], s_columnTurn * s_landmarkHeight);
            row[x] = mixed(line[x]);
            columns[x] = std::rotl(columns[x], s_columnTurn) ^ row[x] ^ leaving;
        }
        if (y < s_landmarkHeight - 1)
            continue;
        for (int x = 0; x < width; ++x)
            scattered[x] = mixed(columns[x]);
        // Combines what enters and leaves the hash at each step in advance, to keep the loop short.
        std::copy_n(scattered.begin(), s_landmarkWidth, steps.begin());
        for (int x = s_landmarkWidth; x < width; ++x)
            steps[x] = scattered[x] ^ std::rotl(scattered[x - s_landmarkWidth],
                                                s_rowTurn * s_landmarkWidth % s_hashBits);
        quint32 hash = 0;
        for (int x = 0; x < s_landmarkWidth - 1; ++x)
            hash = std::rotl(hash, s_rowTurn) ^ steps[x];
        quint32 before = 0;
        for (int x = s_landmarkWidth - 1; x < width; ++x) {
            hash = std::rotl(hash, s_rowTurn) ^ steps[x];
            if (hash >> (s_hashBits - rarity) == 0 && hash != before)
                result.push_back({.hash = mixed(hash) | 1,
                                  .x = static_cast<qint16>(x - s_landmarkWidth + 1),
                                  .y = static_cast<qint16>(y - s_landmarkHeight + 1)});
            before = hash;
        }
    }
    sort(result);
    return result;
}

std::vector<Landmark> landmarksInLine(std::vector<Landmark> landmarks, Qt::Orientation line)
{
    for (Landmark &landmark : landmarks)
        landmark.hash = mixed(landmark.hash + (line == Qt::Vertical ? landmark.x : landmark.y)) | 1;
    sort(landmarks);
    return landmarks;
}

void LandmarkIndex::insert(const Landmark &landmark)
{
    if (m_count * 2 >= m_slots.size()) {
        std::vector<Landmark> old(std::max(s_firstSlots, m_slots.size() * 2));
        old.swap(m_slots);
        m_count = 0;
        for (const Landmark &kept : old) {
            if (kept.hash)
                put(kept);
        }
    }
    int equal = 0;
    find(landmark.hash, [&equal](const Landmark &) { ++equal; });
    if (equal < s_mostEqual)
        put(landmark);
}

void LandmarkIndex::put(const Landmark &landmark)
{
    size_t at = place(landmark.hash);
    while (m_slots[at].hash)
        at = (at + 1) & (m_slots.size() - 1);
    m_slots[at] = landmark;
    ++m_count;
}
