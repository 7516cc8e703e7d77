#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

#include <memory>

/// Writes a file completely or not at all: if writing fails or the program is killed, the file
/// still holds all of its old bytes or already holds all of the new ones. A file that is replaced
/// keeps its owner, mode, access list and extended attributes. A symbolic link is kept, and the
/// file that it points to is written.
///
/// Some files can't be replaced by a new file, because the folder doesn't allow it or because the
/// owner or other hard links would be lost. They are overwritten in place. The new bytes are first
/// stored in the spare folder, so that the next start can finish a write that was interrupted.
class WholeFile
{
public:
    /// Who can read a newly created file: everybody that the umask allows, or only the user.
    enum class Readers { Usual, User };
    explicit WholeFile(QString path, Readers readers = Readers::Usual);
    /// Discards what was not committed.
    ~WholeFile();

    /// Adds to the new content; the file itself is left alone. Returns false if there is no room or
    /// the file can't be written; commit() then returns false, too.
    bool append(QByteArrayView bytes);
    /// Replaces the file's content by what was appended. Returns false if the file could not be
    /// written; it then has its old content. The bytes are on the disk when this returns.
    bool commit();
    /// append() and commit() in one call.
    bool write(const QByteArray &bytes) { return append(bytes) && commit(); }
    /// Whether the file could not be written.
    bool hasFailed() const { return m_error != 0; }
    /// The reason, in the system's words.
    QString error() const;

    /// Sets the folder for the bytes of files that are written in place. It is created when it is
    /// needed, for the user alone. Without a spare folder such files are not written.
    static void setSpareFolder(const QString &folder);

    /// A write that could not be finished, because the file has been changed since or can't be
    /// written any more.
    struct Unfinished {
        QString path{};  ///< path of the file
        QString copy{};  ///< path of the new content, in the spare folder
    };
    /// Finishes the writes that an earlier run began. Returns those that can't be finished, once;
    /// their copies are kept.
    static QList<Unfinished> finishWrites();

private:
    struct Writing;

    bool end(bool isDone);

    QString m_path;
    Readers m_readers;
    std::unique_ptr<Writing> m_writing;  ///< from the first byte to the commit
    int m_error = 0;
};
