#pragma once

#include <QPixmap>
#include <QPolygon>
#include <QRect>

/// What holds only on a desktop with a menu bar of its own along the top of the screen, which
/// changes with the program in front, or with a dock whose window says nothing of where it is
/// drawn. Such a desktop's window list tells both by their layers. None of those that the program
/// knows today is one: WindowCatalogue::hasMenuBar() is false, and no window has these layers.
namespace MenuBarDesktop {

/// The picture of the menu bar, to cover it up while this program is active; null where there is
/// none.
QPixmap menuBarPicture();

/// Whether a window of the list is a menu bar, which nobody picks.
bool isMenuBar(int layer);
/// Whether it is the picture behind the dock: its size is the dock's, and its bounds say nothing.
bool isDockPicture(int layer);
/// Whether its bounds are those of a window, given the layer of the one behind it.
bool hasBounds(int layer, int layerBehind);

/// Where a dock of that size stands: centred at the foot of its screen. `screens` begin with the
/// primary one.
QPolygon dockOutline(const QList<QRect> &screens, QSize size);
/// The lowest of the screens that stand below one another from the primary one on.
QRect dockScreen(const QList<QRect> &screens);

}  // namespace MenuBarDesktop
