#pragma once

#include "platform/windowcatalogue.h"

#include <QImage>
#include <QList>
#include <QPoint>
#include <QRect>
#include <QSet>

#include <functional>

/// Decides from repeated snapshots of windows and pointer whether the pointer rests on an open
/// menu, and for how long. Needs no window system. All coordinates are global device pixels.
class MenuWatch
{
public:
    enum class State {
        Waiting,  ///< no menu is open, or the pointer is elsewhere
        Resting,  ///< the pointer rests on a menu; see rest()
        Ready,    ///< it has rested long enough
        TimedOut  ///< no menu has been open for a minute
    };

    /// `windows` are those on the screen, front to back, at `time`, which is in milliseconds and
    /// never decreases. The first call records the windows that were open before; of these only
    /// declared menus count.
    State look(const QList<WindowCatalogue::Entry> &windows, QPoint pointer, qint64 time);

    /// The elapsed part of the required rest, 0 to 1.
    double rest() const { return m_rest; }
    /// The open menus of the program under the pointer, front to back.
    const QList<WindowCatalogue::Entry> &menus() const { return m_menus; }

private:
    bool m_begun = false;
    QSet<int> m_before;  // undeclared windows that were open when the watch began
    QList<WindowCatalogue::Entry> m_menus;
    QPoint m_pointer;
    qint64 m_restSince = -1;
    qint64 m_idleSince = 0;
    double m_rest = 0;
};

/// Composes the menus at their positions on a transparent background. `pictureOf` returns the
/// picture of the window with a number. Null if no menu has a picture.
QImage pictureOfMenus(const QList<WindowCatalogue::Entry> &menus,
                      const std::function<QImage(int)> &pictureOf);
