#pragma once

#include "base/clock.h"
#include "platform/accessibility.h"
#include "platform/applicationwatch.h"
#include "platform/hotkeys.h"
#include "platform/keywatch.h"
#include "platform/loginitem.h"
#include "platform/windowserver.h"

#include <memory>

/// What the desktop can do. Commands ask before they need it.
struct Abilities {
    bool pictures = true;  ///< this program can read what is on the screen
};

/// The services that the program needs from the desktop. Every member is set: if the desktop lacks
/// a service, the member is one that does nothing.
struct Services {
    std::unique_ptr<WindowServer> windows{};
    std::unique_ptr<HotKeys> hotKeys{};
    std::unique_ptr<KeyWatch> keys{};
    std::unique_ptr<ApplicationWatch> watch{};
    std::unique_ptr<LoginItem> loginItem{};
    std::unique_ptr<Accessibility> accessibility{};
    std::unique_ptr<Clock> clock{};
    Abilities abilities{};
};

/// Creates the services for the desktop that the toolkit is connected to. Needs a QGuiApplication.
Services createServices();

/// The installed services. They are installed once, by main or by a test that has its own desktop.
Services &services();
void installServices(Services services);
