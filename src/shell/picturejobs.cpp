#include "shell/picturejobs.h"

#include "base/clock.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace {

// One that is looked at goes before those that are only tidied up.
int priorityOf(PictureJobs::Kind kind) { return kind == PictureJobs::Kind::Pack ? 0 : 1; }

constexpr int s_lookAgain = 20;      // ms
constexpr int s_readers = 2;         // one that takes long does not keep the others waiting
constexpr int s_patience = 2'000;    // ms
constexpr int s_owedLimit = 20'000;  // ms

}  // namespace

bool PictureJobs::s_isStuck = false;

PictureJobs::PictureJobs(const Clock &clock, QObject *parent)
    : QObject(parent), m_clock(clock), m_readers(std::make_unique<QThreadPool>())
{
    m_readers->setMaxThreadCount(s_readers);
    m_writers.setMaxThreadCount(1);
}

PictureJobs::~PictureJobs()
{
    for (const JobPtr &job : std::as_const(m_jobs))
        job->progress.isCancelled = true;
    m_writers.waitForDone();
    // What is being drawn from a file that was made to take long can't be stopped.
    if (!m_readers->waitForDone(s_patience)) {
        s_isStuck = true;
        (void)m_readers.release();
    }
}

PictureJobs::JobPtr PictureJobs::start(Kind kind, int document, const QString &text,
                                       std::function<void(PictureProgress &)> work,
                                       std::function<void()> done)
{
    auto job = std::make_shared<Job>();
    job->kind = kind;
    job->document = document;
    job->text = text;
    job->begin = m_clock.now();
    m_jobs.append(job);
    const auto run = [this, job, work = std::move(work), done = std::move(done)] {
        if (!job->progress.isCancelled)
            work(job->progress);
        QMetaObject::invokeMethod(
            this,
            [this, job, done] {
                m_jobs.removeOne(job);
                job->isDone = true;
                if (done)
                    done();
                emit changed();
            },
            Qt::QueuedConnection);
    };
    poolFor(kind).start(run, priorityOf(kind));
    emit changed();
    return job;
}

PictureJobs::JobPtr PictureJobs::find(Kind kind, int document) const
{
    const auto found = std::find_if(m_jobs.begin(), m_jobs.end(), [&](const JobPtr &job) {
        return job->kind == kind && (document == 0 || job->document == document) &&
               (kind != Kind::Recognize || !job->progress.isCancelled);
    });
    return found == m_jobs.end() ? nullptr : *found;
}

void PictureJobs::cancel(int document)
{
    for (const JobPtr &job : std::as_const(m_jobs)) {
        if (job->document == document)
            job->progress.isCancelled = true;
    }
}

void PictureJobs::giveUp(Job &job)
{
    job.progress.isCancelled = true;
    emit givenUp(job.kind, job.document);
}

// Loops may lie one in another, and each ends with its own job only, in whatever order they come.
bool PictureJobs::waitFor(const JobPtr &job)
{
    while (!job->isDone) {
        QEventLoop loop;
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, &loop, [&] {
            if (job->isDone)
                loop.quit();
        });
        look.start(s_lookAgain);
        if (loop.exec() != 0 || !job->isDone) {
            if (!isOwed(job))
                job->progress.isCancelled = true;
            return false;
        }
    }
    return true;
}

bool PictureJobs::isOwed(const JobPtr &job)
{
    return job->kind == Kind::HandOver || (job->kind == Kind::Write && job->document == 0);
}

void PictureJobs::finishOwed()
{
    const Stopwatch watch(m_clock);
    while (std::any_of(m_jobs.begin(), m_jobs.end(), isOwed) && watch.elapsed() < s_owedLimit) {
        gwsleep(s_lookAgain);
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    }
}
