#pragma once

#include "helper/landmarks.h"
#include "helper/pixelrows.h"

#include <QImage>
#include <QPoint>
#include <QRect>

#include <cstring>
#include <vector>

// What pixels say of where a view lies. Pictures have 32 bits a pixel.

/// Pixels in a cell, a piece of a row: what is compared at once.
constexpr int s_cell = 16;

// A loop of known length, which is a few instructions.
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

/// The colour that most of a part has, looked at here and there.
QRgb commonColour(const QImage &picture, const QRect &part);

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
    static constexpr int s_fewestWitnesses = 3;

    int agree = 0;
    int deny = 0;

    bool areSure() const { return agree >= s_fewestWitnesses && agree >= 2 * deny; }
};

/// `known` is where the view was before, or what lies on the plane under it; of that, what is 0 is
/// unknown. Where `last` is not null, what is there as it was tells of what stays.
Witnesses witnesses(const QImage &known, const QImage &view, QPoint movement,
                    const std::vector<Landmark> &landmarks, const QRect &part, const QImage &last);

/// What a movement makes of the cells of a few rows of a view.
struct Trial {
    enum : quint8 { No, Yes, Unknown };

    QPoint movement{};
    int bands = 0;  // cells in a row
    int step = 1;   // from one row to the next
    std::vector<quint8> cells{};

    /// The rows of a part in which it explains what another one doesn't.
    Rows rowsOver(const Trial &other, const QRect &part) const;
    /// Cells that this one explains and another one doesn't.
    int over(const Trial &other) const;
};

/// `known` is where the view was before, or what lies on the plane under it; of that, what is 0 is
/// unknown, if there may be any.
Trial trialOf(const QImage &known, const QImage &view, QPoint movement, bool hasGaps = false);

/// The one that explains what no other one can; null if several do as well. `still` is what is
/// explained without.
const Trial *decided(const std::vector<Trial> &trials, const Trial &still);
