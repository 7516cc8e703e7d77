#pragma once

#include "platform/x11/keylayout.h"
#include "platform/x11/x11display.h"

/// The keyboard as hot keys need it.
struct X11Keyboard {
    KeyLayout layout{};
    /// Ctrl with an Alt, once for each modifier that one of the two Alt keys is.
    QList<uint16_t> modifiers{};
    QList<uint16_t> locks{};  ///< every combination of the lock keys; the last one is all of them
};

/// Reads it from the server; no modifiers where the server did not answer.
X11Keyboard readX11Keyboard(X11Display &display);

/// The number of the layout in force as a key was pressed, with the state that the event had.
int currentGroup(X11Display &display, uint16_t state);
