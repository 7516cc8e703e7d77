#pragma once

#include "helper/stitcher.h"

#include <QImage>
#include <QList>
#include <QSize>

/// Puts the columns of content that is wider than its view side by side.
class ColumnSheet
{
public:
    /// `sideLimit` is the limit for each side in pixels, `areaLimit` for the number of pixels.
    ColumnSheet(int sideLimit, qint64 areaLimit) : m_sideLimit(sideLimit), m_areaLimit(areaLimit) {}

    bool isEmpty() const { return m_strips.isEmpty(); }
    /// Adds a column: `picture` from its column `from` on covers the sheet from its column `at` on.
    void add(const QImage &picture, int from, int at);
    /// Tells the position of the column that is being taken now, as in add().
    void begin(int from, int at);

    /// The size of the result, within the limits.
    QSize size() const;
    bool isFull() const { return width() >= widthLimit(); }
    /// The height of the lowest column.
    int commonHeight() const;
    /// The top row of the view of `viewHeight` rows that has most content at the right edge of the
    /// last column: sideways movement is found best there. 0 if the top has about as much.
    int rowWithMost(int viewHeight) const;

    /// A preview of the sheet with the column that is being taken, no larger than `box`.
    QImage overview(QSize box, const ScrollStitcher &column) const;
    /// Moves the picture out; columns that are lower than the others are filled with white. Null if
    /// there is not enough memory; firstColumn() can still be used then.
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
