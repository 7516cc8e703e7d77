#pragma once

#include <QString>

struct Services;

/// The services on an X server. False, with nothing set, where the toolkit runs on something else.
bool createX11Desktop(Services &services);

/// The address of the accessibility bus, as the desktop has left it on its X server; empty where it
/// has not.
QString accessibilityBusOfX11();
