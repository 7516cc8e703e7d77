#include "capture/windowoutlines.h"

#include "platform/menubardesktop.h"

namespace {

QPolygon outlineOf(const QRect &bounds) { return QPolygon(bounds, true); }

}  // namespace

WindowOutlines::WindowOutlines(const QList<Window> &windows, const QList<QRect> &screens,
                               const std::function<QSize(int)> &pictureSize)
{
    QPolygon outline;
    int widest = 0;
    for (qsizetype i = 1; i < windows.size(); ++i) {
        const auto &[bounds, level] = windows[i];
        if (bounds.width() == 0 || bounds.height() == 0)
            continue;
        const int levelBehind = i + 1 < windows.size() ? windows[i + 1].level : 0;
        if (MenuBarDesktop::isDockPicture(level)) {
            outline = MenuBarDesktop::dockOutline(screens, pictureSize(static_cast<int>(i) - 1));
            // A reader would expect one outline, but it replaces the dock's own and is also added
            // for this window, on purpose.
            if (!m_rawPolygons.isEmpty())
                m_rawPolygons.removeFirst();
            m_rawPolygons.prepend(outline);
        } else if (MenuBarDesktop::hasBounds(level, levelBehind)) {
            outline = outlineOf(bounds);
            if (MenuBarDesktop::isMenuBar(level) && bounds.width() > widest) {
                m_menuBarIndex = -1;
                widest = bounds.width();
            }
        }
        // A reader would expect other windows of the dock's level to be skipped or to have their
        // own outlines, but they repeat the previous outline, on purpose.
        m_rawPolygons.prepend(outline);
        if (m_menuBarIndex >= -1)
            ++m_menuBarIndex;
    }
    cutVisible();
}

void WindowOutlines::cutVisible()
{
    for (qsizetype k = 0; k < m_rawPolygons.size(); ++k) {
        QPolygon visible = m_rawPolygons[k];
        // A reader would expect an empty entry here, so that both lists have the same positions. It
        // is skipped on purpose, although this shifts the tints of later windows.
        if (visible.isEmpty())
            continue;
        for (qsizetype j = k + 1; j < m_rawPolygons.size(); ++j) {
            const QRect cover = m_rawPolygons[j].boundingRect();
            // A reader would expect nothing of a window that is completely covered by another one,
            // but it keeps its outline and can be picked, on purpose.
            if (cover.intersects(visible.boundingRect()) && !cover.contains(visible.boundingRect()))
                visible = visible.subtracted(m_rawPolygons[j]);
        }
        m_visiblePolygons.append(visible);
    }
}

int WindowOutlines::pick(QPoint point, const std::function<bool(int)> &leftOut) const
{
    for (qsizetype i = 1; i <= m_rawPolygons.size(); ++i) {
        const qsizetype index = m_rawPolygons.size() - i;
        if (index == m_menuBarIndex || !m_rawPolygons[index].containsPoint(point, Qt::WindingFill))
            continue;
        if (!leftOut(static_cast<int>(i)))
            return static_cast<int>(i);
    }
    return 0;
}

QPolygon WindowOutlines::visible(int pick) const
{
    if (pick <= 0 || pick > m_rawPolygons.size())
        return {};
    return m_visiblePolygons.value(m_visiblePolygons.size() - pick);
}
