#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

#include <memory>

/// Writes a file whole or not at all: whatever fails, and whenever the program is killed, the file
/// holds all of its old bytes or all of the new ones. One that is replaced keeps its owner, mode,
/// access list and extended attributes; a symbolic link stays, and the file that it names is
/// written.
///
/// Some files can't be replaced by a new one: the folder allows none, or the owner or other hard
/// links would be lost. The new bytes then lie in the spare folder before any of them is written
/// into the file in place, so that the next start can finish what was cut off.
class WholeFile
{
public:
    /// Who can read a file that is new: whom the user's mask lets, or the user alone.
    enum class Readers { Usual, User };
    explicit WholeFile(QString path, Readers readers = Readers::Usual);
    /// Gives up what was not committed.
    ~WholeFile();

    /// Takes the next of the new bytes; the file stays as it is. False when there is no room, or
    /// the file can't be written: commit() is false then as well.
    bool append(QByteArrayView bytes);
    /// Puts what was appended into the file, all at once. False when the file could not be
    /// written; it is as it was then. The bytes have reached the disk when this returns.
    bool commit();
    /// Both, with all of the bytes.
    bool write(const QByteArray &bytes) { return append(bytes) && commit(); }
    /// Whether the file could not be written.
    bool hasFailed() const { return m_error != 0; }
    /// Why not, in the system's words.
    QString error() const;

    /// Where bytes lie that have to be written in place. Made when it is needed, for the user
    /// alone. Without one such a file is not written.
    static void setSpareFolder(const QString &folder);

    /// A write that could not be finished, since the file has become another one or can't be
    /// written any more.
    struct Unfinished {
        QString path{};  ///< of the file
        QString copy{};  ///< what it was to hold, in the spare folder
    };
    /// Finishes what an earlier run was kept from finishing. What can't be is told once, and its
    /// copy stays.
    static QList<Unfinished> finishWrites();

private:
    struct Writing;

    bool end(bool isDone);

    QString m_path;
    Readers m_readers;
    std::unique_ptr<Writing> m_writing;  ///< from the first byte to the commit
    int m_error = 0;
};
