#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

/// What a file holds; empty where there is none.
inline QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A folder for the files of one test, in memory where that can be; it goes with the object.
struct Scratch {
    QTemporaryDir folder{(QFileInfo(QStringLiteral("/dev/shm")).isWritable()
                              ? QStringLiteral("/dev/shm")
                              : QDir::tempPath()) +
                         QStringLiteral("/test-XXXXXX")};

    QString path(const QString &name) const { return folder.filePath(name); }

    QString put(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("can't write %s", qPrintable(name));
        return file.fileName();
    }

    QByteArray get(const QString &name) const { return contentOf(path(name)); }
};
