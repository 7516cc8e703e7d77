#pragma once

#include <QtGlobal>

#include <functional>

class QWidget;

/// Tells which application is in front, and brings applications there.
class ApplicationWatch
{
public:
    struct Handlers {
        std::function<void(long pid)> activated{};    ///< an application came to the front
        std::function<void(long pid)> deactivated{};  ///< an application lost the front
    };

    virtual ~ApplicationWatch() = default;

    /// Reports the present state as the first activation, then every change, from the event loop.
    virtual void start(Handlers handlers) = 0;
    virtual void stop() = 0;

    /// The window that is in front now, to be handed to activate() later; 0 if none.
    virtual unsigned frontWindow() = 0;
    /// The process that it belongs to; 0 where it doesn't tell.
    virtual uint frontProcess() = 0;
    /// Brings another application's window to the front; a window that is gone changes nothing.
    virtual void activate(unsigned window) = 0;
    /// Asks for a window of this program to come to the front. It may be refused: ask again.
    /// Without a window manager the window gets the keyboard, and counts as active.
    virtual void bringToFront(QWidget *window) = 0;
};

/// Follows the active application from now on, and until StopWatchAppActive.
void StartWatchAppActive();
void StopWatchAppActive();

/// Whether this application is the active one. True before the watch has seen anything.
bool IsAppActive();

/// `callback` is told each time this application gains (true) or loses (false) the front; null for
/// none.
void SetAppActiveChangeCallback(long (*callback)(bool));

/// Brings the application that was last in front before this one back there.
void SetPreAppActive();

/// Keeps the window system from drawing a shadow around `widget`'s window.
void SetWindowNoShadown(QWidget *widget);

/// The number of `widget`'s window in the window list.
int GetWindowId(QWidget *widget);
