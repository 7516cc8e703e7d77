#pragma once

#include <QFile>

#include <malloc.h>
#include <unistd.h>

/// What this process has in memory, with freed memory given back first.
inline double residentBytes()
{
    malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').at(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE));
}

/// The most that it has had since the start, or since it was told to forget.
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
