#pragma once

#include "base/clock.h"
#include "platform/abilities.h"
#include "platform/accessibility.h"
#include "platform/applicationwatch.h"
#include "platform/hands.h"
#include "platform/hotkeys.h"
#include "platform/keywatch.h"
#include "platform/loginitem.h"
#include "platform/notifications.h"
#include "platform/ownwindows.h"
#include "platform/pictures.h"
#include "platform/screens.h"
#include "platform/windowcatalogue.h"

#include <memory>

/// The services that the program needs from the desktop. Every member is set: if the desktop lacks
/// a service, the member is one that does nothing.
struct Services {
    std::unique_ptr<Screens> screens{};
    std::unique_ptr<Pictures> pictures{};
    std::unique_ptr<WindowCatalogue> windows{};
    std::unique_ptr<OwnWindows> ownWindows{};
    std::unique_ptr<Hands> hands{};
    std::unique_ptr<HotKeys> hotKeys{};
    std::unique_ptr<KeyWatch> keys{};
    std::unique_ptr<ApplicationWatch> watch{};
    std::unique_ptr<LoginItem> loginItem{};
    std::unique_ptr<Accessibility> accessibility{};
    std::unique_ptr<Notifications> notifications{};
    std::unique_ptr<Clock> clock{};
    Abilities abilities{};
};

/// Creates the services for the desktop that the toolkit is connected to. Needs a QGuiApplication.
Services createServices();

/// Where the desktop's window system says that the accessibility bus is; empty where it says
/// nothing. Needs no services.
QString accessibilityBusOfDesktop();

/// The installed services. They are installed once, by main or by a test that has its own desktop.
Services &services();
void installServices(Services services);
