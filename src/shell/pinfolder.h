#pragma once

#include "shell/pinnedpicture.h"

#include <QList>

/// The folder in which pins are kept for the next start: a picture each, and one file with where
/// and how they are shown. Only the user can read them, and each file is written whole or not at
/// all. May be used on any thread, but by one at a time.
class PinFolder
{
public:
    explicit PinFolder(QString path) : m_path(std::move(path)) {}

    /// A picture that can't be read is left out. One of which nothing else is known is shown as it
    /// is, in the corner.
    QList<PinnedPicture> read() const;
    /// Keeps these, and none besides. Gives why that could not be done; empty where it could.
    QString write(const QList<PinnedPicture> &pins) const;

private:
    QString fileOf(const QString &id) const;
    QString listFile() const;

    QString m_path;
};
