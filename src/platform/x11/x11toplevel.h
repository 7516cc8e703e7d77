#pragma once

#include "platform/x11/x11display.h"

#include <QRect>

/// A child of the root window: a window manager's frame, or a window that has none.
struct X11TopLevel {
    xcb_window_t frame = XCB_NONE;
    QRect bounds{};  ///< including the border
    int border = 0;
    int depth = 0;
    bool onScreen = false;
    bool unmanaged = false;  ///< override-redirect
};

/// The children of the root window, the frontmost first.
QList<X11TopLevel> topLevels(X11Display &display);
/// All of the root window.
QRect rootArea(X11Display &display);
