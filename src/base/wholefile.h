#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

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
    explicit WholeFile(QString path) : m_path(std::move(path)) {}

    /// False when the file could not be written; it is as it was then. The bytes have reached the
    /// disk when this returns.
    bool write(const QByteArray &bytes);
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
    QString m_path;
    int m_error = 0;
};
