#pragma once

#include "platform/hotkeys.h"

#include <memory>

struct Services;

/// Fills `services` with ones that show no windows, give no pictures and hear no keys, and says so
/// in their abilities. Always returns true.
bool createNullDesktop(Services &services);

/// Hot keys for a desktop that lets no program have any.
std::unique_ptr<HotKeys> noHotKeys();
