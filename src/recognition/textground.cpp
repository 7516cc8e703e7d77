#include "recognition/textground.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

namespace {

// The ground at a place is the grey that most of its surroundings have, looked up for cells of a
// few pixels. Close to an edge between two grounds each has the most on its own side, so that the
// edge stays where it is.
constexpr int s_cell = 4;    // pixels
constexpr int s_across = 8;  // cells on each side that count as surroundings
constexpr int s_down = 4;    // the same above and below
constexpr int s_greys = 16;  // told apart
constexpr int s_perGrey = 16;

using Counts = std::array<int, s_greys>;

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

// How often each grey comes in a row of cells.
std::vector<Counts> countsOf(const QImage &grey, int row)
{
    std::vector<Counts> result((grey.width() + s_cell - 1) / s_cell, Counts{});
    const int end = std::min((row + 1) * s_cell, grey.height());
    for (int y = row * s_cell; y < end; ++y) {
        const uchar *line = grey.constScanLine(y);
        for (int x = 0; x < grey.width(); ++x)
            ++result[x / s_cell][line[x] / s_perGrey];
    }
    return result;
}

void add(Counts &to, const Counts &what, int sign)
{
    for (int i = 0; i < s_greys; ++i)
        to[i] += sign * what[i];
}

int mostOf(const Counts &counts)
{
    const auto most = std::max_element(counts.begin(), counts.end());
    return static_cast<int>(most - counts.begin());
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
    const int rows = (grey.height() + s_cell - 1) / s_cell;
    const int columns = (grey.width() + s_cell - 1) / s_cell;
    // The rows of cells around the current one, and what they come to, column by column.
    std::vector<std::vector<Counts>> near(2 * s_down + 1);
    std::vector<Counts> sums(columns, Counts{});
    const auto take = [&](int row) {
        std::vector<Counts> &place = near[row % near.size()];
        for (size_t i = 0; i < place.size(); ++i)
            add(sums[i], place[i], -1);
        place = row < rows ? countsOf(grey, row) : std::vector<Counts>();
        for (size_t i = 0; i < place.size(); ++i)
            add(sums[i], place[i], 1);
    };
    for (int row = 0; row < s_down; ++row)
        take(row);
    for (int row = 0; row < rows; ++row) {
        take(row + s_down);
        Counts around{};
        for (int column = 0; column < std::min(s_across, columns); ++column)
            add(around, sums[column], 1);
        for (int column = 0; column < columns; ++column) {
            if (column + s_across < columns)
                add(around, sums[column + s_across], 1);
            if (column > s_across)
                add(around, sums[column - s_across - 1], -1);
            const int ground = groundOf(mostOf(around));
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
