#pragma once

#include "editing/picturefile.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QThreadPool>

#include <functional>
#include <memory>

class Clock;

/// What takes its time with the open pictures: reading, writing and packing them. Workers do it,
/// each kind one after another, with copies of what they need; this object and its callers stay on
/// their thread.
class PictureJobs : public QObject
{
    Q_OBJECT

public:
    enum class Kind { Read, Write, Pack };
    struct Job {
        Kind kind = Kind::Read;
        int document = 0;  ///< its number
        QString text{};    ///< for the user
        qint64 begin = 0;  ///< by the clock
        bool isDone = false;
        PictureProgress progress{};
    };
    using JobPtr = std::shared_ptr<Job>;

    /// `clock` outlives this object.
    PictureJobs(const Clock &clock, QObject *parent);
    /// Gives up what is under way, and waits for the workers.
    ~PictureJobs() override;

    /// `work` runs in a worker, and `done` on this thread afterwards, given up or not; what the one
    /// finds out for the other they share.
    JobPtr start(Kind kind, int document, const QString &text,
                 std::function<void(PictureProgress &)> work, std::function<void()> done);
    /// The first one of a kind that is not done. Any document's for 0.
    JobPtr find(Kind kind, int document) const;
    /// Gives up what is done for a document that is closed.
    void cancel(int document);
    /// Waits with events running. False when the program has been told to end first; the job is
    /// given up then.
    static bool waitFor(const JobPtr &job);

signals:
    /// One has begun or is done.
    void changed();

private:
    QThreadPool &poolFor(Kind kind) { return kind == Kind::Write ? m_writers : m_readers; }

    const Clock &m_clock;
    QList<JobPtr> m_jobs{};  ///< in the order in which they began
    QThreadPool m_readers;
    QThreadPool m_writers;  ///< a file to be saved does not wait for those that are being opened
};
