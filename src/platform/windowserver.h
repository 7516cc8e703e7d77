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

/// Hears whether a window draws, so that nobody has to compare pictures of one that doesn't.
class ChangeWatch
{
public:
    virtual ~ChangeWatch() = default;

    /// Whether anything was drawn in the window since the last call. What was drawn before this
    /// call is in every picture taken after it.
    virtual bool takeChange() = 0;
};

/// Windows, their pictures, screens and the pointer, as the window system has them now.
///
/// All coordinates are global device pixels: what the window system itself counts, whatever scale
/// the toolkit lays its widgets out with.
class WindowServer
{
public:
    /// What a window is for, where it says so.
    enum class Kind {
        Other,
        Menu,     ///< a menu that hangs open, or the list of a box
        Unnamed,  ///< a window that no window manager looks after, and that says nothing
    };
    struct Entry {
        int number = 0;    ///< stable while the window lives
        int layer = 0;     ///< 0 for ordinary windows, higher is nearer the front
        QRectF bounds{};   ///< with the frame that the window manager drew
        QMargins frame{};  ///< how wide that is, as far as the window tells; device pixels
        QString name{};    ///< title; may be empty
        QString owner{};   ///< application; may be empty
        uint process = 0;  ///< 0 where the window doesn't tell
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

    /// Front to back. `relativeTo` is a window's number and counts for AtAndAbove only: that window
    /// and all that are in front of it.
    virtual QList<Entry> windows(List which, int relativeTo) = 0;

    /// What the screen shows, with nothing left out; black where no screen is. A side of 0 or less
    /// gives a null picture.
    virtual QImage screenPicture(const QRect &area) = 0;

    /// The given windows, the first one in front, and no other. Without an area: their own bounds,
    /// and one window alone comes out whole, whatever covers it. With one: what the desktop would
    /// show there. A side of 0 or less, or windows that are gone, give a null picture. What no
    /// window covers is black, the wallpaper, or transparent where the picture has an alpha
    /// channel.
    virtual QImage picture(std::optional<QRectF> area, const QList<int> &numbers) = 0;

    /// What the desktop would show there without the given windows. A side of 0 or less gives a
    /// null picture.
    virtual QImage pictureWithout(const QRect &area, const QList<int> &numbers) = 0;

    /// The screens' rectangles, the primary screen first; never empty.
    virtual QList<QRect> screens() = 0;

    /// Where the pointer is.
    virtual QPoint pointer() = 0;
    virtual void movePointer(QPoint to) = 0;

    /// Whether the user holds a mouse button or a key that changes what others mean, as Ctrl.
    virtual bool isHandBusy() = 0;
    enum class Wheel {
        Down,           ///< clicks above 0 go down
        Right,          ///< the one that goes sideways; clicks above 0 go to the right
        DownWithShift,  ///< what many programs take for that
    };
    /// Moves the pointer to `at` and turns the mouse wheel there, as if the user had. The pointer
    /// has to stay until there is an answer: some window managers hold the turn back for a moment,
    /// and deliver it where the pointer is then. False where the window system gives programs no
    /// such hand.
    virtual bool turnWheel(QPoint at, int clicks, Wheel wheel) = 0;

    /// Watches a window's drawing from now on, as long as the watch lives. Null where the window
    /// system doesn't tell, or the window is gone.
    virtual std::unique_ptr<ChangeWatch> watchChanges(int number) = 0;

    /// False where the desktop has no menu bar of its own: nothing to look for, nothing to cover
    /// up.
    virtual bool hasMenuBar() const { return false; }

    /// True when translucent windows are mixed with what lies behind them.
    virtual bool isComposited() = 0;

    /// `changed` is called from the event loop whenever isComposited() may give another answer;
    /// null for none.
    virtual void setCompositingHandler(std::function<void()> changed) = 0;

    /// Makes a window that is not shown yet cover `area`, over panels and every screen, without the
    /// window manager's say. The widget keeps its own stacking and opacity.
    virtual void coverArea(QWidget *window, const QRect &area) = 0;

    /// Moves a window that coverArea() placed, and that is shown, with its top left corner to `to`.
    virtual void moveWindow(QWidget *window, QPoint to) = 0;

    /// Keeps a window of this program, not shown yet, out of task bars and switchers.
    virtual void keepOutOfTaskBar(QWidget *window) = 0;

    /// Takes a window of this program off the screen that the toolkit goes on to count as shown, or
    /// puts it back. (A dialog that the toolkit hides is answered by that, and one that is
    /// minimised comes back with the focus.)
    virtual void setOnScreen(QWidget *window, bool onScreen) = 0;

    /// Keeps the compositor from drawing a shadow around a window of this program.
    virtual void dropShadow(QWidget *window) = 0;

    /// The number under which a window of this program stands in the list; 0 for null or no window.
    virtual int numberOf(const QWidget *widget) = 0;
};
