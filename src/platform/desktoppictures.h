#pragma once

#include "platform/windowcatalogue.h"

#include <QImage>
#include <QPixmap>
#include <QRect>

class QWidget;

// All coordinates are global device pixels.

/// The box around all screens and the origin.
QRect desktopBox();
/// A corner for a window that is not to be seen.
inline QPoint offScreen() { return desktopBox().bottomRight() + QPoint(1, 1); }
/// What of `area` the desktop has, as grabs count it: a side of 0 or less reaches to the desktop's
/// edge, and (0, 0, -1, -1) means all of it.
QRect fittedToDesktop(QRect area);

/// What the desktop shows in `area`, fitted to it; with the pointer, where that is wanted.
QPixmap desktopPicture(const QRect &area);
/// The same of a window of the list, whatever covers it, as far as the desktop has that. Null if it
/// is gone.
QPixmap windowPicture(const WindowCatalogue::Entry &window);
/// What to tell of the picture of a window that shows only the visible part of it; empty for
/// others.
QString visiblePartNote(int number);

/// What the desktop would show in `area`, which is not fitted to it, without a window and its child
/// windows.
QImage pictureBehind(const QRect &area, const QWidget &except);

/// Waits, with events running, until a window is off the screen, frame and all, by its number in
/// the list; some seconds at the most. For one of this program that is hidden already.
void waitUntilGone(int number);
