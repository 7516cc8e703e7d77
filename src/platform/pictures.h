#pragma once

#include <QImage>
#include <QList>
#include <QRect>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

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

/// What a grab wants of the desktop while it lasts.
enum class Freeze {
    AsUsual,  ///< what the desktop does by itself: one whose pictures can be taken at any time
              ///< goes on, and another one stands still
    Still,    ///< that pictures of the desktop show what was there at the beginning
};

/// Pictures of the desktop and of windows, as the window system has them now, or as they were
/// frozen.
///
/// All coordinates are global device pixels, as the window system counts them, whatever scale
/// factor the toolkit uses for widgets. Windows are named by their numbers in the window list.
class Pictures
{
public:
    /// Whether pictures can be taken now. If not, the text may say why, in the user's language.
    using Answer = std::function<void(bool areThere, const QString &trouble)>;

    virtual ~Pictures() = default;

    /// Whether a picture can be taken at any time. Where not, the desktop stands still with each
    /// freeze(), and what is not to be seen has to be off the screen before.
    virtual bool isLive() const { return true; }

    /// Whether the desktop may ask the user when it is frozen next. It does so for a program that
    /// is in front with a visible window, and for no other.
    virtual bool mayAsk() const { return false; }

    /// Whether the desktop gives no pictures since the user has refused that, and can be made to
    /// ask again. askAgain() has it forget the refusal; `done` is called from the event loop.
    virtual bool canAskAgain() const { return false; }
    virtual void askAgain(const std::function<void()> & /*done*/) {}

    /// Takes what every screen shows now. The answer comes once, from the event loop; that may take
    /// as long as a question to the user. A newer call drops the older one with its answer.
    virtual void freeze(Freeze how, Answer answer) = 0;
    /// Ends that, or gives the question up; nothing is answered any more.
    virtual void thaw() = 0;
    /// Whether pictures of the desktop show what was there when it was frozen.
    virtual bool isFrozen() const = 0;

    /// Begins to look at what moves, on a desktop that has to be asked for it: until unwatch()
    /// pictures that are not frozen can be taken. The answer comes once, with the same limits.
    virtual void watch(const Answer &answer) { answer(true, {}); }
    virtual void unwatch() {}
    /// The same as mayAsk(), of watch().
    virtual bool mayAskToWatch() const { return false; }

    /// The size of ofDesktop()'s picture. It is the area's, but where a screen has fewer pixels of
    /// its own than its area has.
    virtual QSize sizeOf(const QRect &area) const { return area.size(); }

    /// What the screens show; parts outside of all screens are black. Null if a side of `area` is 0
    /// or less, or if the desktop gives no picture.
    virtual QImage ofDesktop(const QRect &area) = 0;

    /// The given windows only; the first one is in front. Without `area` the picture covers their
    /// bounds, and a single window is complete whatever covers it. With `area` it is what the
    /// desktop would show there. Where no window is, the picture is black, shows the wallpaper, or
    /// is transparent if it has an alpha channel. Null if a side is 0 or less, or if the windows
    /// are gone.
    virtual QImage ofWindows(std::optional<QRectF> area, const QList<int> &numbers) = 0;

    /// Whether ofWindows() shows all of a window. Where Ability::CoveredWindows is lacking it shows
    /// the part that is visible in what was frozen, with what covers that here and there.
    virtual bool isWhole(int /*number*/) const { return true; }

    /// What the desktop would show without the given windows. Null if a side of `area` is 0 or
    /// less.
    virtual QImage withoutWindows(const QRect &area, const QList<int> &numbers) = 0;

    /// Whether the pointer is to be in pictures of the desktop that are handed out to the user,
    /// from the next freeze() on.
    void showPointer(bool shows) { m_showsPointer = shows; }
    bool showsPointer() const { return m_showsPointer; }
    /// The pointer as it is seen on the desktop, where no other picture shows it.
    struct Pointer {
        QImage shape{};
        QPoint corner{};  ///< of the shape on the desktop
    };
    /// None where it is not known, where none is seen, or where what is frozen shows it.
    virtual std::optional<Pointer> pointer() { return std::nullopt; }

    /// Watches a window's drawing while the returned object lives. Null if the window system
    /// doesn't support it or the window is gone.
    virtual std::unique_ptr<ChangeWatch> watchChanges(int number) = 0;

private:
    bool m_showsPointer = false;
};
