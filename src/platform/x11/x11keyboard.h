#pragma once

#include "platform/x11/keylayout.h"
#include "platform/x11/x11display.h"

/// What hot keys need to know about the keyboard.
struct X11Keyboard {
    KeyLayout layout{};
    /// Ctrl combined with Alt, once for each modifier that one of the two Alt keys sets.
    QList<uint16_t> modifiers{};
    /// All combinations of the lock keys; the last one contains all locks.
    QList<uint16_t> locks{};
};

/// Reads it from the server. `modifiers` is empty if the server did not answer.
X11Keyboard readX11Keyboard(X11Display &display);

/// The number of the layout that was active when a key was pressed. `state` is the event's state.
int currentGroup(X11Display &display, uint16_t state);
