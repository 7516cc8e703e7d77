#include "platform/wayland/waylandownwindows.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

QList<PanePlace> WaylandOwnWindows::panes()
{
    const ScreenLayout layout = m_connection->layout();
    QList<PanePlace> result;
    for (const ScreenLayout::Screen &screen : layout.screens())
        result.append({screen.area, layout.scale(), screen.logical.topLeft()});
    return result;
}

void WaylandOwnWindows::coverArea(QWidget *window, const QRect &area)
{
    const ScreenLayout layout = m_connection->layout();
    const auto place = std::find_if(layout.screens().begin(), layout.screens().end(),
                                    [&area](const auto &screen) { return screen.area == area; });
    if (place == layout.screens().end())
        return;
    for (QScreen *screen : QGuiApplication::screens()) {
        if (screen->name() == place->name)
            window->setScreen(screen);
    }
    window->setGeometry(place->logical);
    window->setWindowState(Qt::WindowFullScreen);
}

// The toolkit would end a dialog that it hides. All windows of this program that are there become
// transparent together, since the compositor's names for them are not known here.
void WaylandOwnWindows::setOnScreen(QWidget *window, bool onScreen)
{
    const bool wasOn = m_offScreen.isEmpty();
    if (onScreen)
        m_offScreen.remove(window);
    else
        m_offScreen.insert(window);
    if (m_offScreen.isEmpty() != wasOn)
        m_windows.setOwnSeen(!wasOn);
}
