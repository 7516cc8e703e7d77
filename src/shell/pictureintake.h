#pragma once

#include <QObject>
#include <QStringList>

class Notices;
class QMimeData;
class Workbench;

/// Makes tabs of what other programs hand over, by the clipboard or by dragging: files, the
/// pictures of a folder, and pictures themselves. What can't become one is told, and nothing is
/// fetched from elsewhere.
class PictureIntake : public QObject
{
    Q_OBJECT

public:
    /// Both outlive this object.
    PictureIntake(Workbench &work, Notices &notices, QObject *parent);

    /// Whether there is something to take, or something to tell about.
    static bool isOffered(const QMimeData &data);
    void take(const QMimeData &data);
    void takeFromClipboard();

private:
    struct Files {
        QStringList pictures{};
        qsizetype others = 0;   ///< that are no pictures
        qsizetype beyond = 0;   ///< pictures that are too many
        QStringList remote{};   ///< addresses that are on no disk
        QString emptyFolder{};  ///< one without a picture
    };

    static Files filesOf(const QMimeData &data);
    bool takePicture(const QMimeData &data);
    void tell(const Files &files);
    void say(const QString &text);

    Workbench &m_work;
    Notices &m_notices;
    QString m_told{};  ///< of what came last, and is no picture
};
