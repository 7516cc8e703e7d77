#pragma once

#include "platform/windowserver.h"

#include <QImage>
#include <QPixmap>

class QWidget;

// The window list by index, and pictures with it, for callers that count windows. The program's own
// windows ask the services (`platform/services.h`, `platform/desktoppictures.h`).

/// One snapshot of the window list, and the last picture of a single window. An index is a position
/// in `WindowInfo`, front to back; a new snapshot makes every older index void.
struct CocoaGrabWindows {
    QList<WindowServer::Entry> WindowInfo{};
    QImage Image{};
    int Count = 0;

    int GetWindowList(int onScreen, int relativeTo);
    QImage GrabWindow(int windowNumber);
};

extern CocoaGrabWindows g_WindowList;

/// A window of this program that the window browser leaves out; null for none. Not owned.
extern QWidget *g_widgetExcept;

/// Takes a new snapshot: all windows, those on screen (`onScreen` not 0), or, with `relativeTo`
/// above 0, that window and all in front of it. Returns their number.
int GetWindowList(int onScreen, int relativeTo);
int GetWindowLevel(int index);  ///< layer; 0 outside the list
int getWinid(int index);        ///< window number; 0 outside the list
/// Bounds in global device pixels, truncated; 1, or 0 with nothing written outside the list.
int GetWindowGeometry(int index, int *x, int *y, int *width, int *height);
/// The window alone, whatever covers it. `title` and `owner`, where not null, must have room for
/// 256 characters with the terminator; longer names are cut. Null outside the list, with nothing
/// written.
QImage GrabWindow(int index, wchar_t *title, wchar_t *owner, int *windowNumber);

/// The box around all screens and the origin, in global device pixels.
void getScreenGem(int &left, int &top, int &width, int &height);
void getScreenSize(int &width, int &height);
/// The number (from 1) of the screen that holds the point, and its rectangle; -1, with the last
/// screen tried in `rect`, if none does. Global device pixels.
int getOneScreen(int x, int y, QRect &rect);

/// Takes a new snapshot, and a picture of a rectangle of the desktop, in global device pixels. With
/// `clip` the rectangle is fitted to the desktop, and (0, 0, -1, -1) means all of it. `except`, if
/// not null, is left out, and so are its child windows.
QImage GrabFullWindow(int x, int y, int width, int height, bool clip, QWidget *except);
QPixmap screenWindow(int x, int y, int width, int height, bool clip, QWidget *except);
/// The desktop's menu bar; null where there is none.
QPixmap screenMenu();
