#pragma once

#include <QList>
#include <QPointF>
#include <QRect>

#include <optional>

// Rules for what programs report about their windows through the accessibility interface.
//
// Extents are in the reporting program's coordinates: device pixels or logical pixels, relative to
// the screen or to the window's corner.

/// Roles of accessible objects, by their numbers in the interface.
enum class AccessibleRole : uint {
    Invalid = 0,
    Filler = 20,
    List = 31,
    Panel = 39,
    ScrollBar = 48,
    Table = 55,
    TableColumnHeader = 57,
    Terminal = 60,
    Tree = 65,
    TreeTable = 66,
    DocumentFrame = 82,
    DocumentWeb = 95,
    ListBox = 98,
};

/// Whether an object of this role contains scrolling items rather than one large child.
bool holdsItems(AccessibleRole role);

/// False for the values that mean "not shown" or "unknown".
bool areSane(const QRect &extents);

/// Whether the extents may belong to a scroll bar, or to a box that contains only a scroll bar.
bool areThin(const QRect &extents);

/// An accessible object on the path from a window to the point in question, with what its children
/// reported.
struct AccessibleLevel {
    AccessibleRole role = AccessibleRole::Invalid;
    QRect extents{};
    QRect next{};               ///< the child at the point; null if there is none
    QList<QRect> items{};       ///< some of the children, if these are what scrolls
    QRect header{};             ///< above the items; null if there is none
    QList<QRect> scrollBars{};  ///< the visible ones, in both directions
};

/// The visible part of the vertically scrolling content of the innermost object that has such
/// content and is large enough. `path` begins with the window. Null if nothing scrolls.
QRect scrollingArea(const QList<AccessibleLevel> &path);

/// Maps a program's coordinates to global device pixels.
struct PixelMapping {
    qreal scale = 1;
    QPointF offset{};   ///< of the program's origin, in device pixels
    bool told = false;  ///< false if the window's position is a guess

    QPointF toProgram(const QPointF &pixel) const { return (pixel - offset) / scale; }
    /// The whole pixels that the extents cover completely.
    QRect toPixels(const QRect &extents) const;
};

/// The mapping by which the window that a program reports as `told`, with or without its frame, is
/// the one at `window`, which includes the frame. `screens` are the top left corners of the
/// screens, which some toolkits use as the origin of their scaling. No value if it can't be the
/// same window.
std::optional<PixelMapping> pixelMapping(const QRect &told, const QRect &window,
                                         const QList<QPoint> &screens);

/// Whether an area is a valid answer for a point in a window. All values are device pixels.
bool isUsable(const QRect &area, const QRect &window, QPoint point);
