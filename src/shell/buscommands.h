#pragma once

#include "platform/xdg/applicationbus.h"

/// What the main window does for those who call over the session bus. Until it is complete,
/// nothing.
ApplicationBus::Handlers busCommands();
