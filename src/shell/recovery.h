#pragma once

#include "editing/recoveryfolder.h"

#include <QObject>
#include <QStringList>
#include <QThreadPool>

#include <functional>
#include <map>
#include <memory>
#include <optional>

class Clock;

/// Keeps on the disk what is not saved, so that the next start can bring it back whatever has ended
/// this one. Its workers write, and nothing else waits for them: what changes is on the disk within
/// a second, but for a picture so large that writing it takes longer.
class Recovery : public QObject
{
    Q_OBJECT

public:
    /// The open documents, by their numbers, as they are when something is about to be written.
    class Source
    {
    public:
        virtual ~Source() = default;
        /// Nothing for one that is closed, or has nothing that is not saved.
        virtual std::optional<UnsavedWork> unsaved(int document) = 0;
        /// What gives the picture that belongs to this work, in a worker; null where there is none.
        virtual std::function<QImage()> unsavedPicture(int document) = 0;
    };

    /// `source` and `clock` outlive this object.
    Recovery(const QString &folder, Source &source, Clock &clock);
    /// Waits for what is being written.
    ~Recovery() override;

    const RecoveryFolder &folder() const { return m_folder; }
    /// Something of the document has changed, or it is gone. Many changes cost one writing.
    void touch(int document);
    /// The same, and not a moment later: it is new, saved or closed.
    void touchAtOnce(int document);
    /// A document that came back goes on with its entry.
    void adopt(int document, const QString &entry, bool hasPicture);
    /// Knows no more of a document, and leaves its entry as it is.
    void release(int document);
    /// Everything is on the disk when this returns, or can't be written, or the time is over.
    void finish(int milliseconds);

signals:
    /// Nothing can be written, which is tried again and again.
    void paused(const QString &reason);
    void resumed();

private:
    struct Item {
        QString entry{};          ///< empty while there is none
        bool hasPicture = false;  ///< the entry has; it changes only if the work is covered
        bool isCovered = false;   ///< what the covers hide is not in the entry
        QStringList former{};  ///< entries that this one takes the place of, while they are there
        bool isChanged = false;
        std::shared_ptr<PictureProgress> writing{};  ///< while a worker is at it
    };

    void flushSoon(int milliseconds);
    void flush();
    void resume();
    void write(int document, Item &item);
    void written(int document, bool withPicture, const QString &reason);

    RecoveryFolder m_folder;
    Source &m_source;
    Clock &m_clock;
    std::map<int, Item> m_items{};  ///< by the document's number
    bool m_isFlushDue = false;
    bool m_isPaused = false;
    QThreadPool m_workers;
};
