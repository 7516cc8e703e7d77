#pragma once

#include "base/fileidentity.h"
#include "base/wholefile.h"
#include "editing/history.h"

#include <QImage>
#include <QString>

#include <atomic>
#include <optional>

/// The progress of reading or writing a picture, and the request to cancel. One thread works,
/// others read the progress.
struct PictureProgress {
    std::atomic<int> permille{0};
    std::atomic<bool> isCancelled{false};
};

struct PictureRead {
    QImage picture{};                    ///< in a pixmap's format; null on failure
    QString failure{};                   ///< the reason for the user; empty if it was cancelled
    std::optional<FileIdentity> file{};  ///< the file that was read
    EditHistory shapes{};                ///< what a layered file has besides, in the picture
    QString notice{};                    ///< what of the file was left out, for the user
    bool isFromLater = false;  ///< it has shapes of a later version, and must not be written over
};

/// Reads a picture file, layered or not; may be called on any thread. Only regular files are
/// opened, and files that they refer to are not read. A picture that needs more than half of the
/// available memory is refused, unless this program has stored it itself (`isOwn`).
PictureRead readPicture(const QString &path, PictureProgress &progress, bool isOwn = false);

struct PictureWrite {
    bool isWritten = false;
    QString failure{};                   ///< the reason for the user; empty if it was cancelled
    std::optional<FileIdentity> file{};  ///< the file that was written
};

/// Writes the picture with its shapes; may be called on any thread. The format "ora" is the one
/// that keeps them apart (layeredfile.h), all others have the pixels only. An empty `format` and
/// `quality` -1 leave the choice to the path's extension and the toolkit. On failure an existing
/// file is unchanged. Formats that are written row by row need little memory besides the picture.
PictureWrite writePicture(const QImage &picture, const EditHistory &history, const QString &path,
                          const QByteArray &format, int quality, PictureProgress &progress,
                          WholeFile::Readers readers = WholeFile::Readers::Usual);

/// The reason for the user why a picture of that many pixels is too large for the memory; empty if
/// it is not.
QString tooLarge(qint64 pixels);
/// The picture in a pixmap's format, without transparency where it has no use for it.
QImage asPixmap(QImage picture);

/// The largest picture, in bytes, that is decoded if the file does not tell its size: what a
/// machine without other load would allow.
qint64 largestUntoldPicture();
