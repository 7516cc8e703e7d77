#pragma once

#include "platform/windowserver.h"

#include <QImage>
#include <QList>
#include <QPoint>
#include <QRect>
#include <QSet>

#include <functional>

/// Tells from the windows and the pointer, time after time, whether the pointer rests on an open
/// menu, and for how long. Needs no window system. Global device pixels.
class MenuWatch
{
public:
    enum class State {
        Waiting,  ///< no menu is open, or the pointer is elsewhere
        Resting,  ///< the pointer rests on a menu; see rest()
        Ready,    ///< it has rested long enough
        TimedOut  ///< no menu was open for a minute
    };

    /// `windows` are those on the screen, front to back, at `time` (ms; it never goes back). The
    /// first call tells what was open before: only what says itself that it is a menu counts of
    /// that.
    State look(const QList<WindowServer::Entry> &windows, QPoint pointer, qint64 time);

    /// How much of the rest is over, 0 to 1.
    double rest() const { return m_rest; }
    /// The open menus of the program whose menu the pointer is on, front to back.
    const QList<WindowServer::Entry> &menus() const { return m_menus; }

private:
    bool m_begun = false;
    QSet<int> m_before;  // windows that say nothing of themselves, open when the watch began
    QList<WindowServer::Entry> m_menus;
    QPoint m_pointer;
    qint64 m_restSince = -1;
    qint64 m_idleSince = 0;
    double m_rest = 0;
};

/// The windows where they hang, on a transparent ground: `pictureOf` gives a window's own picture,
/// by its number. Null where none has one.
QImage pictureOfMenus(const QList<WindowServer::Entry> &menus,
                      const std::function<QImage(int)> &pictureOf);
