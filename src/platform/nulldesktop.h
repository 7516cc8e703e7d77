#pragma once

struct Services;

/// Fills `services` with ones that show no windows, give no pictures and hear no keys. Always
/// returns true.
bool createNullDesktop(Services &services);
