#include "base/wholefile.h"

#include "base/log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMutex>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <functional>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_mostLinks = 40;  // the limit of the system itself
constexpr int s_mostNames = 100;
constexpr qsizetype s_longestName = 200;  // bytes; file systems allow 255
constexpr qint64 s_atOnce = 1 << 20;      // bytes to copy at once from file to file
constexpr int s_sizeDigits = 20;
const QString s_recordEnding = u".write"_s;

QString s_spareFolder;  // without a trailing separator

// Held while a name in the spare folder is chosen and the file of that name is created.
QMutex s_spareNames;

enum class Outcome { Written, Failed, NotReplaceable };

class Descriptor
{
public:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
    ~Descriptor() { close(); }
    Descriptor(Descriptor &&other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }

    bool isOpen() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }
    /// Returns false if the system reports only at closing that written data was lost.
    bool close() { return !isOpen() || ::close(std::exchange(m_descriptor, -1)) == 0; }

private:
    int m_descriptor;
};

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash < 0 ? "." : slash == 0 ? "/" : path.left(slash);
}

// The file that the path means after following symbolic links; it need not exist. Empty, with errno
// set, if the links form a cycle.
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

bool writeAt(int file, qint64 offset, QByteArrayView bytes)
{
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t count = pwrite(file, bytes.data() + done, bytes.size() - done, offset + done);
        if (count < 0 && errno != EINTR)
            return false;
        done += std::max<ssize_t>(count, 0);
    }
    return true;
}

// A range of bytes in a file.
struct Stretch {
    int file = -1;
    qint64 offset = 0;
    qint64 size = 0;
};

bool copyTo(int file, qint64 offset, const Stretch &from)
{
    std::vector<char> bytes(std::min(from.size, s_atOnce));
    for (qint64 done = 0; done < from.size;) {
        const ssize_t count = pread(from.file, bytes.data(), std::min(from.size - done, s_atOnce),
                                    from.offset + done);
        if (count == 0)
            errno = EIO;
        if (count == 0 || (count < 0 && errno != EINTR))
            return false;
        if (count > 0 && !writeAt(file, offset + done, {bytes.data(), count}))
            return false;
        done += std::max<ssize_t>(count, 0);
    }
    return true;
}

// The content, or as much of it as can be read.
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

// A new name is on the disk only after its folder has been synced. File systems that can't do that
// are ignored.
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

// Copies owner, mode, access list (which is an extended attribute) and attributes. Returns false if
// one of them would be lost.
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
    // The folder may have given the new file a default access list.
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

// Calls `make` with names beside the target until one is free; `make` must fail with EEXIST for a
// name that is taken. Returns the name, or an empty one if nothing was made.
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

// New content in the target's folder, until it replaces the target. If the file system supports it,
// the file has no name until it is complete, so that a kill leaves nothing behind.
class Part
{
public:
    Part() = default;
    ~Part() { discard(); }
    Part(const Part &) = delete;
    Part &operator=(const Part &) = delete;

    bool open(const QByteArray &target, mode_t mode)
    {
        discard();
        m_target = target;
        int opened = ::open(folderOf(target).constData(), O_RDWR | O_TMPFILE | O_CLOEXEC, mode);
        if (opened < 0) {
            m_name = madeBeside(target, [&](const QByteArray &name) {
                opened = ::open(name.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
                return opened >= 0;
            });
        }
        m_file = Descriptor(opened);
        return m_file.isOpen();
    }

    int file() const { return m_file.get(); }
    qint64 size() const { return m_size; }

    bool append(QByteArrayView bytes)
    {
        if (!writeAt(m_file.get(), m_size, bytes))
            return false;
        m_size += bytes.size();
        return true;
    }

    bool append(const Stretch &from)
    {
        if (!copyTo(m_file.get(), m_size, from))
            return false;
        m_size += from.size;
        return true;
    }

    // Replaces the target. If it is NotReplaceable, the bytes can still be read from file().
    Outcome put()
    {
        if (fsync(m_file.get()) != 0)
            return Outcome::Failed;
        if (m_name.isEmpty()) {
            const QByteArray itself = "/proc/self/fd/" + QByteArray::number(m_file.get());
            m_name = madeBeside(m_target, [&](const QByteArray &name) {
                return linkat(AT_FDCWD, itself.constData(), AT_FDCWD, name.constData(),
                              AT_SYMLINK_FOLLOW) == 0;
            });
            if (m_name.isEmpty())
                return Outcome::NotReplaceable;
        }
        Descriptor again(fcntl(m_file.get(), F_DUPFD_CLOEXEC, 0));
        if (!again.isOpen() || !m_file.close())
            return Outcome::Failed;
        m_file = std::move(again);
        if (rename(m_name.constData(), m_target.constData()) != 0)
            return errno == EPERM || errno == EACCES ? Outcome::NotReplaceable : Outcome::Failed;
        m_name.clear();
        syncFolder(folderOf(m_target));
        return Outcome::Written;
    }

    // Removes the new content and keeps errno.
    void discard()
    {
        const int reason = errno;
        if (!m_name.isEmpty())
            unlink(m_name.constData());
        m_name.clear();
        m_file = Descriptor(-1);
        m_size = 0;
        errno = reason;
    }

private:
    QByteArray m_target;
    QByteArray m_name;  // empty while the file has no name
    Descriptor m_file{-1};
    qint64 m_size = 0;
};

// Allocates the space before it changes the first byte, so that a full disk damages nothing.
bool overwrite(int file, const Stretch &from)
{
    struct stat old {
    };
    if (fstat(file, &old) != 0)
        return false;
    if (from.size > old.st_size) {
        const int failure = posix_fallocate(file, old.st_size, from.size - old.st_size);
        if (failure != 0) {
            (void)!ftruncate(file, old.st_size);
            errno = failure;
            return false;
        }
    }
    return copyTo(file, 0, from) && ftruncate(file, from.size) == 0 && fsync(file) == 0;
}

// A write in place is recorded as one file in the spare folder: a line that describes it, the new
// bytes and the old bytes. The line's length does not depend on the number of bytes.
QByteArray recordLine(const QByteArray &target, qint64 size)
{
    const QJsonObject about{{u"path"_s, QString::fromLatin1(target.toPercentEncoding("/"))},
                            {u"size"_s, QString::number(size).rightJustified(s_sizeDigits, u'0')}};
    return QJsonDocument(about).toJson(QJsonDocument::Compact) + '\n';
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

// A free name in the spare folder.
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

// Stores bytes in the spare folder and returns the name. Returns an empty name, with errno set, on
// failure.
QByteArray keepSpare(const QByteArray &target, const QString &ending,
                     const std::function<bool(Part &)> &fill)
{
    const QMutexLocker locker(&s_spareNames);
    QByteArray name = spareName(target, ending);
    Part part;
    if (!part.open(name, S_IRUSR | S_IWUSR) || !fill(part) || part.put() != Outcome::Written)
        return {};
    return name;
}

// Whether an interrupted write alone explains the content: each byte is the old or the new one, or
// belongs to space that was allocated.
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

bool finishWrite(const QByteArray &target, const QByteArray &bytes, const QByteArray &before,
                 const Stretch &kept)
{
    const Descriptor file(open(target.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    return file.isOpen() && isCutOff(contentOf(file.get()), bytes, before) &&
           overwrite(file.get(), kept);
}

}  // namespace

// The new content: beside the target, or in the spare folder if the target can't be replaced.
struct WholeFile::Writing {
    QByteArray target{};
    struct stat old {
    };
    bool exists = false;
    Part part{};

    bool begin(const QString &path, mode_t usual)
    {
        target = followed(path);
        if (target.isEmpty())
            return false;
        exists = stat(target.constData(), &old) == 0;
        if (exists && !S_ISREG(old.st_mode)) {
            errno = S_ISDIR(old.st_mode) ? EISDIR : EINVAL;
            return false;
        }
        // Replacing needs no write permission for the file itself, so a protected file has to be
        // refused here.
        if (exists && faccessat(AT_FDCWD, target.constData(), W_OK, AT_EACCESS) != 0)
            return false;
        if (!exists)
            return part.open(target, usual);
        if (old.st_nlink == 1 && part.open(target, S_IRUSR | S_IWUSR)) {
            const Descriptor before(open(target.constData(), O_RDONLY | O_CLOEXEC));
            if (before.isOpen() && takeOver(before.get(), old, part.file()))
                return true;
        }
        isInPlace = true;
        return makeSpareFolder() && part.open(spareName(target, {}), S_IRUSR | S_IWUSR);
    }

    bool commit()
    {
        if (!isInPlace) {
            const Outcome outcome = part.put();
            if (outcome != Outcome::NotReplaceable || !exists)
                return outcome == Outcome::Written;
        }
        return writeInPlace();
    }

private:
    bool isInPlace = false;

    bool writeInPlace()
    {
        const Descriptor file(open(target.constData(), O_RDWR | O_CLOEXEC));
        struct stat now {
        };
        if (!file.isOpen() || fstat(file.get(), &now) != 0 || !makeSpareFolder())
            return false;
        const QByteArray line = recordLine(target, part.size());
        const QByteArray record = keepSpare(target, s_recordEnding, [&](Part &spare) {
            return spare.append(line) &&
                   spare.append(Stretch{.file = part.file(), .size = part.size()}) &&
                   spare.append(Stretch{.file = file.get(), .size = now.st_size});
        });
        if (record.isEmpty())
            return false;
        const Descriptor before(open(record.constData(), O_RDONLY | O_CLOEXEC));
        const bool isWritten = overwrite(file.get(), {.file = part.file(), .size = part.size()});
        const int reason = errno;
        // If the file holds neither the complete new content nor the old one, the record is kept,
        // and the next start tries again.
        if (isWritten || overwrite(file.get(), {.file = before.get(),
                                                .offset = line.size() + part.size(),
                                                .size = now.st_size})) {
            unlink(record.constData());
            syncFolder(folderOf(record));
        }
        errno = reason;
        return isWritten;
    }
};

WholeFile::WholeFile(QString path, Readers readers) : m_path(std::move(path)), m_readers(readers) {}

WholeFile::~WholeFile() = default;

bool WholeFile::end(bool isDone)
{
    m_error = isDone ? 0 : errno;
    m_writing.reset();
    if (!isDone)
        qCInfo(logStore) << m_path << "was not written:" << error();
    return isDone;
}

bool WholeFile::append(QByteArrayView bytes)
{
    if (!m_writing) {
        if (m_error != 0)
            return false;
        m_writing = std::make_unique<Writing>();
        // The umask is subtracted from this mode.
        const mode_t mode = m_readers == Readers::User ? S_IRUSR | S_IWUSR : 0666;
        if (!m_writing->begin(m_path, mode))
            return end(false);
    }
    return m_writing->part.append(bytes) || end(false);
}

bool WholeFile::commit() { return m_writing && end(m_writing->commit()); }

QString WholeFile::error() const { return qt_error_string(m_error); }

void WholeFile::setSpareFolder(const QString &folder) { s_spareFolder = folder; }

QList<WholeFile::Unfinished> WholeFile::finishWrites()
{
    QList<Unfinished> result;
    if (s_spareFolder.isEmpty())
        return result;
    const QDir folder(s_spareFolder);
    // Such a file was still incomplete when the program was killed, and its target had not been
    // touched.
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
        const Stretch kept{.file = record.handle(),
                           .offset = record.pos() - bytes.size() - before.size(),
                           .size = bytes.size()};
        if (!finishWrite(target, bytes, before, kept)) {
            const QByteArray copy =
                keepSpare(target, {}, [&](Part &spare) { return spare.append(bytes); });
            // If not even that works, the record is kept for the next start.
            if (copy.isEmpty())
                continue;
            result.append({QFile::decodeName(target), QFile::decodeName(copy)});
        }
        record.remove();
    }
    return result;
}
