#pragma once

#include <QList>
#include <QRect>

class QWidget;

/// Where a window has to stand so that a hand can take hold of its caption: unchanged as long as
/// enough of its top edge lies on one of the areas, else moved into the first of them, which is
/// where windows go by default. Sizes stay. No areas: unchanged.
QRect withinReach(const QRect &window, const QList<QRect> &areas);

/// The window as far inside of an area as it fits; its top left corner is always there.
QRect movedInto(const QRect &window, const QRect &area);

/// Where something opens that belongs to a widget, in global logical pixels: above it, or below
/// where that is off the screen. A widget that is not shown lends the place of what it lies in.
QPoint placeBeside(const QWidget &widget, QSize size);
