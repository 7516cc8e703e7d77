#pragma once

#include <QString>

/// Bytes that can still be used: what the machine has, or what the control group leaves that this
/// process is in, or one of those around it. `root` is the folder in which the system's own files
/// are found. Without them there is no limit.
qint64 availableMemory(const QString &root = {});
/// Bytes that the machine has.
qint64 totalMemory();
