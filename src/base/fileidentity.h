#pragma once

#include <QString>

#include <optional>

/// Identifies the file that a path leads to, through symbolic links, and its state. Two identities
/// are equal if the file was neither written nor replaced in between.
struct FileIdentity {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 written = 0;  ///< nanoseconds since 1970

    bool operator==(const FileIdentity &other) const = default;
    /// Whether this is the same file, possibly in another state.
    bool isSameFile(const FileIdentity &other) const
    {
        return device == other.device && inode == other.inode;
    }

    /// No value if there is no such file.
    static std::optional<FileIdentity> of(const QString &path);
    static std::optional<FileIdentity> of(int descriptor);
};
