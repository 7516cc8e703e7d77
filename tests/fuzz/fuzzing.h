#pragma once

#include <QByteArray>
#include <QString>

#include <cstdio>
#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

/// Ends the process, as the sanitizers do, where what has to be true is not.
inline void require(bool isTrue, const char *what)
{
    if (isTrue)
        return;
    std::fprintf(stderr, "not true: %s\n", what);
    std::abort();
}
#define REQUIRE(condition) require(condition, #condition)

/// A file in memory, for those who read files.
class FuzzFile
{
public:
    FuzzFile() : m_file(memfd_create("fuzz", MFD_CLOEXEC)) {}
    ~FuzzFile() { close(m_file); }
    FuzzFile(const FuzzFile &) = delete;
    FuzzFile &operator=(const FuzzFile &) = delete;

    void fill(const QByteArray &bytes)
    {
        REQUIRE(ftruncate(m_file, 0) == 0);
        REQUIRE(pwrite(m_file, bytes.constData(), bytes.size(), 0) == bytes.size());
    }
    QString path() const { return QStringLiteral("/proc/self/fd/%1").arg(m_file); }

private:
    int m_file;
};
