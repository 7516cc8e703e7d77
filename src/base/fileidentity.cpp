#include "base/fileidentity.h"

#include <QFile>

#include <sys/stat.h>

namespace {

constexpr qint64 s_second = 1'000'000'000;  // ns

FileIdentity identityOf(const struct stat &file)
{
    return {.device = file.st_dev,
            .inode = file.st_ino,
            .size = file.st_size,
            .written = file.st_mtim.tv_sec * s_second + file.st_mtim.tv_nsec};
}

}  // namespace

std::optional<FileIdentity> FileIdentity::of(const QString &path)
{
    struct stat file {
    };
    if (stat(QFile::encodeName(path).constData(), &file) != 0)
        return {};
    return identityOf(file);
}

std::optional<FileIdentity> FileIdentity::of(int descriptor)
{
    struct stat file {
    };
    if (fstat(descriptor, &file) != 0)
        return {};
    return identityOf(file);
}
