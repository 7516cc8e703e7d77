#include "editing/picturefile.h"

#include "base/memory.h"
#include "editing/drawingcheck.h"
#include "editing/layeredfile.h"
#include "editing/rendering.h"
#include "editing/rowwriter.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QLocale>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_done = 1000;             // permille
constexpr qint64 s_bytesOfAPixel = 12;   // decoded, displayed, and while it is drawn on
constexpr qint64 s_largestDecoded = 8;   // bytes a pixel
constexpr qsizetype s_atOnce = 1 << 20;  // bytes
constexpr int s_rowsAtOnce = 32;
constexpr qint64 s_longestStart = 4;  // bytes, by which a layered file is known

// A file that counts the bytes that are read, and fails once reading is cancelled.
class CountedFile : public QFile
{
public:
    explicit CountedFile(PictureProgress &progress) : m_progress(progress) {}

protected:
    qint64 readData(char *data, qint64 size) override
    {
        if (m_progress.isCancelled)
            return -1;
        const qint64 count = QFile::readData(data, size);
        // Reading a part again is no progress.
        m_furthest = std::max(m_furthest, QFile::pos() + std::max<qint64>(count, 0));
        if (const qint64 whole = QFile::size(); whole > 0)
            m_progress.permille =
                static_cast<int>(std::min(m_furthest * s_done / whole, qint64{s_done}));
        return count;
    }

private:
    PictureProgress &m_progress;
    qint64 m_furthest = 0;
};

// A buffer that fails once writing is cancelled.
class GivenUpBuffer : public QBuffer
{
public:
    explicit GivenUpBuffer(const PictureProgress &progress) : m_progress(progress) {}

protected:
    qint64 writeData(const char *data, qint64 size) override
    {
        return m_progress.isCancelled ? -1 : QBuffer::writeData(data, size);
    }

private:
    const PictureProgress &m_progress;
};

qint64 pixelsOf(const QImageReader &reader)
{
    const QSize size = reader.size();
    return qint64{size.width()} * size.height();
}

bool isOpaque(const QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        if (!std::all_of(line, line + picture.width(),
                         [](QRgb pixel) { return qAlpha(pixel) == 255; }))
            return false;
    }
    return true;
}

QImage decode(QImageReader &reader, QString &failure)
{
    QImage picture = reader.read();
    if (picture.isNull())
        failure = reader.errorString();
    return asPixmap(std::move(picture));
}

QImage decodeDrawing(QIODevice &file, QString &failure)
{
    std::optional<QByteArray> text = drawingText(file.readAll());
    if (!text) {
        failure = QCoreApplication::translate("QPictureDocument",
                                              "The drawing can't be unpacked or is too large.");
        return {};
    }
    const DrawingCheck check = checkDrawing(*text);
    failure = check.failure;
    if (!failure.isEmpty())
        return {};
    QBuffer buffer(&*text);
    QImageReader reader(&buffer, "svg");
    failure = tooLarge(check.pixels + pixelsOf(reader));
    return failure.isEmpty() ? decode(reader, failure) : QImage();
}

// Formats without transparency. A reader would expect a test of the extension, but only the end of
// the name is compared, without the dot, on purpose.
bool isOpaqueFormat(const QString &path)
{
    const QString upper = path.toUpper();
    return upper.endsWith(u"BMP"_s) || upper.endsWith(u"JPG"_s) || upper.endsWith(u"JPEG"_s);
}

QImage onWhite(const QImage &picture)
{
    QImage result(picture.size(), QImage::Format_RGB32);
    result.fill(Qt::white);
    QPainter(&result).drawImage(0, 0, picture);
    return result;
}

QString outOfMemory()
{
    return QCoreApplication::translate("QPictureDocument", "There is not enough memory.");
}

// Both functions write the complete file content. They return false on failure, usually with a
// reason in `failure`.

bool writeRows(RowWriter &writer, const QImage &picture, const QList<EntryPtr> &shapes, bool isFlat,
               PictureProgress &progress, QString &failure)
{
    if (std::max(picture.width(), picture.height()) > writer.longestSide()) {
        failure =
            QCoreApplication::translate(
                "QPictureDocument", "A file of this kind can't be wider or higher than %1 pixels.")
                .arg(QLocale().toString(writer.longestSide()));
        return false;
    }
    const auto take = [&](const QImage &band, int top) {
        for (int y = 0; y < band.height(); y += s_rowsAtOnce) {
            progress.permille = static_cast<int>(qint64{top + y} * s_done / picture.height());
            const QImage rows(band.constScanLine(y), band.width(),
                              std::min(s_rowsAtOnce, band.height() - y), band.bytesPerLine(),
                              band.format());
            if (progress.isCancelled || !writer.add(isFlat ? onWhite(rows) : rows))
                return false;
        }
        return true;
    };
    return writer.begin() && replayedInBands(picture, shapes, take) && writer.end();
}

bool writeWhole(WholeFile &file, const QByteArray &format, int quality, const QImage &picture,
                const EditHistory &history, bool isFlat, PictureProgress &progress,
                QString &failure)
{
    GivenUpBuffer buffer(progress);
    QImageWriter writer(&buffer, format);
    if (quality >= 0)
        writer.setQuality(quality);
    if (!writer.canWrite()) {
        failure = writer.errorString();
        return false;
    }
    QImage united =
        replayed(picture.convertToFormat(pixmapFormat(picture)), history, QColor(0, 0, 0, 0));
    if (isFlat)
        united = onWhite(united);
    if (!writer.write(united)) {
        failure = writer.errorString();
        return false;
    }
    united = {};
    const QByteArray &bytes = buffer.data();
    for (qsizetype done = 0; done < bytes.size(); done += s_atOnce) {
        progress.permille = static_cast<int>((s_done + s_done * done / bytes.size()) / 2);
        const QByteArrayView piece =
            QByteArrayView(bytes).sliced(done, std::min(s_atOnce, bytes.size() - done));
        if (progress.isCancelled || !file.append(piece))
            return false;
    }
    return true;
}

}  // namespace

QString tooLarge(qint64 pixels)
{
    const qint64 needed = pixels * s_bytesOfAPixel;
    const qint64 allowed = availableMemory() / 2;
    if (needed <= allowed)
        return {};
    const QLocale locale;
    return QCoreApplication::translate(
               "QPictureDocument", "The picture needs %1 of memory, and only %2 can be used now.")
        .arg(locale.formattedDataSize(needed), locale.formattedDataSize(allowed));
}

// The thread that shows the picture has nothing left to do.
QImage asPixmap(QImage picture)
{
    const QImage::Format format = pixmapFormat(picture);
    picture = std::move(picture).convertToFormat(format);
    if (format != QImage::Format_RGB32 && isOpaque(picture))
        picture = std::move(picture).convertToFormat(QImage::Format_RGB32);
    return picture;
}

PictureRead readPicture(const QString &path, PictureProgress &progress, bool isOwn)
{
    PictureRead result;
    // A pipe would block. The checks on the path are repeated on the open file, because the path
    // may lead to another file a moment later.
    const QByteArray name = QFile::encodeName(path);
    struct stat state {
    };
    // For some devices opening alone has an effect, so the path is checked first.
    if (stat(name.constData(), &state) == 0 && !S_ISREG(state.st_mode)) {
        result.failure = QCoreApplication::translate("QPictureDocument", "This is not a file.");
        return result;
    }
    const int opened = open(name.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (opened < 0) {
        result.failure = qt_error_string(errno);
        result.file = FileIdentity::of(path);
        return result;
    }
    const bool isRegular = fstat(opened, &state) == 0 && S_ISREG(state.st_mode);
    result.file = FileIdentity::of(opened);
    CountedFile file(progress);
    if (!isRegular || !file.open(opened, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        result.failure =
            isRegular ? file.errorString()
                      : QCoreApplication::translate("QPictureDocument", "This is not a file.");
        close(opened);
    } else if (isLayered(file.peek(s_longestStart))) {
        const std::optional<FileIdentity> identity = result.file;
        result = readLayered(opened, progress, isOwn);
        result.file = identity;
    } else {
        QImageReader reader(&file);
        // Some formats are recognised by the file name only.
        if (!reader.canRead())
            reader.setFormat(QFileInfo(path).suffix().toLatin1());
        if (reader.format().startsWith("svg")) {
            result.picture = decodeDrawing(file, result.failure);
        } else {
            result.failure = isOwn ? QString() : tooLarge(pixelsOf(reader));
            if (result.failure.isEmpty())
                result.picture = decode(reader, result.failure);
        }
    }
    if (progress.isCancelled)
        return {.file = result.file};
    return result;
}

PictureWrite writePicture(const QImage &picture, const EditHistory &history, const QString &path,
                          const QByteArray &format, int quality, PictureProgress &progress,
                          WholeFile::Readers readers)
{
    PictureWrite result;
    if (picture.isNull()) {
        result.failure = QCoreApplication::translate("QPictureDocument", "There is no picture.");
        return result;
    }
    const QByteArray used = format.isEmpty() ? QFileInfo(path).suffix().toLatin1() : format;
    WholeFile file(path, readers);
    if (used.toLower() == "ora") {
        result.isWritten = writeLayered(file, picture, history, progress, result.failure);
    } else {
        const bool isFlat = picture.hasAlphaChannel() && isOpaqueFormat(path);
        const Scene scene = sceneOf(history, picture.size());
        const QImage base = changed(picture, scene);
        const std::unique_ptr<RowWriter> rows =
            RowWriter::create(used, base, isFlat ? QImage::Format_RGB32 : pixmapFormat(picture),
                              quality, [&](QByteArrayView bytes) { return file.append(bytes); });
        result.isWritten =
            rows ? writeRows(*rows, base, scene.shapes, isFlat, progress, result.failure)
                 : writeWhole(file, used, quality, picture, history, isFlat, progress,
                              result.failure);
    }
    if (progress.isCancelled) {
        result.isWritten = false;
        result.failure.clear();
        return result;
    }
    result.isWritten = result.isWritten && file.commit();
    if (result.isWritten) {
        progress.permille = s_done;
        result.file = FileIdentity::of(path);
    } else if (result.failure.isEmpty()) {
        result.failure = file.hasFailed() ? file.error() : outOfMemory();
    }
    return result;
}

qint64 largestUntoldPicture() { return totalMemory() / 2 / s_bytesOfAPixel * s_largestDecoded; }
