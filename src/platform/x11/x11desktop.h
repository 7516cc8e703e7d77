#pragma once

#include <QString>

struct Services;

/// Creates the services for an X server. Returns false and sets nothing if the toolkit is not
/// connected to one.
bool createX11Desktop(Services &services);

/// The address of the accessibility bus that the desktop has stored on the X server; empty if there
/// is none.
QString accessibilityBusOfX11();
