#include "shell/recovery.h"

#include "base/clock.h"
#include "editing/picturefile.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <utility>

namespace {

constexpr int s_delay = 200;   // ms from a change until it is written; more may follow
constexpr int s_retry = 3000;  // ms
constexpr int s_workers = 2;   // what is small need not wait for a picture that is large

void removeAll(const RecoveryFolder &folder, const QStringList &entries)
{
    for (const QString &entry : entries) {
        if (!entry.isEmpty())
            folder.remove(entry);
    }
}

// Returns the reason for the user if it can't be written.
QString keep(const RecoveryFolder &folder, const QString &entry, const UnsavedWork &work,
             const std::function<QImage()> &picture, PictureProgress &progress)
{
    QString reason;
    // While the file is as it was, it has the picture.
    if (picture && work.file)
        reason = folder.writeWork(entry, work);
    if (picture && reason.isEmpty())
        reason = folder.writePicture(entry, picture(), progress);
    return reason.isEmpty() ? folder.writeWork(entry, work) : reason;
}

}  // namespace

Recovery::Recovery(const QString &folder, Source &source, Clock &clock)
    : m_folder(folder), m_source(source), m_clock(clock)
{
    m_workers.setMaxThreadCount(s_workers);
}

Recovery::~Recovery()
{
    for (auto &[document, item] : m_items) {
        if (item.writing)
            item.writing->isCancelled = true;
    }
    m_workers.waitForDone();
}

void Recovery::touch(int document)
{
    m_items[document].isChanged = true;
    // While nothing can be written the next try is due already.
    flushSoon(s_delay);
}

void Recovery::touchAtOnce(int document)
{
    m_items[document].isChanged = true;
    if (!m_isPaused)
        flush();
}

void Recovery::adopt(int document, const QString &entry, bool hasPicture)
{
    m_items[document] = {.entry = entry, .hasPicture = hasPicture};
}

void Recovery::release(int document) { m_items.erase(document); }

void Recovery::flushSoon(int milliseconds)
{
    if (std::exchange(m_isFlushDue, true))
        return;
    m_clock.after(milliseconds, this, [this] {
        m_isFlushDue = false;
        flush();
        const auto isOwed = [](const auto &item) {
            return item.second.isChanged || item.second.writing;
        };
        if (std::none_of(m_items.begin(), m_items.end(), isOwed))
            resume();
    });
}

void Recovery::resume()
{
    if (std::exchange(m_isPaused, false))
        emit resumed();
}

void Recovery::flush()
{
    // A document that has nothing unsaved has no item any more.
    for (auto at = m_items.begin(); at != m_items.end();) {
        const int document = at->first;
        Item &item = at++->second;
        if (!item.isChanged)
            continue;
        write(document, item);
        // One is enough to find out whether there is room again.
        const auto tried = m_items.find(document);
        if (m_isPaused && tried != m_items.end() && tried->second.writing)
            break;
    }
}

void Recovery::write(int document, Item &item)
{
    std::optional<UnsavedWork> work = m_source.unsaved(document);
    if (item.writing) {
        // Looked at again when the worker is done.
        if (!work)
            item.writing->isCancelled = true;
        return;
    }
    if (!work) {
        m_workers.start([folder = m_folder, entries = item.former + QStringList(item.entry)] {
            removeAll(folder, entries);
        });
        m_items.erase(document);
        return;
    }
    // An entry that has what is covered now gives way to one that never had it.
    if (std::exchange(item.isCovered, work->isCovered) != work->isCovered) {
        if (!item.entry.isEmpty())
            item.former.append(std::exchange(item.entry, {}));
        item.hasPicture = false;
    }
    std::function<QImage()> picture;
    if (!item.hasPicture || work->isCovered)
        picture = m_source.unsavedPicture(document);
    item.isChanged = false;
    // Without a picture there would be nothing to come back to.
    if (!picture && !item.hasPicture)
        return;
    if (item.entry.isEmpty())
        item.entry = RecoveryFolder::newName();
    item.writing = std::make_shared<PictureProgress>();
    m_workers.start([this, document, folder = m_folder, entry = item.entry, former = item.former,
                     picture, work = std::move(*work), progress = item.writing] {
        const QString reason = keep(folder, entry, work, picture, *progress);
        if (reason.isEmpty())
            removeAll(folder, former);
        QMetaObject::invokeMethod(
            this,
            [this, document, withPicture = bool(picture), reason] {
                written(document, withPicture, reason);
            },
            Qt::QueuedConnection);
    });
}

void Recovery::written(int document, bool withPicture, const QString &reason)
{
    const auto found = m_items.find(document);
    if (found == m_items.end())
        return;
    Item &item = found->second;
    const bool isCancelled = std::exchange(item.writing, nullptr)->isCancelled;
    bool isOwed = item.isChanged;
    if (reason.isEmpty()) {
        item.hasPicture = item.hasPicture || withPicture;
        item.former.clear();
        isOwed = isOwed || m_isPaused;
        resume();
    } else if (!isCancelled) {
        item.isChanged = true;
        flushSoon(s_retry);
        if (!std::exchange(m_isPaused, true))
            emit paused(reason);
        return;
    }
    if (isOwed && m_isPaused)
        flushSoon(s_retry);
    else if (isOwed)
        flush();
}

void Recovery::finish(int milliseconds)
{
    QElapsedTimer time;
    time.start();
    const auto isUnfinished = [](const auto &item) {
        return item.second.isChanged || item.second.writing;
    };
    m_isPaused = false;
    flush();
    while (!m_isPaused && std::any_of(m_items.begin(), m_items.end(), isUnfinished) &&
           time.elapsed() < milliseconds) {
        m_workers.waitForDone(milliseconds - static_cast<int>(time.elapsed()));
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    }
    m_workers.waitForDone(std::max(0, milliseconds - static_cast<int>(time.elapsed())));
}
