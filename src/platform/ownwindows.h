#pragma once

#include "platform/paneplace.h"

#include <QList>
#include <QPoint>
#include <QRect>

#include <functional>

class QWidget;

/// What this program's own windows need beyond the toolkit. All coordinates are global device
/// pixels.
class OwnWindows
{
public:
    virtual ~OwnWindows() = default;

    /// Whether a compositor blends translucent windows with what lies behind them.
    virtual bool isComposited() = 0;

    /// `changed` is called from the event loop whenever isComposited() may have changed; null
    /// removes it.
    virtual void setCompositingHandler(std::function<void()> changed) = 0;

    /// Whether coverArea() can place a window anywhere, and not over whole screens only.
    virtual bool placesWindows() const { return true; }

    /// Where the windows of an overlay have to be to cover the desktop, the primary screen's first;
    /// never empty.
    virtual QList<PanePlace> panes() = 0;

    /// Makes a window cover `area` when it is shown, over panels and across all screens,
    /// independent of the window manager. The window must not be shown yet. Its stacking and
    /// opacity are left alone.
    virtual void coverArea(QWidget *window, const QRect &area) = 0;

    /// Moves the top left corner of a visible window that coverArea() has placed to `to`.
    virtual void moveWindow(QWidget *window, QPoint to) = 0;

    /// Keeps a window of this program out of task bars and window switchers. The window must not be
    /// shown yet.
    virtual void keepOutOfTaskBar(QWidget *window) = 0;

    /// Removes a window of this program from the screen, or puts it back, while the toolkit still
    /// counts it as shown. (Hiding a dialog by the toolkit would answer it, and a minimised dialog
    /// would take the focus when it is restored.)
    virtual void setOnScreen(QWidget *window, bool onScreen) = 0;

    /// Keeps the compositor from drawing a shadow around a window of this program.
    virtual void dropShadow(QWidget *window) = 0;

    /// The number of a window of this program in the window list; 0 for null or if there is no
    /// window.
    virtual int numberOf(const QWidget *widget) = 0;
};
