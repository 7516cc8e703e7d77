#include "base/memory.h"

#include <QFile>
#include <QList>

#include <algorithm>
#include <limits>
#include <optional>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 s_noLimit = std::numeric_limits<qint64>::max();
constexpr qint64 s_kilobyte = 1024;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The number that follows `word` in the line that begins with it.
std::optional<qint64> numberIn(const QByteArray &text, const QByteArray &word)
{
    for (const QByteArray &line : text.split('\n')) {
        const QList<QByteArray> parts = line.simplified().split(' ');
        if (parts.size() < 2 || parts[0] != word)
            continue;
        bool isNumber = false;
        const qint64 number = parts[1].toLongLong(&isNumber);
        if (isNumber)
            return number;
    }
    return {};
}

// Memory filled with cached files counts as free, as it does in the machine's own number.
qint64 leftInGroup(const QString &folder, const QString &limitName, const QString &usedName,
                   const QByteArray &filesWord)
{
    bool isLimit = false;
    bool isUsed = false;
    const qint64 limit = contentOf(folder + limitName).trimmed().toLongLong(&isLimit);
    const qint64 used = contentOf(folder + usedName).trimmed().toLongLong(&isUsed);
    if (!isLimit || !isUsed)
        return s_noLimit;
    const qint64 files = numberIn(contentOf(folder + u"/memory.stat"_s), filesWord).value_or(0);
    return std::max<qint64>(0, limit - std::max<qint64>(0, used - files));
}

}  // namespace

qint64 availableMemory(const QString &root)
{
    const std::optional<qint64> machine =
        numberIn(contentOf(root + u"/proc/meminfo"_s), "MemAvailable:");
    qint64 result = machine ? *machine * s_kilobyte : s_noLimit;
    for (const QByteArray &line : contentOf(root + u"/proc/self/cgroup"_s).split('\n')) {
        // The fields of a line are a number, the controllers (none in the single hierarchy of
        // version 2) and the path.
        const QList<QByteArray> parts = line.split(':');
        if (parts.size() < 3)
            continue;
        const bool isOneTree = parts[1].isEmpty();
        if (!isOneTree && !parts[1].split(',').contains("memory"))
            continue;
        const QString top = root + (isOneTree ? u"/sys/fs/cgroup"_s : u"/sys/fs/cgroup/memory"_s);
        QString path = QFile::decodeName(parts.mid(2).join(':'));
        while (path.endsWith(u'/'))
            path.chop(1);
        for (;;) {
            const qint64 left =
                isOneTree ? leftInGroup(top + path, u"/memory.max"_s, u"/memory.current"_s,
                                        "inactive_file")
                          : leftInGroup(top + path, u"/memory.limit_in_bytes"_s,
                                        u"/memory.usage_in_bytes"_s, "total_inactive_file");
            result = std::min(result, left);
            if (path.isEmpty())
                break;
            path.truncate(path.lastIndexOf(u'/'));
        }
    }
    return result;
}

qint64 totalMemory() { return sysconf(_SC_PHYS_PAGES) * qint64{sysconf(_SC_PAGESIZE)}; }
