#include "platform/services.h"

#include "platform/nulldesktop.h"
#include "platform/wayland/waylanddesktop.h"
#include "platform/x11/x11desktop.h"
#include "platform/xdg/autostart.h"
#include "platform/xdg/busaccessibility.h"
#include "platform/xdg/busnotifications.h"

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QLibraryInfo>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

using Factory = bool (*)(Services &);

// The first desktop that is available is used; the null desktop always is.
constexpr std::array<Factory, 3> s_desktops{createX11Desktop, createWaylandDesktop,
                                            createNullDesktop};

Services s_services;

bool isWaylandSession()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           qgetenv("XDG_SESSION_TYPE") == "wayland";
}

bool hasWaylandPlugin()
{
    const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) + u"/platforms"_s);
    return !plugins.entryList({u"libqwayland*"_s}, QDir::Files).isEmpty();
}

// Why a Wayland session gives this program no pictures. Its X server shows a program only the
// windows of X programs; all others are black.
QString troubleWithWayland()
{
    if (QGuiApplication::platformName() != u"xcb")
        return QCoreApplication::translate(
            "Abilities", "This Wayland desktop gives programs no pictures of the screen in a way "
                         "that is known here. Log in to an X11 session for that; opening and "
                         "editing pictures works here too.");
    if (hasWaylandPlugin())
        return QCoreApplication::translate(
            "Abilities", "Pictures of the screen can't be taken here, since the program was "
                         "started for X11 in a Wayland session. Start it without "
                         "QT_QPA_PLATFORM=xcb.");
    return QCoreApplication::translate(
        "Abilities", "Pictures of the screen can't be taken here, since the package qt6-wayland "
                     "is missing. Install it, and start the program again; opening and editing "
                     "pictures works meanwhile.");
}

}  // namespace

Services createServices()
{
    Services result;
    const auto *const created = std::find_if(s_desktops.begin(), s_desktops.end(),
                                             [&](Factory create) { return create(result); });
    if (isWaylandSession() && *created != createWaylandDesktop)
        result.abilities.withhold(everyAbility, troubleWithWayland());
    result.loginItem = std::make_unique<Autostart>();
    result.clock = std::make_unique<SystemClock>();
    result.accessibility = std::make_unique<BusAccessibility>();
    result.notifications = std::make_unique<BusNotifications>();
    return result;
}

QString accessibilityBusOfDesktop() { return accessibilityBusOfX11(); }

Services &services() { return s_services; }

void installServices(Services services) { s_services = std::move(services); }
