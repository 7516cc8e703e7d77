#pragma once

#include <QString>

/// Why the desktop lets no grab begin, in words for the user; empty where it does. To be asked
/// before each.
QString captureRefusal();
