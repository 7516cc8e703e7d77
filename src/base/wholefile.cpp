#include "base/wholefile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <functional>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_mostLinks = 40;  // as many as the system follows
constexpr int s_mostNames = 100;
constexpr qsizetype s_longestName = 200;  // bytes, of a file system's 255
const QString s_recordEnding = u".write"_s;

QString s_spareFolder;  // without a separator at its end

enum class Outcome { Written, Failed, NotReplaceable };

class Descriptor
{
public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    bool isOpen() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }
    /// False when the system tells only now that what was written is lost.
    bool close() { return !isOpen() || ::close(std::exchange(m_descriptor, -1)) == 0; }

private:
    int m_descriptor;
};

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash < 0 ? "." : slash == 0 ? "/" : path.left(slash);
}

// The file that is meant, which need not be there. Empty, with errno set, where links lead round.
QByteArray followed(const QString &path)
{
    QByteArray result = QFile::encodeName(path);
    for (int i = 0; i < s_mostLinks; ++i) {
        QByteArray target(PATH_MAX, '\0');
        const ssize_t length = readlink(result.constData(), target.data(), target.size());
        if (length < 0)
            return result;
        target.truncate(length);
        result = target.startsWith('/') ? target : folderOf(result) + '/' + target;
    }
    errno = ELOOP;
    return {};
}

bool writeAll(int file, const QByteArray &bytes)
{
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t count = pwrite(file, bytes.constData() + done, bytes.size() - done, done);
        if (count < 0 && errno != EINTR)
            return false;
        done += std::max<ssize_t>(count, 0);
    }
    return true;
}

// All of it, or as much as can be read.
QByteArray contentOf(int file)
{
    struct stat now {
    };
    if (fstat(file, &now) != 0 || !S_ISREG(now.st_mode))
        return {};
    QByteArray result(now.st_size, '\0');
    qsizetype done = 0;
    while (done < result.size()) {
        const ssize_t count = pread(file, result.data() + done, result.size() - done, done);
        if (count == 0 || (count < 0 && errno != EINTR))
            break;
        done += std::max<ssize_t>(count, 0);
    }
    result.truncate(done);
    return result;
}

// A name in a folder is on the disk when the folder is. Some file systems know nothing of that.
void syncFolder(const QByteArray &folder)
{
    const Descriptor opened(open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.isOpen())
        fsync(opened.get());
}

QList<QByteArray> attributeNames(int file)
{
    QByteArray names(XATTR_LIST_MAX, '\0');
    const ssize_t size = flistxattr(file, names.data(), names.size());
    names.truncate(std::max<ssize_t>(size, 0));
    QList<QByteArray> result = names.split('\0');
    result.removeAll(QByteArray());
    return result;
}

QByteArray attribute(int file, const QByteArray &name)
{
    QByteArray value(XATTR_SIZE_MAX, '\0');
    const ssize_t size = fgetxattr(file, name.constData(), value.data(), value.size());
    value.truncate(std::max<ssize_t>(size, 0));
    return value;
}

// Owner, mode, access list (an attribute to the system) and attributes. False when something of it
// would be lost.
bool takeOver(int from, const struct stat &old, int to)
{
    struct stat fresh {
    };
    if (fstat(to, &fresh) != 0)
        return false;
    const bool hasOwner = fresh.st_uid == old.st_uid && fresh.st_gid == old.st_gid;
    if (!hasOwner && fchown(to, old.st_uid, old.st_gid) != 0)
        return false;
    const QList<QByteArray> names = attributeNames(from);
    // A folder may give a list of its own to each new file.
    for (const QByteArray &name : attributeNames(to)) {
        if (!names.contains(name) && fremovexattr(to, name.constData()) != 0)
            return false;
    }
    if (fchmod(to, old.st_mode & 07777) != 0)
        return false;
    return std::all_of(names.begin(), names.end(), [&](const QByteArray &name) {
        const QByteArray value = attribute(from, name);
        return attribute(to, name) == value ||
               fsetxattr(to, name.constData(), value.constData(), value.size(), 0) == 0;
    });
}

// Names beside the target that are free, for `make`, which fails with EEXIST where one is not.
QByteArray madeBeside(const QByteArray &target, const std::function<bool(const QByteArray &)> &make)
{
    const QByteArray start =
        folderOf(target) + "/." + target.mid(target.lastIndexOf('/') + 1).left(s_longestName);
    for (int number = 0; number < s_mostNames; ++number) {
        QByteArray name =
            start + (number > 0 ? '.' + QByteArray::number(number) : QByteArray()) + ".part";
        if (make(name))
            return name;
        if (errno != EEXIST)
            break;
    }
    return {};
}

// Beside the target, flushed, and then put in its place. It has no name before it is whole, where
// the file system knows such files, so that a kill leaves nothing behind.
Outcome replace(const QByteArray &target, const struct stat *old, const QByteArray &bytes,
                mode_t usual)
{
    if (old && old->st_nlink > 1)
        return Outcome::NotReplaceable;
    const QByteArray folder = folderOf(target);
    const mode_t mode = old ? S_IRUSR | S_IWUSR : usual;
    QByteArray fresh;
    int opened = open(folder.constData(), O_WRONLY | O_TMPFILE | O_CLOEXEC, mode);
    if (opened < 0) {
        fresh = madeBeside(target, [&](const QByteArray &name) {
            opened = open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
            return opened >= 0;
        });
    }
    Descriptor file(opened);
    if (!file.isOpen())
        return Outcome::NotReplaceable;
    const auto giveUp = [&](Outcome outcome) {
        const int reason = errno;
        if (!fresh.isEmpty())
            unlink(fresh.constData());
        errno = reason;
        return outcome;
    };
    if (old) {
        const Descriptor before(open(target.constData(), O_RDONLY | O_CLOEXEC));
        if (!before.isOpen() || !takeOver(before.get(), *old, file.get()))
            return giveUp(Outcome::NotReplaceable);
    }
    if (!writeAll(file.get(), bytes) || fsync(file.get()) != 0)
        return giveUp(Outcome::Failed);
    if (fresh.isEmpty()) {
        const QByteArray itself = "/proc/self/fd/" + QByteArray::number(file.get());
        fresh = madeBeside(target, [&](const QByteArray &name) {
            return linkat(AT_FDCWD, itself.constData(), AT_FDCWD, name.constData(),
                          AT_SYMLINK_FOLLOW) == 0;
        });
        if (fresh.isEmpty())
            return Outcome::NotReplaceable;
    }
    if (!file.close())
        return giveUp(Outcome::Failed);
    if (rename(fresh.constData(), target.constData()) != 0)
        return giveUp(errno == EPERM || errno == EACCES ? Outcome::NotReplaceable
                                                        : Outcome::Failed);
    syncFolder(folder);
    return Outcome::Written;
}

// Room is made before the first byte is changed: a full disk costs nothing.
bool overwrite(int file, const QByteArray &bytes)
{
    struct stat old {
    };
    if (fstat(file, &old) != 0)
        return false;
    if (bytes.size() > old.st_size) {
        const int failure = posix_fallocate(file, old.st_size, bytes.size() - old.st_size);
        if (failure != 0) {
            (void)!ftruncate(file, old.st_size);
            errno = failure;
            return false;
        }
    }
    return writeAll(file, bytes) && ftruncate(file, bytes.size()) == 0 && fsync(file) == 0;
}

// What is to be written in place, where, and over what, in one file of the spare folder: a line
// about it, the new bytes and the old ones.
QByteArray recordOf(const QByteArray &target, const QByteArray &bytes, const QByteArray &before)
{
    const QJsonObject about{{u"path"_s, QString::fromLatin1(target.toPercentEncoding("/"))},
                            {u"size"_s, QString::number(bytes.size())}};
    return QJsonDocument(about).toJson(QJsonDocument::Compact) + '\n' + bytes + before;
}

bool makeSpareFolder()
{
    if (s_spareFolder.isEmpty()) {
        errno = EACCES;
        return false;
    }
    return QDir().mkpath(s_spareFolder) &&
           chmod(QFile::encodeName(s_spareFolder).constData(), S_IRWXU) == 0;
}

// A name in the spare folder that is free.
QByteArray spareName(const QByteArray &target, const QString &ending)
{
    const QString name =
        QFile::decodeName(target.mid(target.lastIndexOf('/') + 1).left(s_longestName));
    for (int number = 1;; ++number) {
        const QString path = s_spareFolder + u'/' + QString::number(number) + u'-' + name + ending;
        if (!QFile::exists(path))
            return QFile::encodeName(path);
    }
}

bool writeInPlace(const QByteArray &target, const struct stat &old, const QByteArray &bytes)
{
    const Descriptor file(open(target.constData(), O_RDWR | O_CLOEXEC));
    if (!file.isOpen() || !makeSpareFolder())
        return false;
    const QByteArray before = contentOf(file.get());
    const QByteArray record = spareName(target, s_recordEnding);
    if (before.size() != old.st_size || replace(record, nullptr, recordOf(target, bytes, before),
                                                S_IRUSR | S_IWUSR) != Outcome::Written)
        return false;
    const bool isWritten = overwrite(file.get(), bytes);
    const int reason = errno;
    // With neither the new bytes nor the old ones in the file the next start tries again.
    if (isWritten || overwrite(file.get(), before)) {
        unlink(record.constData());
        syncFolder(folderOf(record));
    }
    errno = reason;
    return isWritten;
}

// Whether a file holds nothing but what a write that was cut off can have left: what nobody else
// has written is old or new, or room that was made.
bool isCutOff(const QByteArray &now, const QByteArray &bytes, const QByteArray &before)
{
    if (now.size() != before.size() && now.size() != std::max(bytes.size(), before.size()))
        return now == bytes;
    for (qsizetype i = 0; i < now.size(); ++i) {
        const bool isNew = i < bytes.size() && now[i] == bytes[i];
        const bool isOld = i < before.size() ? now[i] == before[i] : now[i] == 0;
        if (!isNew && !isOld)
            return false;
    }
    return true;
}

bool finishWrite(const QByteArray &target, const QByteArray &bytes, const QByteArray &before)
{
    const Descriptor file(open(target.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    return file.isOpen() && isCutOff(contentOf(file.get()), bytes, before) &&
           overwrite(file.get(), bytes);
}

}  // namespace

bool WholeFile::write(const QByteArray &bytes)
{
    const auto end = [this](bool isWritten) {
        m_error = isWritten ? 0 : errno;
        return isWritten;
    };
    const QByteArray target = followed(m_path);
    if (target.isEmpty())
        return end(false);
    struct stat old {
    };
    const bool exists = stat(target.constData(), &old) == 0;
    if (exists && !S_ISREG(old.st_mode)) {
        errno = S_ISDIR(old.st_mode) ? EISDIR : EINVAL;
        return end(false);
    }
    // A file that is protected from writing could be replaced all the same.
    if (exists && faccessat(AT_FDCWD, target.constData(), W_OK, AT_EACCESS) != 0)
        return end(false);
    constexpr mode_t usual = 0666;  // less what the user's mask takes
    const Outcome outcome = replace(target, exists ? &old : nullptr, bytes, usual);
    if (outcome == Outcome::NotReplaceable && exists)
        return end(writeInPlace(target, old, bytes));
    return end(outcome == Outcome::Written);
}

QString WholeFile::error() const { return qt_error_string(m_error); }

void WholeFile::setSpareFolder(const QString &folder) { s_spareFolder = folder; }

QList<WholeFile::Unfinished> WholeFile::finishWrites()
{
    QList<Unfinished> result;
    if (s_spareFolder.isEmpty())
        return result;
    const QDir folder(s_spareFolder);
    // Its bytes had not come together when the program was killed, and the target was not touched.
    for (const QFileInfo &cut : folder.entryInfoList({u".*.part"_s}, QDir::Files | QDir::Hidden))
        QFile::remove(cut.filePath());
    for (const QFileInfo &entry :
         folder.entryInfoList({u'*' + s_recordEnding}, QDir::Files, QDir::Name)) {
        QFile record(entry.filePath());
        if (!record.open(QIODevice::ReadOnly))
            continue;
        const QJsonObject about = QJsonDocument::fromJson(record.readLine()).object();
        const QByteArray bytes = record.read(about[u"size"_s].toString().toLongLong());
        const QByteArray before = record.readAll();
        const QByteArray target =
            QByteArray::fromPercentEncoding(about[u"path"_s].toString().toLatin1());
        if (!finishWrite(target, bytes, before)) {
            const QByteArray copy = spareName(target, {});
            // The record stays for the next start where even that fails.
            if (replace(copy, nullptr, bytes, S_IRUSR | S_IWUSR) != Outcome::Written)
                continue;
            result.append({QFile::decodeName(target), QFile::decodeName(copy)});
        }
        record.remove();
    }
    return result;
}
