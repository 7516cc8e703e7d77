#pragma once

#include <QPointF>
#include <QRect>

/// Where one of the windows belongs that together cover the desktop.
struct PanePlace {
    QRect area{};     ///< global device pixels
    qreal scale = 1;  ///< device pixels in a logical pixel of the window
    /// The area's top left corner in the logical coordinates in which a drag goes on from window to
    /// window. Whoever knows the pointer's device pixels beyond a window's edge gives `area`'s
    /// corner divided by the scale.
    QPointF corner{};

    bool operator==(const PanePlace &) const = default;
};
