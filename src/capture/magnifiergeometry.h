#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

// Computations for the magnifier. All values are device pixels; positions on the desktop are
// global.

/// An enlarged view of the desktop in which each desktop pixel is a square block.
struct MagnifierView {
    QSize size{};      ///< size of the drawing area
    int multiple = 8;  ///< side of a block; above 0

    /// The size of the enlarged picture: as many whole blocks as fit.
    QSize pictureSize() const;
    /// The part of the desktop that is shown for a point: one pixel for each block.
    QRect source(QPoint point) const;
    /// A pixel of the enlarged picture inside the block of the point. If the number of blocks is
    /// even, it is the block before the middle.
    QPoint centre() const;
    /// The outline of that block, for QPainter::drawRect().
    QRect centreMark() const;
    /// The rectangle in the view of the part of `source` that is on the desktop.
    QRect visible(const QRect &source, const QRect &desktop) const;
};

/// Whether the pointer is so close that the magnifier must move away.
bool magnifierIsInTheWay(const QRect &magnifier, QPoint pointer);
/// The top left corner of a magnifier in the screen's corner opposite to the pointer.
QPoint magnifierPlace(QSize magnifier, const QRect &screen, QPoint pointer);
/// The rectangle of a magnifier that gets another size and stays in its corner of the screen.
QRect magnifierResized(const QRect &magnifier, QSize size, const QRect &screen);
