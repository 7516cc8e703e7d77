#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QRegion>

/// The part that moved between two views.
struct Moved {
    /// The bounding rectangle of the moved part, without parts at the edges that stayed in place;
    /// empty if too much in it contradicts the movement.
    QRect box{};
    /// Rectangles in `box` that stayed in place, such as buttons over a map.
    QRegion stayed{};
};

/// Both views must have 32 bits per pixel and the same size.
Moved movedBox(const QImage &before, const QImage &after, QPoint movement);
