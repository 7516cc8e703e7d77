#include "base/privatefolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

PrivateFolder::PrivateFolder(QString base, QStringList names)
    : m_base(std::move(base)), m_names(std::move(names))
{
}

QString PrivateFolder::path() const { return m_base + u'/' + m_names.join(u'/'); }

bool PrivateFolder::make()
{
    QDir().mkpath(m_base);
    return reach(true);
}

void PrivateFolder::remove()
{
    // removeRecursively() removes symbolic links without following them.
    if (reach(false))
        QDir(path()).removeRecursively();
}

// Opens each folder relative to its parent, so that nobody can exchange a folder on the way.
bool PrivateFolder::reach(bool isMade)
{
    constexpr int how = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    m_error.clear();
    int folder = open(QFile::encodeName(m_base).constData(), how);
    for (const QString &name : m_names) {
        if (folder < 0)
            break;
        const QByteArray entry = QFile::encodeName(name);
        if (isMade)
            mkdirat(folder, entry.constData(), S_IRWXU);
        const int next = openat(folder, entry.constData(), how | O_NOFOLLOW);
        const int reason = errno;
        close(folder);
        errno = reason;
        folder = next;
        struct stat state {
        };
        if (folder < 0 || fstat(folder, &state) != 0)
            break;
        if (state.st_uid != geteuid() || (state.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
            close(folder);
            m_error = QCoreApplication::translate(
                "PrivateFolder", "It belongs to somebody else, or others may write to it.");
            return false;
        }
        if ((state.st_mode & ALLPERMS) != S_IRWXU && fchmod(folder, S_IRWXU) != 0) {
            m_error = qt_error_string(errno);
            close(folder);
            return false;
        }
    }
    if (folder < 0) {
        m_error = qt_error_string(errno);
        return false;
    }
    close(folder);
    return true;
}
