#pragma once

#include "platform/x11/keylayout.h"
#include "platform/x11/x11display.h"

#include <Qt>

/// What hot keys need to know about the keyboard.
struct X11Keyboard {
    KeyLayout layout{};
    /// The modifiers that the Alt keys set, of which one alone counts as Alt; the same for Meta.
    QList<uint16_t> alts{};
    QList<uint16_t> metas{};
    /// All combinations of the lock keys; the last one contains all locks.
    QList<uint16_t> locks{};

    /// What is down where these are, once for each of the modifiers that they may be.
    QList<uint16_t> masksOf(Qt::KeyboardModifiers modifiers) const;
};

/// Reads it from the server. `locks` is empty if the server did not answer.
X11Keyboard readX11Keyboard(X11Display &display);

/// The number of the layout that was active when a key was pressed. `state` is the event's state.
int currentGroup(X11Display &display, uint16_t state);
