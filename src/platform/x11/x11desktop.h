#pragma once

struct Services;

/// The services on an X server. False, with nothing set, where the toolkit runs on something else.
bool createX11Desktop(Services &services);
