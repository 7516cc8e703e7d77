#include "platform/services.h"

#include "platform/nulldesktop.h"
#include "platform/x11/x11desktop.h"
#include "platform/xdg/autostart.h"
#include "platform/xdg/busaccessibility.h"

#include <QCoreApplication>

#include <array>

namespace {

using Factory = bool (*)(Services &);

// The first desktop that is available is used; the null desktop always is.
constexpr std::array<Factory, 2> s_desktops{createX11Desktop, createNullDesktop};

Services s_services;

// The X server of a Wayland session shows this program only its own windows; all others are black.
bool isWaylandSession()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           qgetenv("XDG_SESSION_TYPE") == "wayland";
}

}  // namespace

Services createServices()
{
    Services result;
    for (const Factory create : s_desktops) {
        if (create(result))
            break;
    }
    if (isWaylandSession())
        result.abilities.withhold(
            everyAbility,
            QCoreApplication::translate(
                "Abilities", "Pictures of the screen can't be taken in a Wayland session yet. Log "
                             "in to an X11 session for that; opening and editing pictures works "
                             "here too."));
    result.loginItem = std::make_unique<Autostart>();
    result.clock = std::make_unique<SystemClock>();
    result.accessibility = std::make_unique<BusAccessibility>();
    return result;
}

QString accessibilityBusOfDesktop() { return accessibilityBusOfX11(); }

Services &services() { return s_services; }

void installServices(Services services) { s_services = std::move(services); }
