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
            // In the place of the dock's own, and once more in that of this window: it is meant.
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
        // Any other window of the dock's level repeats the outline before it, on purpose.
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
        // Left out here and not there, an empty outline shifts the tints behind it; it stands so.
        if (visible.isEmpty())
            continue;
        for (qsizetype j = k + 1; j < m_rawPolygons.size(); ++j) {
            const QRect cover = m_rawPolygons[j].boundingRect();
            // A window that another one covers entirely keeps its outline, and can be picked.
            if (cover.intersects(visible.boundingRect()) && !cover.contains(visible.boundingRect()))
                visible = visible.subtracted(m_rawPolygons[j]);
        }
        m_visiblePolygons.append(visible);
    }
}

int WindowOutlines::pick(QPoint point, int current, const std::function<bool(int)> &leftOut) const
{
    for (qsizetype i = 1; i <= m_rawPolygons.size(); ++i) {
        const qsizetype index = m_rawPolygons.size() - i;
        if (index == m_menuBarIndex || !m_rawPolygons[index].containsPoint(point, Qt::WindingFill))
            continue;
        if (i == current)
            break;
        if (!leftOut(static_cast<int>(i)))
            return static_cast<int>(i);
    }
    return current;
}

QPolygon WindowOutlines::visible(int pick) const
{
    if (pick <= 0 || pick > m_rawPolygons.size())
        return {};
    return m_visiblePolygons.value(m_visiblePolygons.size() - pick);
}
