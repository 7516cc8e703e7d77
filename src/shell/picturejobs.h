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
    /// What is fetched is the program's own, and is not given up while its document is open. To
    /// recognise is to read what a picture shows. What is handed over goes to another program.
    enum class Kind { Read, Fetch, Write, Pack, Recognize, HandOver };
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
    /// Gives up what is under way, and waits for the workers, but not for ever for those that read.
    ~PictureJobs() override;
    /// Whether a worker still reads for one that is gone: the process must end without clearing up.
    static bool isStuck() { return s_isStuck; }

    /// `work` runs in a worker, and `done` on this thread afterwards, given up or not; what the one
    /// finds out for the other they share.
    JobPtr start(Kind kind, int document, const QString &text,
                 std::function<void(PictureProgress &)> work, std::function<void()> done);
    /// The first one of a kind that is not done. Any document's for 0. Of what is recognised one
    /// that was given up counts as done: nothing comes of it any more.
    JobPtr find(Kind kind, int document) const;
    /// Gives up what is done for a document that is closed.
    void cancel(int document);
    /// The user gives one up. A worker may take its time to hear of it.
    void giveUp(Job &job);
    /// Waits with events running. False when the program has been told to end first; the job is
    /// given up then, unless finishOwed() is to finish it.
    static bool waitFor(const JobPtr &job);
    /// The program is to end: waits, without events, for pictures that no document keeps to be
    /// written or handed over, and has their `done` run. Some twenty seconds at the most.
    void finishOwed();

signals:
    /// One has begun or is done.
    void changed();
    void givenUp(PictureJobs::Kind kind, int document);

private:
    static bool isOwed(const JobPtr &job);
    QThreadPool &poolFor(Kind kind) { return kind == Kind::Write ? m_writers : *m_readers; }

    static bool s_isStuck;

    const Clock &m_clock;
    QList<JobPtr> m_jobs{};  ///< in the order in which they began
    std::unique_ptr<QThreadPool> m_readers;
    QThreadPool m_writers;  ///< a file to be saved does not wait for those that are being opened
};
