#include "helper/evidence.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

namespace {

// The number of rows that are compared to choose between movements.
constexpr int s_sampledRows = 256;
constexpr size_t s_witnesses = 1000;
// The number of cells that must support a movement, and that must distinguish it from another one.
constexpr int s_enough = 8;
constexpr int s_decides = 4;

}  // namespace

QRgb commonColour(const QImage &picture, const QRect &part)
{
    constexpr int sides = 64;
    const int down = std::max(1, part.height() / sides);
    const int right = std::max(1, part.width() / sides);
    std::unordered_map<QRgb, int> counts;
    for (int y = part.top(); y <= part.bottom(); y += down) {
        for (int x = part.left(); x <= part.right(); x += right)
            ++counts[pixelRow(picture, y)[x]];
    }
    const auto most = std::max_element(counts.begin(), counts.end(),
                                       [](auto &a, auto &b) { return a.second < b.second; });
    return most == counts.end() ? 0 : most->first;
}

Witnesses witnesses(const QImage &known, const QImage &view, QPoint movement,
                    const std::vector<Landmark> &landmarks, const QRect &part, const QImage &last)
{
    const QRect patch(0, 0, s_landmarkWidth, s_landmarkHeight);
    const auto isThere = [&view](const QImage &picture, QPoint from, QPoint to) {
        for (int y = 0; y < s_landmarkHeight; ++y) {
            if (!sameCell(pixelRow(view, from.y() + y) + from.x(),
                          pixelRow(picture, to.y() + y) + to.x()))
                return false;
        }
        return true;
    };
    Witnesses result;
    // Landmarks are sorted by hash, so a subset of them is spread over the whole view.
    const size_t step = landmarks.size() / s_witnesses + 1;
    for (size_t i = 0; i < landmarks.size(); i += step) {
        const bool isOnly =
            (i == 0 || landmarks[i - 1].hash != landmarks[i].hash) &&
            (i + 1 == landmarks.size() || landmarks[i + 1].hash != landmarks[i].hash);
        const QPoint at(landmarks[i].x, landmarks[i].y);
        const QPoint from = at + movement;
        if (!isOnly || !part.contains(patch.translated(at)) ||
            !known.rect().contains(patch.translated(from)) ||
            pixelRow(known, from.y())[from.x()] == 0 ||
            pixelRow(known, from.y() + s_landmarkHeight - 1)[from.x() + s_landmarkWidth - 1] == 0)
            continue;
        if (isThere(known, at, from))
            ++result.agree;
        else if (last.isNull() || !isThere(last, at, at))
            ++result.deny;
    }
    return result;
}

Rows Trial::rowsOver(const Trial &other, const QRect &part) const
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

int Trial::over(const Trial &other) const
{
    int result = 0;
    for (size_t i = 0; i < cells.size(); ++i)
        result += cells[i] == Yes && other.cells[i] == No;
    return result;
}

Trial trialOf(const QImage &known, const QImage &view, QPoint movement, bool hasGaps)
{
    const int step = std::max(1, view.height() / s_sampledRows);
    const int width = view.width();
    Trial trial{.movement = movement, .bands = (width + s_cell - 1) / s_cell, .step = step};
    trial.cells.reserve(static_cast<size_t>(view.height() / step + 1) * (width / s_cell + 1));
    for (int y = 0; y < view.height(); y += step) {
        const int from = y + movement.y();
        const bool hasRow = from >= 0 && from < known.height();
        const QRgb *is = pixelRow(view, y);
        const QRgb *was = hasRow ? pixelRow(known, from) + movement.x() : nullptr;
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
