#pragma once

#include <QList>
#include <QPolygon>
#include <QRect>

#include <functional>

/// The windows of a list as outlines: which one a point hits, and what of it can be seen.
///
/// It stands apart from the overlay because it needs no window system: a list and the screens are
/// enough. All coordinates are global device pixels. Outlines lie rearmost first; a pick counts
/// from their end, from 1, and so is the window's position in a list whose first entry is left out.
class WindowOutlines
{
public:
    struct Window {
        QRect bounds{};
        int level = 0;
    };

    WindowOutlines() = default;
    /// `windows` are front to back, and the first of them, the overlay itself, is left out.
    /// `screens` begin with the primary one. `pictureSize` gives the size of a window's picture, by
    /// its position in `windows`.
    WindowOutlines(const QList<Window> &windows, const QList<QRect> &screens,
                   const std::function<QSize(int)> &pictureSize);

    /// The pick for a point, `current` where nothing else is hit. A window for which `leftOut`
    /// holds, by pick, is looked through.
    int pick(QPoint point, int current, const std::function<bool(int)> &leftOut) const;
    /// What of a picked window no other window covers; empty for no pick.
    QPolygon visible(int pick) const;

    const QList<QPolygon> &rawPolygons() const { return m_rawPolygons; }
    const QList<QPolygon> &visiblePolygons() const { return m_visiblePolygons; }
    /// Where the widest menu bar stands among the outlines; -2 without one.
    int menuBarIndex() const { return m_menuBarIndex; }

private:
    void cutVisible();

    QList<QPolygon> m_rawPolygons;
    QList<QPolygon> m_visiblePolygons;
    int m_menuBarIndex = -2;
};
