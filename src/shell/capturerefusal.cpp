#include "shell/capturerefusal.h"

#include "platform/services.h"
#include "shell/mainwindow.h"

QString captureRefusal()
{
    if (services().abilities.pictures)
        return {};
    return MainWindow::tr(
        "Pictures of the screen can't be taken in a Wayland session yet. Log in to an "
        "X11 session for that; opening and editing pictures works here too.");
}
