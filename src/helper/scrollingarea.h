#pragma once

#include "helper/movement.h"

#include <QImage>
#include <QRect>

#include <optional>

/// Finds the part of a window that belongs to the scrolling content, from two pictures of the
/// window and the movement between them. All rectangles are in the coordinates of these pictures.

/// The area of a window about which nothing is known: the part that moved, extended over what may
/// have moved with it (grid lines, columns that are equal in all rows, blank background), up to a
/// scroll bar, a frame or a tool bar. Empty if nothing moved.
QRect scrollingArea(const QImage &before, const QImage &after, const Movement &movement);

/// A reported area without a scroll bar at its right or left side.
QRect withoutScrollBar(const QImage &before, const QImage &after, const Movement &movement,
                       const QRect &told);

/// Rows of a picture, from `top` up to but not including `bottom`.
struct RowSpan {
    int top = 0;
    int bottom = 0;
};

/// The rows of the scroll bar beside an area, from pictures of the content's top and end. The
/// scroll bar is also beside a header that stays in place, but not beside a tool bar. No value if
/// there is no scroll bar.
std::optional<RowSpan> scrollBarBeside(const QImage &first, const QImage &last, const QRect &area);

/// For areas without a scroll bar: the rows of the area together with the parts directly above and
/// below it that stay in place, such as a header or a status line. They extend as far as their
/// background, but are left out if they are as high as a window's tool bars. `inside` is the window
/// without its frame.
RowSpan withNeighbours(const QImage &first, const QImage &last, const QRect &area,
                       const QRect &inside);
