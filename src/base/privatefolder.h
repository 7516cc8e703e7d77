#pragma once

#include <QString>
#include <QStringList>

/// A folder that nobody but the user can look into or put anything in the way of: `names`, one in
/// the other, in `base`, which is made where it is missing. Each of the names is a folder of the
/// user's own, no link, and closed to others; one that others could write to until now is refused,
/// since what lies there may be theirs.
class PrivateFolder
{
public:
    PrivateFolder(QString base, QStringList names);

    QString path() const;
    /// Makes it where it is missing, and closes it. False where it can't be had; error() says why.
    bool make();
    /// Takes away all that lies in it, and the folder itself. One that can't be had is left alone.
    void remove();
    QString error() const { return m_error; }

private:
    bool reach(bool isMade);

    QString m_base;
    QStringList m_names;
    QString m_error;
};
