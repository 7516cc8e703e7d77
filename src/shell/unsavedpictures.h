#pragma once

#include "shell/recovery.h"

#include <QObject>

#include <memory>

class Notices;
class QPictureDocument;
class Workbench;

/// Keeps what is not saved of the open documents in a folder, and brings back what an earlier run
/// has left there.
class UnsavedPictures : public QObject, public Recovery::Source
{
    Q_OBJECT

public:
    /// Both outlive this object.
    UnsavedPictures(Workbench &work, Notices &notices);
    ~UnsavedPictures() override;

    /// Keeps from now on, and opens what is there, as modified documents. True when there is
    /// something.
    bool start(const QString &folder);
    /// Waits, some seconds at the most, until what is not saved is on the disk.
    void keep();
    /// What is unsaved now is to be lost, as the user said, until something changes.
    void setDiscarded(bool isDiscarded) { m_isDiscarded = isDiscarded; }

    std::optional<UnsavedWork> unsaved(int document) override;
    std::function<QImage()> unsavedPicture(int document) override;

private:
    struct Returning;

    UnsavedWork workOf(const QPictureDocument &document, bool *isUnsaved) const;
    void touchCurrent();
    void touch(int number);
    void bringBack(const RecoveryFolder::Content &content);
    void bringBack(const RecoveryFolder::Entry &entry, int number,
                   const std::shared_ptr<Returning> &returning);

    Workbench &m_work;
    Notices &m_notices;
    std::unique_ptr<Recovery> m_recovery;  ///< null while nothing is kept
    QString m_pause;                       ///< what has been told of it, while it holds
    bool m_isDiscarded = false;
};
