#include "helper/columnsheet.h"

#include "helper/overview.h"
#include "helper/pixelrows.h"

#include <QPainter>

#include <algorithm>
#include <vector>

namespace {

constexpr int s_edgeParts = 4;  // the right edge is this part of a picture's width
constexpr int s_enough = 2;     // content elsewhere must be this many times the content at the top

// Whether a part of a row is not of one colour.
bool isWritten(const QRgb *pixels, int count, QRgb mask)
{
    return std::any_of(pixels, pixels + count,
                       [&](QRgb pixel) { return ((pixel ^ *pixels) & mask) != 0; });
}

}  // namespace

void ColumnSheet::add(const QImage &picture, int from, int at)
{
    m_strips.append(
        {from == 0 ? picture : picture.copy(from, 0, picture.width() - from, picture.height()),
         at});
    begin(0, width());
}

void ColumnSheet::begin(int from, int at)
{
    m_nextFrom = from;
    m_nextAt = at;
}

int ColumnSheet::width() const
{
    return isEmpty() ? 0 : m_strips.last().at + m_strips.last().picture.width();
}

int ColumnSheet::height() const
{
    int height = 0;
    for (const Strip &strip : m_strips)
        height = std::max(height, strip.picture.height());
    return height;
}

int ColumnSheet::widthLimit() const
{
    const qint64 byArea = m_areaLimit / std::max(height(), 1);
    return static_cast<int>(std::min<qint64>(m_sideLimit, byArea));
}

QSize ColumnSheet::size() const { return {std::min(width(), widthLimit()), height()}; }

int ColumnSheet::commonHeight() const
{
    int height = m_sideLimit;
    for (const Strip &strip : m_strips)
        height = std::min(height, strip.picture.height());
    return height;
}

int ColumnSheet::rowWithMost(int viewHeight) const
{
    const QImage picture = withPixels(m_strips.last().picture);
    const QRgb mask = visibleBits(picture);
    const int edge = picture.width() / s_edgeParts;
    const int rows = std::min(viewHeight, picture.height());
    std::vector<int> writtenAbove(picture.height() + 1);
    for (int y = 0; y < picture.height(); ++y) {
        const QRgb *pixels = pixelRow(picture, y) + picture.width() - edge;
        writtenAbove[y + 1] = writtenAbove[y] + (isWritten(pixels, edge, mask) ? 1 : 0);
    }
    const auto written = [&](int top) { return writtenAbove[top + rows] - writtenAbove[top]; };
    int best = 0;
    for (int top = 1; top + rows <= picture.height(); ++top)
        best = written(top) > written(best) ? top : best;
    return written(best) > s_enough * written(0) ? best : 0;
}

QImage ColumnSheet::overview(QSize box, const ScrollStitcher &column) const
{
    const QSize whole(std::max(width(), m_nextAt + column.width() - m_nextFrom), height());
    return sampledOverview(whole, box, [&](int x, int y) {
        if (x >= m_nextAt && x - m_nextAt + m_nextFrom < column.width() && y < column.rows())
            return column.pixel(x - m_nextAt + m_nextFrom, y);
        const auto strip = std::find_if(m_strips.rbegin(), m_strips.rend(),
                                        [x](const Strip &one) { return one.at <= x; });
        const QImage &picture = strip->picture;
        const bool isThere = x - strip->at < picture.width() && y < picture.height();
        return isThere ? pixelRow(picture, y)[x - strip->at] : qRgb(255, 255, 255);
    });
}

// Draws column by column and frees each of them, because the memory of the sheet is only used up as
// it is written to.
QImage ColumnSheet::finish()
{
    if (m_strips.size() == 1)
        return m_strips.takeFirst().picture;
    const QSize whole = size();
    QImage sheet(whole, m_strips.first().picture.format());
    if (sheet.isNull())
        return {};
    QPainter painter(&sheet);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    while (!m_strips.isEmpty()) {
        const Strip strip = m_strips.takeFirst();
        const QSize size = strip.picture.size();
        painter.drawImage(strip.at, 0, strip.picture);
        painter.fillRect(strip.at, size.height(), size.width(), whole.height() - size.height(),
                         Qt::white);
    }
    return sheet;
}
