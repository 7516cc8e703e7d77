#pragma once

#include "base/clock.h"
#include "platform/accessibility.h"
#include "platform/applicationwatch.h"
#include "platform/hotkeys.h"
#include "platform/keywatch.h"
#include "platform/loginitem.h"
#include "platform/windowserver.h"

#include <memory>

/// What the desktop can do, to be asked before a command that needs it.
struct Abilities {
    bool pictures = true;  ///< shows this program what is on the screen
};

/// What the program needs of the desktop. Every member is set: where the desktop lacks a service,
/// one that does nothing stands in.
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

/// The services of the desktop that the toolkit runs on. Needs a QGuiApplication.
Services createServices();

/// The services in force; installed once by main, or by a test with a desktop of its own.
Services &services();
void installServices(Services services);
