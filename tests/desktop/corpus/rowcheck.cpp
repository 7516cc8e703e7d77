#include "rowcheck.h"

#include "rowcode.h"

#include <QMap>
#include <QStringList>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int s_longestList = 6;
constexpr int s_blur = 90;

// A toolkit may draw a picture between two pixels, so its middle is what counts, more or less.
bool isLike(QRgb color, QRgb wanted)
{
    return std::abs(qRed(color) - qRed(wanted)) < s_blur &&
           std::abs(qGreen(color) - qGreen(wanted)) < s_blur &&
           std::abs(qBlue(color) - qBlue(wanted)) < s_blur;
}

// The number at a place of a line, or -1 where there is none.
int numberAt(const QRgb *line, int width)
{
    constexpr int cells = RowCode::width / RowCode::cell;
    const auto cell = [&](int index) { return line[index * RowCode::cell + 1]; };
    if (width < RowCode::width || !isLike(cell(0), RowCode::first) ||
        !isLike(cell(cells - 1), RowCode::last))
        return -1;
    int value = 0;
    for (int i = 1; i < cells - 1; ++i) {
        const bool isOne = isLike(cell(i), RowCode::one);
        if (!isOne && !isLike(cell(i), RowCode::zero))
            return -1;
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

QList<CodedRow> codedRows(const QImage &picture)
{
    const QImage image = picture.convertToFormat(QImage::Format_RGB32);
    QList<CodedRow> result;
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (!isLike(line[x], RowCode::first))
                continue;
            const int number = numberAt(line + x, image.width() - x);
            if (number < 0)
                continue;
            const bool goesOn = !result.isEmpty() && result.last().number == number &&
                                result.last().at.x() == x &&
                                result.last().at.y() + result.last().height == y;
            if (goesOn)
                ++result.last().height;
            else
                result.append({.number = number, .at = {x, y}, .height = 1});
            break;
        }
    }
    return result;
}

RowFaults faultsOf(const QList<CodedRow> &rows, int expected)
{
    RowFaults faults;
    QMap<int, int> seen;
    QMap<int, int> steps;
    QMap<int, int> heights;
    for (int i = 0; i < rows.size(); ++i) {
        ++seen[rows[i].number];
        ++heights[rows[i].height];
        if (i > 0)
            ++steps[rows[i].at.y() - rows[i - 1].at.y()];
    }
    const int step = usual(steps);
    const int height = usual(heights);
    for (int i = 0; i < rows.size(); ++i) {
        const CodedRow &row = rows[i];
        if (row.number >= expected || (i > 0 && row.number < rows[i - 1].number))
            faults.disordered.append(row.number);
        const bool follows = i > 0 && row.number == rows[i - 1].number + 1;
        if (row.height != height || (follows && row.at.y() - rows[i - 1].at.y() != step))
            faults.torn.append(row.number);
    }
    for (int number = 0; number < expected; ++number) {
        faults.found += seen.contains(number) ? 1 : 0;
        if (!seen.contains(number))
            faults.missing.append(number);
        else if (seen[number] > 1)
            faults.doubled.append(number);
    }
    return faults;
}

bool RowFaults::isEmpty() const
{
    return missing.isEmpty() && doubled.isEmpty() && torn.isEmpty() && disordered.isEmpty();
}

QString RowFaults::text() const
{
    QStringList result;
    const auto add = [&](const char *name, const QList<int> &numbers) {
        if (numbers.isEmpty())
            return;
        QStringList shown;
        for (const int number : numbers.first(std::min<qsizetype>(numbers.size(), s_longestList)))
            shown.append(QString::number(number));
        result.append(
            QStringLiteral("%1 %2 (%3%4)")
                .arg(numbers.size())
                .arg(QLatin1String(name), shown.join(u' '),
                     numbers.size() > s_longestList ? QStringLiteral(" ...") : QString()));
    };
    add("missing", missing);
    add("doubled", doubled);
    add("torn", torn);
    add("out of order", disordered);
    return result.join(QStringLiteral(", "));
}

int countStrips(const QImage &picture, const QImage &strip, int x)
{
    int result = 0;
    if (strip.isNull() || x < 0 || x + strip.width() > picture.width())
        return 0;
    const auto bytes = static_cast<size_t>(strip.width()) * sizeof(QRgb);
    const auto isAt = [&](int top) {
        for (int y = 0; y < strip.height(); ++y) {
            const uchar *line =
                picture.constScanLine(top + y) + sizeof(QRgb) * static_cast<size_t>(x);
            if (std::memcmp(line, strip.constScanLine(y), bytes) != 0)
                return false;
        }
        return true;
    };
    for (int y = 0; y + strip.height() <= picture.height(); ++y) {
        if (!isAt(y))
            continue;
        ++result;
        y += strip.height() - 1;
    }
    return result;
}
