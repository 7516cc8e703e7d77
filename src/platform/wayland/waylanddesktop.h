#pragma once

struct Services;

/// Creates the services for a Wayland compositor that hands out pictures of its screens by
/// screencopy. Creates nothing, and returns false, on any other desktop.
bool createWaylandDesktop(Services &services);
