#pragma once

#include <QString>

#include <optional>

/// Which file a path leads to, through symbolic links, and which state of it. Two are equal when
/// nobody has written or replaced the file in between.
struct FileIdentity {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 written = 0;  ///< nanoseconds since 1970

    bool operator==(const FileIdentity &other) const = default;
    /// The same file, if in another state.
    bool isSameFile(const FileIdentity &other) const
    {
        return device == other.device && inode == other.inode;
    }

    /// Nothing where there is no file.
    static std::optional<FileIdentity> of(const QString &path);
    static std::optional<FileIdentity> of(int descriptor);
};
