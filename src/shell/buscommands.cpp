#include "shell/buscommands.h"

#include "shell/mainwindow.h"

#include <array>

namespace {

// In the order of the hot keys, from 1. Users bind keys to these names, and the desktop entry has
// them: a name that has been given out stays.
constexpr std::array<const char *, 8> s_actions{
    "capture-rectangle", "capture-ellipse", "capture-polygon",          "capture-windows",
    "capture-window",    "capture-screen",  "capture-screen-countdown", "capture-menu"};

}  // namespace

ApplicationBus::Handlers busCommands()
{
    ApplicationBus::Handlers handlers;
    handlers.activate = [] {
        if (g_MainWindow)
            g_MainWindow->comeForward();
    };
    handlers.open = [](const QStringList &paths) {
        if (!g_MainWindow)
            return;
        g_MainWindow->openPictures(paths);
        g_MainWindow->comeForward();
    };
    for (std::size_t i = 0; i < s_actions.size(); ++i) {
        handlers.actions.insert(QString::fromLatin1(s_actions[i]),
                                [number = static_cast<long>(i) + 1] { HotkeyCallBack(number, 0); });
    }
    return handlers;
}
