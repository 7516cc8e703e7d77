#include "editing/recoveryfolder.h"

#include "base/wholefile.h"
#include "editing/picturefile.h"
#include "editing/shapefile.h"

#include <QAtomicInteger>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimeZone>

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// Version 1 had shapes only, and no tools but the first six.
constexpr int s_version = 2;
constexpr qint64 s_longestState = 256 << 20;  // bytes
constexpr int s_quickly = 89;                 // the toolkit's quality for fast compression
const QString s_picture = u"/picture.png"_s;
const QString s_state = u"/state.json"_s;
const QString s_damaged = u"damaged"_s;
const QString s_removed = u".removed-"_s;
const QString s_time = u"yyyyMMdd-HHmmss-zzz"_s;  // an entry's name begins with its creation time

QJsonObject toJson(const FileIdentity &file)
{
    // Stored as texts, because JSON numbers can't represent 64 bits.
    return {{u"device"_s, QString::number(file.device)},
            {u"inode"_s, QString::number(file.inode)},
            {u"size"_s, QString::number(file.size)},
            {u"written"_s, QString::number(file.written)}};
}

std::optional<FileIdentity> identityFrom(const QJsonObject &from)
{
    if (from.isEmpty())
        return {};
    return FileIdentity{.device = from[u"device"_s].toString().toULongLong(),
                        .inode = from[u"inode"_s].toString().toULongLong(),
                        .size = from[u"size"_s].toString().toLongLong(),
                        .written = from[u"written"_s].toString().toLongLong()};
}

QByteArray bytesOf(const UnsavedWork &work)
{
    ShapeNumbers numbers;
    QJsonObject state{{u"version"_s, s_version},
                      {u"name"_s, work.name},
                      {u"number"_s, work.number},
                      {u"shapes"_s, toJson(work.shapes, numbers)},
                      {u"undone"_s, toJson(work.undone, numbers)},
                      {u"time"_s, work.origin.time.toString(Qt::ISODateWithMs)},
                      {u"kind"_s, work.origin.kind},
                      {u"application"_s, work.origin.application},
                      {u"title"_s, work.origin.title}};
    if (work.file)
        state[u"file"_s] = toJson(*work.file);
    if (work.isFileKept)
        state[u"keepsFile"_s] = true;
    return QJsonDocument(state).toJson(QJsonDocument::Compact);
}

enum class State { Read, Damaged, Newer };

State readState(const QByteArray &bytes, UnsavedWork &work)
{
    const QJsonObject state = QJsonDocument::fromJson(bytes).object();
    const double version = state[u"version"_s].toDouble();
    if (version > s_version)
        return State::Newer;
    ShapeNumbers numbers;
    const auto shapes = historyFromJson(state[u"shapes"_s].toArray(), numbers);
    const auto undone = historyFromJson(state[u"undone"_s].toArray(), numbers);
    const int number = state[u"number"_s].toInt(-1);
    if (shapes.isNewer || undone.isNewer)
        return State::Newer;
    if (version < 1 || !shapes.history || !undone.history || number < -1)
        return State::Damaged;
    work = {
        .shapes = *shapes.history,
        .undone = *undone.history,
        .name = state[u"name"_s].toString(),
        .number = number,
        .file = identityFrom(state[u"file"_s].toObject()),
        .isFileKept = state[u"keepsFile"_s].toBool(),
        .origin = {.time = QDateTime::fromString(state[u"time"_s].toString(), Qt::ISODateWithMs),
                   .kind = state[u"kind"_s].toString(),
                   .application = state[u"application"_s].toString(),
                   .title = state[u"title"_s].toString()}};
    return State::Read;
}

// No value if the path is not a regular file, is a symbolic link, or is too large to be written by
// this class.
std::optional<QByteArray> contentOf(const QString &path)
{
    const QFileInfo info(path);
    QFile file(path);
    if (info.isSymLink() || !info.isFile() || info.size() > s_longestState ||
        !file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

// The folders that may be entries.
QFileInfoList foldersIn(const QString &path)
{
    QFileInfoList folders = QDir(path).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    folders.removeIf([](const QFileInfo &folder) {
        return folder.isSymLink() || folder.fileName() == s_damaged ||
               folder.ownerId() != geteuid();
    });
    return folders;
}

QDateTime timeOf(const QString &entry)
{
    const QDateTime time = QDateTime::fromString(entry.left(s_time.size()), s_time);
    return {time.date(), time.time(), QTimeZone::utc()};
}

QString makeFolder(const QString &path)
{
    if (QDir().mkpath(path) && chmod(QFile::encodeName(path).constData(), S_IRWXU) == 0)
        return {};
    return qt_error_string();
}

}  // namespace

bool RecoveryFolder::isEmpty() const { return foldersIn(m_path).isEmpty(); }

RecoveryFolder::Content RecoveryFolder::read() const
{
    Content result;
    const QDir folder(m_path);
    for (const QString &kept : {m_path, m_path + u'/' + s_damaged}) {
        if (QFileInfo(kept).isDir())
            makeFolder(kept);
    }
    // These entries had been saved or discarded.
    for (const QFileInfo &left :
         folder.entryInfoList({s_removed + u'*'}, QDir::Dirs | QDir::Hidden)) {
        if (!left.isSymLink())
            QDir(left.filePath()).removeRecursively();
    }
    for (const QFileInfo &info : foldersIn(m_path)) {
        const QString name = info.fileName();
        const bool hasPicture = QFileInfo(info.filePath() + s_picture).isFile();
        const bool hasState = QFileInfo::exists(info.filePath() + s_state);
        // The program was killed before the first file was complete.
        if (!hasPicture && !hasState && folder.rmdir(name))
            continue;
        Entry entry{.name = name, .hasPicture = hasPicture};
        // The program was killed between the two files, so there is only the picture.
        entry.work.number = 0;
        State state = hasPicture ? State::Read : State::Damaged;
        if (hasState)
            state =
                readState(contentOf(info.filePath() + s_state).value_or(QByteArray()), entry.work);
        const bool isInFile =
            entry.work.file && FileIdentity::of(entry.work.name) == entry.work.file;
        if (state == State::Newer) {
            result.newer.append(info.filePath());
        } else if (state == State::Damaged || (!hasPicture && !isInFile)) {
            result.damaged.append(setAside(name));
        } else {
            if (!entry.work.origin.time.isValid())
                entry.work.origin.time = timeOf(name);
            result.entries.append(entry);
        }
    }
    std::stable_sort(
        result.entries.begin(), result.entries.end(),
        [](const Entry &a, const Entry &b) { return a.work.origin.time < b.work.origin.time; });
    return result;
}

QImage RecoveryFolder::picture(const Entry &entry) const
{
    if (!entry.hasPicture) {
        PictureProgress progress;
        return readPicture(entry.work.name, progress, true).picture;
    }
    PictureProgress progress;
    return readPicture(pathOf(entry.name) + s_picture, progress, true).picture;
}

QString RecoveryFolder::setAside(const QString &entry) const
{
    QDir folder(m_path);
    folder.mkdir(s_damaged);
    for (int number = 0;; ++number) {
        const QString to =
            s_damaged + u'/' + entry + (number > 0 ? u'-' + QString::number(number) : QString());
        if (folder.rename(entry, to))
            return folder.filePath(to);
        // If it can't be moved, it stays and is reported again at the next start.
        if (!folder.exists(to))
            return pathOf(entry);
    }
}

QString RecoveryFolder::newName()
{
    static QAtomicInteger<int> s_last;
    return QDateTime::currentDateTimeUtc().toString(s_time) + u'-' +
           QString::number(s_last.fetchAndAddRelaxed(1)).rightJustified(4, u'0');
}

QString RecoveryFolder::makeEntry(const QString &entry) const
{
    QString reason = makeFolder(m_path);
    return reason.isEmpty() ? makeFolder(pathOf(entry)) : reason;
}

QString RecoveryFolder::writePicture(const QString &entry, const QImage &picture,
                                     PictureProgress &progress) const
{
    if (QString reason = makeEntry(entry); !reason.isEmpty())
        return reason;
    const PictureWrite written = ::writePicture(picture, {}, pathOf(entry) + s_picture, "png",
                                                s_quickly, progress, WholeFile::Readers::User);
    if (written.isWritten)
        return {};
    return written.failure.isEmpty() ? qt_error_string(ECANCELED) : written.failure;
}

QString RecoveryFolder::writeWork(const QString &entry, const UnsavedWork &work) const
{
    if (QString reason = makeEntry(entry); !reason.isEmpty())
        return reason;
    WholeFile file(pathOf(entry) + s_state, WholeFile::Readers::User);
    return file.write(bytesOf(work)) ? QString() : file.error();
}

// Renames the folder first, so that an entry whose removal is interrupted does not come back.
void RecoveryFolder::remove(const QString &entry) const
{
    const QString removed = s_removed + entry;
    if (QDir(m_path).rename(entry, removed))
        QDir(m_path + u'/' + removed).removeRecursively();
}
