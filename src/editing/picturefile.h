#pragma once

#include "base/fileidentity.h"
#include "base/wholefile.h"
#include "editing/shapes.h"

#include <QImage>
#include <QString>

#include <atomic>
#include <optional>

/// How far a picture has been read or written, and the wish to give up. One thread works, others
/// look.
struct PictureProgress {
    std::atomic<int> permille{0};
    std::atomic<bool> isCancelled{false};
};

struct PictureRead {
    QImage picture{};                    ///< in the format of a pixmap; null where it failed
    QString failure{};                   ///< why, for the user; empty when it was cancelled
    std::optional<FileIdentity> file{};  ///< the file that was read
};

/// Reads a picture file, on any thread. Only a regular file is opened, nothing that it refers to is
/// read. A picture that needs more than half of the memory there is, is refused, unless this
/// program has taken it itself.
PictureRead readPicture(const QString &path, PictureProgress &progress, bool isOwn = false);

struct PictureWrite {
    bool isWritten = false;
    QString failure{};                   ///< why not, for the user; empty when it was cancelled
    std::optional<FileIdentity> file{};  ///< the file that was written
};

/// Writes the picture with its shapes, on any thread. `format` empty and `quality` -1 leave the
/// choice to the path and the toolkit. A file that was there is as it was unless the picture was
/// written. Formats that are written row by row take little memory beyond the picture's own.
PictureWrite writePicture(const QImage &picture, const EditHistory &shapes, const QString &path,
                          const QByteArray &format, int quality, PictureProgress &progress,
                          WholeFile::Readers readers = WholeFile::Readers::Usual);

/// Bytes up to which a picture is decoded whose file does not tell its size: what a machine with
/// nothing else to do would allow.
qint64 largestUntoldPicture();
