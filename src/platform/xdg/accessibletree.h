#pragma once

#include <QList>
#include <QPointF>
#include <QRect>

#include <optional>

// Rules for what programs tell of their windows through the accessibility interface.
//
// Extents are in the telling program's coordinates, which may be device pixels, logical ones, or
// start at its window's corner.

/// Kinds of accessibles, by their numbers in the interface.
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

/// Whether an accessible's children are what scrolls in it, rather than one large child.
bool holdsItems(AccessibleRole role);

/// False for the values that stand for "not shown" or "not known".
bool areSane(const QRect &extents);

/// Whether the extents may be a scroll bar's, or those of something that holds just a scroll bar.
bool areThin(const QRect &extents);

/// An accessible on the way from a window to the point in question, and what its children told.
struct AccessibleLevel {
    AccessibleRole role = AccessibleRole::Invalid;
    QRect extents{};
    QRect next{};               ///< the child at the point; null where there is none
    QList<QRect> items{};       ///< some of the children, where they are what scrolls
    QRect header{};             ///< above the items; null where there is none
    QList<QRect> scrollBars{};  ///< that are shown, of either direction
};

/// What is visible of the content that scrolls up and down, of the innermost level that has such
/// content and room enough. The window's own level comes first. Null where nothing scrolls.
QRect scrollingArea(const QList<AccessibleLevel> &path);

/// How a program's coordinates relate to global device pixels.
struct PixelMapping {
    qreal scale = 1;
    QPointF offset{};   ///< of the program's origin
    bool told = false;  ///< false where the window's place was a guess

    QPointF toProgram(const QPointF &pixel) const { return (pixel - offset) / scale; }
    /// Whole pixels that the extents cover completely.
    QRect toPixels(const QRect &extents) const;
};

/// The mapping under which a window, as its program tells it with or without the frame, is the one
/// that is on the screen at `window`, with its frame. `screens` are the top left corners of the
/// screens, from which some toolkits scale. None where it can't be the same window.
std::optional<PixelMapping> pixelMapping(const QRect &told, const QRect &window,
                                         const QList<QPoint> &screens);

/// Whether an area can be an answer for a point of a window: all in device pixels.
bool isUsable(const QRect &area, const QRect &window, QPoint point);
