#pragma once

struct Services;

/// A desktop that shows no windows, gives no pictures and hears no keys. Always true.
bool createNullDesktop(Services &services);
