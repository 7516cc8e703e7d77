#pragma once

#include "helper/movement.h"

#include <QImage>
#include <QRect>

#include <optional>

/// What of a window belongs to the content that scrolls in it, told by two looks at the window and
/// the movement between them. All rectangles are in the coordinates of these pictures.

/// For a window of which nothing is known: what moved, widened over what went along with it - grid
/// lines, columns alike in every row, plain ground - up to a scroll bar, a frame or a tool bar.
/// Empty where the movement is none.
QRect scrollingArea(const QImage &before, const QImage &after, const Movement &movement);

/// For an area that is said to scroll: the same without a scroll bar along its right or left side.
QRect withoutScrollBar(const QImage &before, const QImage &after, const Movement &movement,
                       const QRect &told);

/// Rows of a picture: from `top` to before `bottom`.
struct RowSpan {
    int top = 0;
    int bottom = 0;
};

/// The rows of the scroll bar beside an area, told by a look at the top of the content and one at
/// its end: a header that stays lies beside it, a tool bar does not. None without a scroll bar.
std::optional<RowSpan> scrollBarBeside(const QImage &first, const QImage &last, const QRect &area);

/// The rows of an area and of what stays right above and below it, as a header or a status line,
/// where no scroll bar tells: as far as their ground goes on, and not if that is as high as the
/// tool bars of a window. `inside` is the window without its frame.
RowSpan withNeighbours(const QImage &first, const QImage &last, const QRect &area,
                       const QRect &inside);
