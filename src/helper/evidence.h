#pragma once

#include "helper/landmarks.h"
#include "helper/pixelrows.h"

#include <QImage>
#include <QPoint>
#include <QRect>

#include <cstring>
#include <vector>

// Tests by pixels whether a view belongs to a position. All pictures must have 32 bits per pixel.

/// The number of pixels in a cell, which is a piece of a row that is compared at once.
constexpr int s_cell = 16;

// A loop of known length, which the compiler turns into a few vector instructions.
inline bool sameCell(const QRgb *a, const QRgb *b)
{
    QRgb difference = 0;
    for (int x = 0; x < s_cell; ++x)
        difference |= a[x] ^ b[x];
    return difference == 0;
}

inline bool isSame(const QRgb *a, const QRgb *b, int count)
{
    return count == s_cell ? sameCell(a, b) : std::memcmp(a, b, sizeof(QRgb) * count) == 0;
}

/// The most frequent colour of a part, determined from a grid of samples.
QRgb commonColour(const QImage &picture, const QRect &part);

/// Counts rows that a movement explains (`told`), and those of them that contradict it in other
/// cells (`mixed`). A bar or a video contradicts whole rows; but if a wrong distance makes lines of
/// a listing match except for a digit, most rows are mixed.
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

/// How many landmarks that are unique in a view agree with a movement, and how many deny it. In a
/// listing most of a view matches at any distance, but its unique landmarks don't.
struct Witnesses {
    static constexpr int s_fewestWitnesses = 3;

    int agree = 0;
    int deny = 0;

    bool areSure() const { return agree >= s_fewestWitnesses && agree >= 2 * deny; }
};

/// `known` is the previous view, or the part of the plane under the view; its pixels of value 0 are
/// unknown. If `last` is not null, landmarks that did not move since `last` are not counted as
/// denying. `part` is the part of the view to test.
Witnesses witnesses(const QImage &known, const QImage &view, QPoint movement,
                    const std::vector<Landmark> &landmarks, const QRect &part, const QImage &last);

/// Which cells a movement explains, for some rows of a view.
struct Trial {
    enum : quint8 { No, Yes, Unknown };

    QPoint movement{};
    int bands = 0;  // number of cells in a row
    int step = 1;   // distance between the rows
    std::vector<quint8> cells{};

    /// The rows of a part in which this trial explains cells that `other` doesn't.
    Rows rowsOver(const Trial &other, const QRect &part) const;
    /// The number of cells that this trial explains and `other` doesn't.
    int over(const Trial &other) const;
};

/// `known` is the previous view, or the part of the plane under the view. With `hasGaps` its pixels
/// of value 0 are unknown.
Trial trialOf(const QImage &known, const QImage &view, QPoint movement, bool hasGaps = false);

/// The trial that explains cells that no other trial explains; null if several are equally good.
/// `still` is the trial of no movement, whose cells count for nothing.
const Trial *decided(const std::vector<Trial> &trials, const Trial &still);
