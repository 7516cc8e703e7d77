#pragma once

#include <QString>

/// The bytes of memory that this process can still use: the least of what the machine has available
/// and what the limits of its control group and the groups around that leave. `root` is the folder
/// that holds /proc and /sys, for tests. Returns the largest number if the system tells nothing.
qint64 availableMemory(const QString &root = {});
/// The machine's memory in bytes.
qint64 totalMemory();
