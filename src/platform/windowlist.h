#pragma once

#include "platform/windowcatalogue.h"

#include <QImage>
#include <QPixmap>

class QWidget;

// The window list by index, and pictures with it, for callers that count windows. The program's own
// windows ask the services (`platform/services.h`, `platform/desktoppictures.h`).

/// One snapshot of the window list, and the last picture that was taken of a single window. An
/// index is a position in `WindowInfo`, which is ordered front to back; a new snapshot invalidates
/// all indices.
struct CocoaGrabWindows {
    QList<WindowCatalogue::Entry> WindowInfo{};
    QImage Image{};
    int Count = 0;

    int GetWindowList(int onScreen, int relativeTo);
    QImage GrabWindow(int windowNumber);
};

extern CocoaGrabWindows g_WindowList;

/// A window of this program that the window browser leaves out; null for none. Not owned.
extern QWidget *g_widgetExcept;

/// Takes a new snapshot: of all windows, of those on screen if `onScreen` is not 0, or of the
/// window `relativeTo` and all windows in front of it if `relativeTo` is above 0. Returns the
/// number of windows.
int GetWindowList(int onScreen, int relativeTo);
int GetWindowLevel(int index);  ///< the window's layer; 0 if there is no such index
int getWinid(int index);        ///< the window's number; 0 if there is no such index
/// Gives the bounds in global device pixels, truncated to whole numbers, and returns 1. Returns 0
/// and writes nothing if there is no such index.
int GetWindowGeometry(int index, int *x, int *y, int *width, int *height);
/// The picture of one window, whatever covers it. `title` and `owner` may be null; otherwise they
/// have room for 256 characters including the terminator, and longer names are cut. Null if there
/// is no such index; nothing is written then.
QImage GrabWindow(int index, wchar_t *title, wchar_t *owner, int *windowNumber);

/// The bounding box of all screens and the origin, in global device pixels.
void getScreenGem(int &left, int &top, int &width, int &height);
/// The size of that box.
void getScreenSize(int &width, int &height);
/// The number (from 1) of the screen that contains a point, with the screen's rectangle in `rect`.
/// If no screen contains it, returns -1, and `rect` is the last screen. Global device pixels.
int getOneScreen(int x, int y, QRect &rect);

/// Takes a new snapshot, and a picture of a rectangle of the desktop, in global device pixels. With
/// `clip` the rectangle is fitted to the desktop, and (0, 0, -1, -1) means all of it. `except`, if
/// not null, is left out, and so are its child windows.
QImage GrabFullWindow(int x, int y, int width, int height, bool clip, QWidget *except);
/// GrabFullWindow as a pixmap.
QPixmap screenWindow(int x, int y, int width, int height, bool clip, QWidget *except);
/// A picture of the desktop's menu bar; null if there is none.
QPixmap screenMenu();
