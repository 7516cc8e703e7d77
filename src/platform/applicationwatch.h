#pragma once

#include <QByteArray>

#include <functional>

class QWidget;

/// Tells which application is active (in front), and activates applications.
class ApplicationWatch
{
public:
    struct Handlers {
        std::function<void(long pid)> activated{};    ///< an application came to the front
        std::function<void(long pid)> deactivated{};  ///< an application lost the front
    };

    virtual ~ApplicationWatch() = default;

    /// Reports the present state as the first activation, and then every change, from the event
    /// loop.
    virtual void start(Handlers handlers) = 0;
    /// Nothing is reported any more.
    virtual void stop() = 0;

    /// The window that is active now, for a later activate(); 0 if there is none.
    virtual unsigned frontWindow() = 0;
    /// The process of that window; 0 if unknown.
    virtual uint frontProcess() = 0;
    /// Activates another application's window. Does nothing if the window is gone.
    virtual void activate(unsigned window) = 0;
    /// Asks for a window of this program to be activated. The request may be refused, so callers
    /// repeat it. Without a window manager the window gets the keyboard focus and counts as active.
    virtual void bringToFront(QWidget *window) = 0;

    /// Takes what a desktop gives along with a call, so that the window which is shown for it may
    /// get the focus: the next one that appears or is brought to the front gets it. A newer one,
    /// or an empty one, replaces it, and it expires.
    virtual void useToken(const QByteArray & /*token*/) {}
};

/// Follows the active application until StopWatchAppActive is called.
void StartWatchAppActive();
void StopWatchAppActive();

/// Whether this application is active. True until the watch has reported something.
bool IsAppActive();

/// `callback` is called with true when this application becomes active and with false when it no
/// longer is; null removes it.
void SetAppActiveChangeCallback(long (*callback)(bool));

/// Activates the application that was active before this one.
void SetPreAppActive();

/// Keeps the compositor from drawing a shadow around `widget`'s window.
void SetWindowNoShadown(QWidget *widget);

/// The number of `widget`'s window in the window list.
int GetWindowId(QWidget *widget);
