#pragma once

#include <QObject>
#include <QString>

class QImage;

/// Files of the program's own that are handed to other programs: pictures that are in no file, or
/// not as they are seen. Only the user can read them, and they go when this object does; those that
/// a run which was cut off has left go first.
class HandedFiles : public QObject
{
    Q_OBJECT

public:
    /// `base` is a folder of the program's.
    HandedFiles(QString base, QObject *parent);
    ~HandedFiles() override;

    /// Writes a picture as PNG under that name, or what can be a file's name of it. Gives the path,
    /// or nothing where it can't be written; `failure` says why then.
    QString write(const QImage &picture, const QString &name, QString &failure);
    /// Nobody wants it after all.
    void remove(const QString &path);

private:
    QString m_base;
    int m_count = 0;
};
