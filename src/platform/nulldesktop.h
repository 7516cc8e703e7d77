#pragma once

struct Services;

/// Fills `services` with ones that show no windows, give no pictures and hear no keys, and says so
/// in their abilities. Always returns true.
bool createNullDesktop(Services &services);
