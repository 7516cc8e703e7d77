#pragma once

#include <QList>
#include <QPolygon>
#include <QRect>

#include <functional>

/// The outlines of the windows in a list: which one contains a point, and which part of it is
/// visible.
///
/// This class is separate from the overlay because it needs no window system, only a list and the
/// screens. All coordinates are global device pixels. Outlines are ordered back to front; a pick
/// counts from the end, starting with 1, and therefore equals the window's position in the list,
/// whose first entry is left out.
class WindowOutlines
{
public:
    struct Window {
        QRect bounds{};
        int level = 0;
    };

    WindowOutlines() = default;
    /// `windows` is ordered front to back; the first entry is the overlay itself and is left out.
    /// `screens` begins with the primary screen. `pictureSize` returns the size of the picture of
    /// the window at a position in `windows`.
    WindowOutlines(const QList<Window> &windows, const QList<QRect> &screens,
                   const std::function<QSize(int)> &pictureSize);

    /// The pick for a point; 0 if no window contains it. Windows whose pick is `leftOut` are
    /// skipped.
    int pick(QPoint point, const std::function<bool(int)> &leftOut) const;
    /// The part of a picked window that no other window covers; empty if there is no pick.
    QPolygon visible(int pick) const;

    const QList<QPolygon> &rawPolygons() const { return m_rawPolygons; }
    const QList<QPolygon> &visiblePolygons() const { return m_visiblePolygons; }
    /// The position of the widest menu bar among the outlines; -2 if there is none.
    int menuBarIndex() const { return m_menuBarIndex; }

private:
    void cutVisible();

    QList<QPolygon> m_rawPolygons;
    QList<QPolygon> m_visiblePolygons;
    int m_menuBarIndex = -2;
};
