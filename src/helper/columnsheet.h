#pragma once

#include "helper/stitcher.h"

#include <QImage>
#include <QList>
#include <QSize>

/// Puts columns of content that is wider than its view beside each other.
class ColumnSheet
{
public:
    /// The limits are for one side, and for all pixels.
    ColumnSheet(int sideLimit, qint64 areaLimit) : m_sideLimit(sideLimit), m_areaLimit(areaLimit) {}

    bool isEmpty() const { return m_strips.isEmpty(); }
    /// From its column `from` on a picture covers what the sheet has from its column `at` on.
    void add(const QImage &picture, int from, int at);
    /// What the next picture is going to cover.
    void begin(int from, int at);

    /// No larger than the limits allow.
    QSize size() const;
    bool isFull() const { return width() >= widthLimit(); }
    /// The height of the lowest column.
    int commonHeight() const;
    /// Where a view of so many rows finds most at the right edge of the last picture: what goes
    /// sideways is followed best there. 0 where the top does as well.
    int rowWithMost(int viewHeight) const;

    /// What there is with the column that is being taken, no larger than a box, for a look.
    QImage overview(QSize box, const ScrollStitcher &column) const;
    /// Moves the picture out, with white below columns that ended before the others. Null where
    /// there is not enough memory for it; then the first column is still there.
    QImage finish();
    QImage firstColumn() const { return m_strips.first().picture; }

private:
    struct Strip {
        QImage picture{};
        int at = 0;
    };

    int width() const;
    int height() const;
    int widthLimit() const;

    int m_sideLimit;
    qint64 m_areaLimit;
    QList<Strip> m_strips{};
    int m_nextFrom = 0;
    int m_nextAt = 0;
};
