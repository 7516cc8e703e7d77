#pragma once

#include <QFile>

#include <malloc.h>
#include <unistd.h>

/// The resident memory of this process in bytes, after freed memory has been returned to the
/// system.
inline double residentBytes()
{
    malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').at(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE));
}

/// The highest resident memory in bytes since the start or since forgetHighestBytes().
inline double highestBytes()
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : file.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.simplified().split(' ').at(1).toDouble() * 1024;
    return 0;
}

inline void forgetHighestBytes()
{
    QFile peak(QStringLiteral("/proc/self/clear_refs"));
    if (peak.open(QIODevice::WriteOnly))
        peak.write("5");
}
