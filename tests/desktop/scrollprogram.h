#pragma once

#include "snapworkbench.h"

#include <QRect>

/// Another program of the desktop, with something that scrolls.
struct ScrollProgram {
    QProcess *process = nullptr;  ///< null where it did not come up
    QRect view{};                 ///< in its window, in logical pixels
    int header = 0;               ///< the height of what stays at the top of the view

    /// Starts one of a toolkit, "qt" or "gtk", with a kind and options, and waits until it is laid
    /// out. Where `isTold` it tells of itself over the accessibility bus.
    static ScrollProgram start(TestDesktop &desktop, const QString &toolkit,
                               const QStringList &arguments, bool isTold, qreal scale = 1);
};

/// Presses the hot key, and waits for the pick. The question before it is answered with "Enable
/// Scroll Capture", which starts nothing yet, where `isTold`, and else with "No".
bool openPick(TestDesktop &desktop, SnapWorkbench &program, bool isTold = false);
