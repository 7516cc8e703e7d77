#pragma once

#include "platform/windowcatalogue.h"

#include <QByteArray>
#include <QList>

/// What sway's tree says of the windows.
struct SwayTree {
    struct Window {
        WindowCatalogue::Entry entry{};  ///< in logical units; the number is the compositor's
        bool isVisible = false;          ///< on a work space that is shown
        bool isFocused = false;
        int fullscreen = 0;  ///< 0: not, 1: on its screen, 2: on all screens
    };
    QList<Window> windows{};  ///< front to back

    /// Empty if that is no tree.
    static SwayTree read(const QByteArray &json);
    /// Null if there is none.
    const Window *windowOf(int number) const;
    const Window *focused() const;
};
