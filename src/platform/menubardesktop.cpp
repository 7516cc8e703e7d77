#include "platform/menubardesktop.h"

#include "platform/desktoppictures.h"
#include "platform/services.h"

#include <algorithm>

namespace {

constexpr int s_barLayer = 24;  // of the bar itself
constexpr int s_menuLayer = 25;
constexpr int s_dockLayer = 20;
constexpr int s_dockPictureLayer = 19;

}  // namespace

QPixmap MenuBarDesktop::menuBarPicture()
{
    WindowCatalogue &catalogue = *services().windows;
    if (!catalogue.hasMenuBar())
        return {};
    // The bar lives as long as the session: it is looked for once.
    static int s_menuBar = 0;
    if (s_menuBar == 0) {
        const auto list = catalogue.windows(WindowCatalogue::List::OnScreen, 0);
        const auto found =
            std::find_if(list.begin() + std::min<qsizetype>(1, list.size()), list.end(),
                         [](const auto &entry) { return entry.layer == s_barLayer; });
        if (found != list.end())
            s_menuBar = found->number;
    }
    const auto which =
        s_menuBar > 0 ? WindowCatalogue::List::AtAndAbove : WindowCatalogue::List::OnScreen;
    const auto list = catalogue.windows(which, s_menuBar);
    return list.isEmpty() ? QPixmap() : desktopPicture(list.last().bounds.toRect());
}

bool MenuBarDesktop::isMenuBar(int layer) { return layer == s_menuLayer; }

bool MenuBarDesktop::isDockPicture(int layer) { return layer == s_dockPictureLayer; }

bool MenuBarDesktop::hasBounds(int layer, int layerBehind)
{
    return layer != s_dockLayer || isDockPicture(layerBehind);
}

QPolygon MenuBarDesktop::dockOutline(const QList<QRect> &screens, QSize size)
{
    const QRect screen = dockScreen(screens);
    const int left = (screen.width() - size.width()) / 2 + screen.x();
    const int right = (screen.width() + size.width()) / 2 + screen.x();
    const int top = screen.height() - size.height() + screen.y();
    const int bottom = screen.y() + screen.height();
    return {QRect(left, top, right - left, bottom - top), true};
}

QRect MenuBarDesktop::dockScreen(const QList<QRect> &screens)
{
    QRect dock = screens.value(0);
    for (qsizetype step = 1; step < screens.size(); ++step) {
        for (qsizetype j = 1; j < screens.size(); ++j) {
            const QRect &screen = screens[j];
            if (screen.y() == dock.y() + dock.height() && screen.x() != dock.width() &&
                screen.x() + screen.width() != dock.x())
                dock = screen;
        }
    }
    return dock;
}
