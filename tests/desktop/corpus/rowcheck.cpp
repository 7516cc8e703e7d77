#include "rowcheck.h"

#include "rowcode.h"

#include <QMap>

#include <algorithm>
#include <cstdlib>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_longestList = 6;
constexpr int s_blur = 40;

// A toolkit may draw a picture between two pixels, so the middle of a cell is what counts, more or
// less.
bool isLike(QRgb color, QRgb wanted)
{
    return std::abs(qRed(color) - qRed(wanted)) < s_blur &&
           std::abs(qGreen(color) - qGreen(wanted)) < s_blur &&
           std::abs(qBlue(color) - qBlue(wanted)) < s_blur;
}

// The number at a place of a line, or -1 where there is none.
int numberAt(const QRgb *line, int width)
{
    const int cell = width > 1 && isLike(line[1], RowCode::first) ? RowCode::wideCell : 1;
    if (width < cell * RowCode::cells || !isLike(line[0], RowCode::first))
        return -1;
    int value = 0;
    for (int i = 1; i < RowCode::cells; ++i) {
        const QRgb color = line[i * cell + cell / 2];
        const bool isOne = isLike(color, RowCode::one);
        if (i == RowCode::cells - 1 ? !isLike(color, RowCode::last)
                                    : !isOne && !isLike(color, RowCode::zero))
            return -1;
        if (i < RowCode::cells - 1)
            value = value << 1 | (isOne ? 1 : 0);
    }
    const int number = value >> RowCode::checkBits;
    return RowCode::value(number) == value ? number : -1;
}

// What most of them are.
int usual(const QMap<int, int> &counts)
{
    const auto most = std::max_element(counts.begin(), counts.end());
    return most == counts.end() ? 0 : most.key();
}

}  // namespace

QList<CodedRow> codesIn(const QImage &picture)
{
    const QImage image = picture.convertToFormat(QImage::Format_RGB32);
    QList<CodedRow> result;
    QMap<int, qsizetype> above;  // by column
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int number = numberAt(line + x, image.width() - x);
            if (number < 0)
                continue;
            const qsizetype last = above.value(x, -1);
            if (last >= 0 && result[last].number == number &&
                result[last].at.y() + result[last].height == y) {
                ++result[last].height;
            } else {
                above[x] = result.size();
                result.append({.number = number, .at = {x, y}, .height = 1});
            }
            x += RowCode::cells - 1;
        }
    }
    return result;
}

QList<CodedRow> rowsOf(const QList<CodedRow> &codes, int columns, int count)
{
    QList<CodedRow> result;
    for (qsizetype i = 0; i < codes.size();) {
        const CodedRow &first = codes[i];
        qsizetype end = i + 1;
        while (end < codes.size() && codes[end].at.y() == first.at.y() &&
               codes[end].height == first.height && codes[end].number == codes[end - 1].number + 1)
            ++end;
        const bool isWhole = first.number % columns == 0 &&
                             (end - i == columns || codes[end - 1].number == count - 1);
        result.append(first);
        result.last().number = isWhole ? first.number / columns : -1;
        i = end;
    }
    return result;
}

QStringList faultsOf(const QList<CodedRow> &rows, int expected)
{
    QMap<int, int> seen;
    QMap<int, int> steps;
    QMap<int, int> heights;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        ++seen[rows[i].number];
        ++heights[rows[i].height];
        if (i > 0)
            ++steps[rows[i].at.y() - rows[i - 1].at.y()];
    }
    const int step = usual(steps);
    const int height = usual(heights);
    QMap<QString, QStringList> wrong;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const CodedRow &row = rows[i];
        const bool follows = i > 0 && row.number == rows[i - 1].number + 1;
        const QString name = QString::number(row.number);
        if (row.number < 0 || row.number >= expected || (i > 0 && row.number < rows[i - 1].number))
            wrong[u"out of order"_s].append(name);
        if (row.height != height || (follows && row.at.y() - rows[i - 1].at.y() != step))
            wrong[u"torn"_s].append(name);
    }
    for (int number = 0; number < expected; ++number) {
        if (seen.value(number) != 1)
            wrong[seen.contains(number) ? u"doubled"_s : u"missing"_s].append(
                QString::number(number));
    }
    QStringList result;
    for (auto it = wrong.cbegin(); it != wrong.cend(); ++it) {
        const QString more = it->size() > s_longestList ? u" ..."_s : QString();
        result.append(u"%1 %2 (%3%4)"_s.arg(it->size())
                          .arg(it.key(), it->mid(0, s_longestList).join(u' '), more));
    }
    return result;
}

int countStrips(const QImage &picture, const QImage &strip, int x)
{
    if (strip.isNull() || x < 0 || x + strip.width() > picture.width())
        return 0;
    // What a window has written where the colours have no fourth byte is left out.
    const QImage column =
        picture.copy(x, 0, strip.width(), picture.height()).convertToFormat(QImage::Format_RGB888);
    const QImage wanted = strip.convertToFormat(QImage::Format_RGB888);
    const size_t bytes = 3 * static_cast<size_t>(strip.width());
    int result = 0;
    for (int top = 0; top + wanted.height() <= column.height(); ++top) {
        bool isThere = true;
        for (int y = 0; y < wanted.height() && isThere; ++y)
            isThere =
                std::memcmp(column.constScanLine(top + y), wanted.constScanLine(y), bytes) == 0;
        result += isThere ? 1 : 0;
        top += isThere ? wanted.height() - 1 : 0;
    }
    return result;
}
