#pragma once

#include "base/fileidentity.h"
#include "editing/shapes.h"

#include <QDateTime>
#include <QImage>
#include <QList>
#include <QString>

#include <optional>

struct PictureProgress;

/// Where a picture comes from, as far as it is known.
struct PictureOrigin {
    QDateTime time{};       ///< of the grab
    QString kind{};         ///< of the grab: "rectangle", "window" and the like
    QString application{};  ///< that was in front
    QString title{};        ///< of its window
};

/// What can't be got back from anywhere else of a picture that is not saved.
struct UnsavedWork {
    EditHistory shapes{};
    EditHistory undone{};
    QString name{};   ///< path of the file that the document is bound to, or the grab's name
    int number = -1;  ///< running number of an unsaved document; -1 for one bound to a file
    std::optional<FileIdentity> file{};  ///< the file when it was last read or written
    PictureOrigin origin{};
};

/// The folder in which unsaved pictures wait for the next start: a folder an entry, with the
/// picture without its shapes, and everything else in a file beside it. Each file is written whole
/// and is the user's alone. Nothing here is kept between calls; all of it runs in any thread, but
/// an entry is one thread's at a time.
class RecoveryFolder
{
public:
    explicit RecoveryFolder(QString path) : m_path(std::move(path)) {}

    struct Entry {
        QString name{};           ///< of its folder
        bool hasPicture = false;  ///< else it is in the file still, which nobody has changed
        UnsavedWork work{};
    };
    struct Content {
        QList<Entry> entries{};  ///< the oldest first
        QStringList damaged{};   ///< paths of the folders, where they are now: set aside
        QStringList newer{};     ///< of a later version of the program; left alone
    };
    /// Whether there is anything to read.
    bool isEmpty() const;
    Content read() const;
    /// The picture of an entry. Null for one that is damaged, which is then to be set aside.
    QImage picture(const Entry &entry) const;
    /// Takes an entry that can't be used out of the way, and gives the folder in which it is now.
    QString setAside(const QString &entry) const;

    /// The name of a new entry. Its folder is made with the first file in it.
    static QString newName();
    // Empty where it worked, else the reason for the user.
    QString writePicture(const QString &entry, const QImage &picture,
                         PictureProgress &progress) const;
    QString writeWork(const QString &entry, const UnsavedWork &work) const;
    void remove(const QString &entry) const;

private:
    QString makeEntry(const QString &entry) const;
    QString pathOf(const QString &entry) const { return m_path + u'/' + entry; }

    QString m_path;
};
