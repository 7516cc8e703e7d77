#pragma once

#include "platform/wayland/screenlayout.h"

#include <QImage>
#include <QList>
#include <QString>

#include <functional>

/// A way in which a desktop hands out pictures of its screens. Which one serves is found out by
/// asking.
class PictureRoute
{
public:
    virtual ~PictureRoute() = default;

    enum class Outcome {
        Taken,
        Absent,  ///< nothing serves this way here, so that another one has to be tried
        Failed,  ///< it serves, but has no pictures, now or for this program
    };
    struct Result {
        Outcome outcome = Outcome::Failed;
        QList<QImage> pictures{};  ///< of the layout's screens, in their order; if taken
        QString trouble{};         ///< for the user, in their language; may be empty
    };
    using Answer = std::function<void(const Result &)>;

    /// Takes what every screen shows now, each in its own pixels. `answer` is called once, from the
    /// event loop, and may call drop(). Every wait in it has a limit, but for one: a question to
    /// the user is waited for until it is answered or dropped. A newer call drops the older one.
    virtual void take(const ScreenLayout &layout, Answer answer) = 0;
    /// Whether take() is to show the pointer, as far as the desktop does that.
    virtual void showPointer(bool /*shows*/) {}
    /// Gives that up; nothing is answered any more.
    virtual void drop() = 0;

    /// Begins to show what moves, where takeNow() needs that. `begun` is called once, unless
    /// unwatch() comes first, and may call that: with whether it has begun, and if not, why not.
    using Begun = std::function<void(bool areThere, const QString &trouble)>;
    virtual void watch(const ScreenLayout & /*layout*/, const Begun &begun) { begun(true, {}); }
    virtual void unwatch() {}

    /// The same as take() at once, of what moves, for the screens that lie in `area` (global device
    /// pixels); the pictures of the others are null. Empty if there are none.
    virtual QList<QImage> takeNow(const ScreenLayout & /*layout*/, const QRect & /*area*/)
    {
        return {};
    }

    /// Whether take() may ask the user first. A window of this program then has to be visible, and
    /// to have the focus.
    virtual bool mayAsk() const { return false; }
    /// Whether the user has refused, and can be asked again once that is forgotten.
    virtual bool canAskAgain() const { return false; }
    virtual void askAgain(const std::function<void()> & /*done*/) {}
    /// The same of watch().
    virtual bool mayAskToWatch() const { return false; }
};
