#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

// The magnifier's numbers. Everything is in device pixels; places on the desktop are global.

/// An enlarged view of the desktop in which each of its pixels is a block.
struct MagnifierView {
    QSize size{};      ///< of what is drawn on
    int multiple = 8;  ///< a block's side; above 0

    /// The enlarged picture's size: as many whole blocks as fit.
    QSize pictureSize() const;
    /// What of the desktop is shown around a point: one pixel a block.
    QRect source(QPoint point) const;
    /// A pixel of the enlarged picture in the block of the point itself. With an even number of
    /// blocks that is the one before the middle.
    QPoint centre() const;
    /// The outline of that block, as QPainter::drawRect() takes it.
    QRect centreMark() const;
    /// Where in the view that part of `source` is that lies on the desktop.
    QRect visible(const QRect &source, const QRect &desktop) const;
};

/// Whether the pointer is so near that the magnifier must give way.
bool magnifierIsInTheWay(const QRect &magnifier, QPoint pointer);
/// The top left corner of a magnifier in the screen's corner opposite the pointer.
QPoint magnifierPlace(QSize magnifier, const QRect &screen, QPoint pointer);
/// A magnifier of another size that stays in its corner of the screen.
QRect magnifierResized(const QRect &magnifier, QSize size, const QRect &screen);
