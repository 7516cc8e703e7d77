#pragma once

#include "base/fileidentity.h"
#include "editing/history.h"

#include <QDateTime>
#include <QImage>
#include <QList>
#include <QString>

#include <optional>

struct PictureProgress;

/// The origin of a picture, as far as it is known.
struct PictureOrigin {
    QDateTime time{};       ///< time of the grab
    QString kind{};         ///< kind of the grab: "rectangle", "window" and so on
    QString application{};  ///< the application that was active
    QString title{};        ///< title of its window
};

/// The data of an unsaved picture that is stored nowhere else.
struct UnsavedWork {
    EditHistory shapes{};
    EditHistory undone{};
    QString name{};   ///< path of the document's file, or the name of the grab
    int number = -1;  ///< running number of an unsaved document; -1 if bound to a file
    std::optional<FileIdentity> file{};  ///< identity of the file when it was last read or written
    bool isFileKept = false;  ///< the file is never written over, see PictureRead::isFromLater
    PictureOrigin origin{};
    /// Its covers were handed on, and what they hide is not kept any more: there are no histories,
    /// and the picture is the one with all shapes. Not part of what is written.
    bool isCovered = false;
};

/// The folder in which unsaved pictures are kept for the next start. Each entry is a folder with
/// the picture without its shapes, and a file with all other data. Each file is written completely
/// or not at all, and only the user can read it. This class keeps no state between calls. It may be
/// used on any thread, but an entry by one thread at a time only.
class RecoveryFolder
{
public:
    explicit RecoveryFolder(QString path) : m_path(std::move(path)) {}

    struct Entry {
        QString name{};           ///< name of its folder
        bool hasPicture = false;  ///< if not, the picture is still in its unchanged file
        UnsavedWork work{};
    };
    struct Content {
        QList<Entry> entries{};  ///< oldest first
        QStringList damaged{};   ///< paths of the folders, after they have been moved aside
        QStringList newer{};  ///< paths of entries of a later program version, which are left alone
    };
    /// Whether there is nothing to read.
    bool isEmpty() const;
    Content read() const;
    /// The picture of an entry. Null if it is damaged; the caller then calls setAside().
    QImage picture(const Entry &entry) const;
    /// Moves an unusable entry aside. Returns its new folder.
    QString setAside(const QString &entry) const;

    /// A name for a new entry. Its folder is created with its first file.
    static QString newName();
    // Both return an empty text on success, else the reason for the user.
    QString writePicture(const QString &entry, const QImage &picture,
                         PictureProgress &progress) const;
    QString writeWork(const QString &entry, const UnsavedWork &work) const;
    void remove(const QString &entry) const;

private:
    QString makeEntry(const QString &entry) const;
    QString pathOf(const QString &entry) const { return m_path + u'/' + entry; }

    QString m_path;
};
