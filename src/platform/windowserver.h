#pragma once

#include <QImage>
#include <QList>
#include <QMargins>
#include <QPoint>
#include <QRect>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QWidget;

/// Tells whether a window draws, so that pictures of a window that doesn't draw need not be
/// compared.
class ChangeWatch
{
public:
    virtual ~ChangeWatch() = default;

    /// Whether the window has drawn anything since the last call. Everything drawn before this call
    /// is contained in pictures taken after it.
    virtual bool takeChange() = 0;
};

/// Windows, their pictures, screens and the pointer, as the window system reports them now.
///
/// All coordinates are global device pixels, as the window system counts them, whatever scale
/// factor the toolkit uses for widgets.
class WindowServer
{
public:
    /// A window's purpose, as far as it is declared.
    enum class Kind {
        Other,
        Menu,     ///< an open menu, or the list of a combo box
        Unnamed,  ///< a window without a window manager that declares no purpose
    };
    struct Entry {
        int number = 0;    ///< stable while the window lives
        int layer = 0;     ///< 0 for ordinary windows; a higher layer is nearer the front
        QRectF bounds{};   ///< including the window manager's frame
        QMargins frame{};  ///< widths of the frame in device pixels, as far as known
        QString name{};    ///< title; may be empty
        QString owner{};   ///< application; may be empty
        uint process = 0;  ///< 0 if unknown
        Kind kind = Kind::Other;

        /// The application as pictures are called after it: programs may tell a name of any length.
        QString shownOwner() const
        {
            constexpr qsizetype longest = 255;
            return owner.left(longest);
        }
    };
    enum class List { All, OnScreen, AtAndAbove };

    virtual ~WindowServer() = default;

    /// The windows, front to back. `relativeTo` is a window's number and is used by AtAndAbove
    /// only, which lists that window and all windows in front of it.
    virtual QList<Entry> windows(List which, int relativeTo) = 0;

    /// A picture of what the screen shows; parts outside of all screens are black. Null if a side
    /// of `area` is 0 or less.
    virtual QImage screenPicture(const QRect &area) = 0;

    /// A picture of the given windows only; the first one is in front. Without `area` it covers
    /// their bounds, and a single window is complete whatever covers it. With `area` it is what the
    /// desktop would show there. Where no window is, the picture is black, shows the wallpaper, or
    /// is transparent if it has an alpha channel. Null if a side is 0 or less, or if the windows
    /// are gone.
    virtual QImage picture(std::optional<QRectF> area, const QList<int> &numbers) = 0;

    /// A picture of what the desktop would show without the given windows. Null if a side of `area`
    /// is 0 or less.
    virtual QImage pictureWithout(const QRect &area, const QList<int> &numbers) = 0;

    /// The rectangles of all screens, the primary screen first; never empty.
    virtual QList<QRect> screens() = 0;

    /// The pointer's position.
    virtual QPoint pointer() = 0;
    virtual void movePointer(QPoint to) = 0;

    /// Whether the user holds a mouse button or a modifier key such as Ctrl.
    virtual bool isHandBusy() = 0;
    enum class Wheel {
        Down,           ///< the vertical wheel; positive clicks scroll down
        Right,          ///< the horizontal wheel; positive clicks scroll to the right
        DownWithShift,  ///< the vertical wheel with Shift, which many programs treat as horizontal
    };
    /// Moves the pointer to `at` and turns the mouse wheel there as the user would. The pointer
    /// must stay until the other program has answered: some window managers delay the wheel events
    /// and deliver them to the pointer's position at that time. Returns false if the window system
    /// does not support this.
    virtual bool turnWheel(QPoint at, int clicks, Wheel wheel) = 0;

    /// Watches a window's drawing while the returned object lives. Null if the window system
    /// doesn't support it or the window is gone.
    virtual std::unique_ptr<ChangeWatch> watchChanges(int number) = 0;

    /// Whether the desktop has a menu bar of its own, which has to be looked for and covered.
    virtual bool hasMenuBar() const { return false; }

    /// Whether a compositor blends translucent windows with what lies behind them.
    virtual bool isComposited() = 0;

    /// `changed` is called from the event loop whenever isComposited() may have changed; null
    /// removes it.
    virtual void setCompositingHandler(std::function<void()> changed) = 0;

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
