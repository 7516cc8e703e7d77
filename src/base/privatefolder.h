#pragma once

#include <QString>
#include <QStringList>

/// A folder that only the user can read and write: `names`, nested in each other, inside `base`,
/// which is created if it is missing. Each of the named folders must belong to the user and must
/// not be a symbolic link, and is closed to others. A folder that others could write to until now
/// is refused, since its content may be theirs.
class PrivateFolder
{
public:
    PrivateFolder(QString base, QStringList names);

    QString path() const;
    /// Creates the folder if it is missing, and closes it to others. Returns false if that fails;
    /// error() tells why.
    bool make();
    /// Removes the folder with all its content. Does nothing if the folder is not the user's own.
    void remove();
    QString error() const { return m_error; }

private:
    bool reach(bool isMade);

    QString m_base;
    QStringList m_names;
    QString m_error;
};
