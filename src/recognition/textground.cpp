#include "recognition/textground.h"

#include <QPainter>
#include <QPoint>
#include <QSize>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <numeric>
#include <vector>

namespace {

// The ground at a place is a grey that most of its wide surroundings have, or of those a little
// aside, or that its close surroundings have nearly alone: of these the one of which there is most
// close by. So a panel has its own ground up to its edges and corners, and so has a bar that covers
// a line.
constexpr int s_cell = 4;       // pixels, for which the ground is the same
constexpr QSize s_wide(8, 4);   // cells on each side that are wide surroundings
constexpr QSize s_close(2, 1);  // the same for close ones
constexpr std::array<QPoint, 5> s_places{{{0, 0}, {-6, -3}, {6, -3}, {-6, 3}, {6, 3}}};  // cells
constexpr double s_alone = 0.85;
constexpr int s_greys = 16;  // told apart
constexpr int s_perGrey = 16;
constexpr uchar s_none = s_greys;

QImage greyOf(const QImage &picture)
{
    if (!picture.hasAlphaChannel())
        return picture.convertToFormat(QImage::Format_Grayscale8);
    QImage opaque(picture.size(), QImage::Format_RGB32);
    if (opaque.isNull())
        return {};
    opaque.fill(Qt::white);
    QPainter(&opaque).drawImage(0, 0, picture);
    return opaque.convertToFormat(QImage::Format_Grayscale8);
}

// How often each grey comes.
using Counts = std::array<int, s_greys>;

void add(Counts &to, const Counts &what, int sign)
{
    for (int i = 0; i < s_greys; ++i)
        to[i] += sign * what[i];
}

uchar mostOf(const Counts &counts)
{
    return static_cast<uchar>(std::max_element(counts.begin(), counts.end()) - counts.begin());
}

// A value for each cell of a picture.
template<class Value> struct Cells {
    explicit Cells(QSize cells) : size(cells), values(size_t(cells.width()) * cells.height()) {}

    bool has(QPoint place) const { return QRect(QPoint(), size).contains(place); }
    Value &at(QPoint place) { return values[size_t(place.y()) * size.width() + place.x()]; }
    const Value &at(QPoint place) const
    {
        return values[size_t(place.y()) * size.width() + place.x()];
    }

    QSize size;
    std::vector<Value> values{};
};

using CellCounts = Cells<std::array<uchar, s_greys>>;

CellCounts countsOf(const QImage &grey)
{
    CellCounts result(
        QSize((grey.width() + s_cell - 1) / s_cell, (grey.height() + s_cell - 1) / s_cell));
    for (int y = 0; y < grey.height(); ++y) {
        const uchar *line = grey.constScanLine(y);
        for (int x = 0; x < grey.width(); ++x)
            ++result.at({x / s_cell, y / s_cell})[line[x] / s_perGrey];
    }
    return result;
}

// For each cell what `pick` makes of the counts of all cells as near as that.
template<class Pick> Cells<uchar> aroundEach(const CellCounts &cells, QSize near, const Pick &pick)
{
    const int rows = cells.size.height();
    const int columns = cells.size.width();
    Cells<uchar> result(cells.size);
    // The rows around the current one, column by column.
    std::vector<Counts> sums(columns, Counts{});
    const auto take = [&](int row, int sign) {
        for (int column = 0; column < columns && row >= 0 && row < rows; ++column) {
            const auto &counts = cells.at({column, row});
            for (int i = 0; i < s_greys; ++i)
                sums[column][i] += sign * counts[i];
        }
    };
    for (int row = 0; row < near.height(); ++row)
        take(row, 1);
    for (int row = 0; row < rows; ++row) {
        take(row + near.height(), 1);
        take(row - near.height() - 1, -1);
        Counts around{};
        for (int column = 0; column < std::min(near.width(), columns); ++column)
            add(around, sums[column], 1);
        for (int column = 0; column < columns; ++column) {
            if (column + near.width() < columns)
                add(around, sums[column + near.width()], 1);
            if (column > near.width())
                add(around, sums[column - near.width() - 1], -1);
            result.at({column, row}) = pick(around);
        }
    }
    return result;
}

// One of the greys that may be the ground of a cell.
uchar bestOf(const CellCounts &cells, QPoint place, const Cells<uchar> &wide,
             const Cells<uchar> &alone)
{
    Counts close{};
    std::array<bool, s_greys> isPossible{};
    for (int y = -s_close.height(); y <= s_close.height(); ++y) {
        for (int x = -s_close.width(); x <= s_close.width(); ++x) {
            const QPoint near = place + QPoint(x, y);
            if (!cells.has(near))
                continue;
            const auto &counts = cells.at(near);
            for (int i = 0; i < s_greys; ++i)
                close[i] += counts[i];
            if (alone.at(near) != s_none)
                isPossible[alone.at(near)] = true;
        }
    }
    for (const QPoint aside : s_places) {
        if (wide.has(place + aside))
            isPossible[wide.at(place + aside)] = true;
    }
    uchar best = wide.at(place);
    for (uchar i = 0; i < s_greys; ++i) {
        if (isPossible[i] && close[i] > close[best])
            best = i;
    }
    return best;
}

// The middle of a range of greys, but its end where that is the ground itself most of the time.
int groundOf(int grey)
{
    if (grey == 0 || grey == s_greys - 1)
        return grey == 0 ? 0 : 255;
    return grey * s_perGrey + s_perGrey / 2;
}

}  // namespace

QImage onWhite(const QImage &picture)
{
    QImage grey = greyOf(picture);
    if (grey.isNull())
        return {};
    const CellCounts cells = countsOf(grey);
    const Cells<uchar> wide = aroundEach(cells, s_wide, mostOf);
    const Cells<uchar> alone = aroundEach(cells, s_close, [](const Counts &counts) {
        const uchar most = mostOf(counts);
        const int all = std::accumulate(counts.begin(), counts.end(), 0);
        return counts[most] >= s_alone * all ? most : s_none;
    });
    for (int row = 0; row < cells.size.height(); ++row) {
        for (int column = 0; column < cells.size.width(); ++column) {
            const int ground = groundOf(bestOf(cells, {column, row}, wide, alone));
            const int bottom = std::min((row + 1) * s_cell, grey.height());
            const int right = std::min((column + 1) * s_cell, grey.width());
            for (int y = row * s_cell; y < bottom; ++y) {
                uchar *line = grey.scanLine(y);
                for (int x = column * s_cell; x < right; ++x)
                    line[x] = static_cast<uchar>(255 - std::abs(line[x] - ground));
            }
        }
    }
    return grey;
}
