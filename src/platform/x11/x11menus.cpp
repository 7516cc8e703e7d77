#include "platform/x11/x11menus.h"

#include "platform/x11/x11screens.h"
#include "platform/x11/x11toplevel.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

bool isMenu(X11Display &display, const X11TopLevel &window, xcb_window_t focus)
{
    const QList<uint32_t> types =
        display.values(window.frame, display.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM);
    const xcb_atom_t managed = display.atom("WM_STATE");
    // Some window managers have menus of their own, whose windows nobody else could manage.
    if (isMenuType(display, types))
        return window.unmanaged || display.values(window.frame, managed, managed).isEmpty();
    const bool isTold =
        !types.isEmpty() && types.first() != display.atom("_NET_WM_WINDOW_TYPE_NORMAL");
    return window.unmanaged && !isTold && display.isSameClient(window.frame, focus);
}

}  // namespace

bool isMenuType(X11Display &display, const QList<uint32_t> &types)
{
    constexpr std::array<std::string_view, 4> menus{
        "_NET_WM_WINDOW_TYPE_POPUP_MENU", "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU",
        "_NET_WM_WINDOW_TYPE_MENU", "_NET_WM_WINDOW_TYPE_COMBO"};
    return std::any_of(menus.begin(), menus.end(),
                       [&](std::string_view name) { return types.contains(display.atom(name)); });
}

int openMenus(X11Display &display)
{
    const QList<Screens::Screen> screens = X11Screens(display).all();
    xcb_connection_t *connection = display.connection();
    const auto front = XCB_REPLY(connection, get_input_focus, xcb_get_input_focus(connection));
    int result = 0;
    for (const X11TopLevel &window : topLevels(display)) {
        if (!window.onScreen)
            continue;
        if (std::any_of(screens.begin(), screens.end(), [&window](const Screens::Screen &screen) {
                return window.bounds.contains(screen.area);
            }))
            break;
        result += front && isMenu(display, window, front->focus) ? 1 : 0;
    }
    return result;
}
