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
