#include "editing/layeredfile.h"

#include "base/memory.h"
#include "editing/layeredparts.h"
#include "editing/shapefile.h"
#include "editing/shapeparts.h"

#include <QBuffer>
#include <QImageReader>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QSet>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

#include <unistd.h>

#include <zip.h>

using namespace layered;

namespace {

constexpr int s_done = 1000;             // permille
constexpr qsizetype s_atOnce = 1 << 20;  // bytes

// What is read of an archive at most, whoever made it.
constexpr zip_int64_t s_mostParts = 10'000;
constexpr qint64 s_longestPicture = 2LL << 30;  // bytes
constexpr qint64 s_longestStack = 4LL << 20;
constexpr qint64 s_longestType = 1000;
constexpr qint64 s_unsuspicious = 16LL << 20;   // bytes that any part may unpack to
constexpr qint64 s_largestRatio = 200;          // of a part that unpacks to more
constexpr int s_deepest = 32;                   // stacks that lie one in another
constexpr qint64 s_mostPixels = 2'000'000'000;  // that are worked through to show a picture

qint64 pixelsOf(QSize size) { return qint64{size.width()} * size.height(); }

// The parts of an archive, by their names.
class Archive
{
public:
    /// The file stays the caller's.
    Archive(int file, PictureProgress &progress) : m_progress(progress)
    {
        int error = 0;
        const int own = dup(file);
        m_zip.reset(zip_fdopen(own, 0, &error));
        if (!m_zip) {
            close(own);
            m_failure = LayeredFile::tr("The file is damaged or not complete.");
            return;
        }
        const zip_int64_t count = zip_get_num_entries(m_zip.get(), 0);
        if (count > s_mostParts) {
            m_failure = LayeredFile::tr("The file has too many parts.");
            return;
        }
        // Of two parts of one name each reader would choose another one.
        for (zip_int64_t i = 0; i < count && m_failure.isEmpty(); ++i) {
            const char *bytes = zip_get_name(m_zip.get(), i, ZIP_FL_ENC_GUESS);
            const QString name = QString::fromUtf8(bytes ? bytes : "");
            if (m_names.contains(name))
                m_failure = LayeredFile::tr("The file has two parts that are called %1.").arg(name);
            m_names.insert(name);
        }
        for (zip_int64_t i = 0; i < count; ++i)
            m_toRead += std::clamp(partAt(i).size, qint64{0}, s_longestPicture);
    }

    /// Why nothing can be read of it; empty if something can.
    const QString &failure() const { return m_failure; }
    bool has(const QString &name) const { return m_names.contains(name); }
    qsizetype count() const { return m_names.size(); }

    struct Told {
        qint64 size = -1;  ///< of its content, as the archive says; -1 if there is no such part
        qint64 sum = -1;   ///< CRC-32 of it
        qint64 packed = 0;
        bool isEncrypted = false;
        bool isUsual = false;  ///< stored, or packed in the way that every program knows
    };
    Told told(const QString &name) const
    {
        return partAt(zip_name_locate(m_zip.get(), name.toUtf8().constData(), ZIP_FL_ENC_GUESS));
    }

    /// The content of a part of at most `longest` bytes. None on failure, with the reason.
    std::optional<QByteArray> read(const QString &name, qint64 longest, QString &failure)
    {
        const Told part = told(name);
        if (part.size < 0)
            failure = LayeredFile::tr("%1 is missing in the file.").arg(name);
        else if (part.isEncrypted)
            failure = LayeredFile::tr("%1 is encrypted.").arg(name);
        else if (!part.isUsual)
            failure =
                LayeredFile::tr("%1 is packed in a way that this program does not know.").arg(name);
        else if (part.size > longest ||
                 (part.size > s_unsuspicious && part.size / s_largestRatio > part.packed))
            failure =
                LayeredFile::tr("%1 unpacks to more than a picture of this kind needs.").arg(name);
        else if (part.size > availableMemory() / 2)
            failure = noMemory();
        else if (std::optional<QByteArray> bytes = unpacked(name, part.size))
            return bytes;
        else
            failure = LayeredFile::tr("%1 is damaged.").arg(name);
        return {};
    }

private:
    Told partAt(zip_int64_t index) const
    {
        zip_stat_t stat;
        constexpr zip_uint64_t needed = ZIP_STAT_SIZE | ZIP_STAT_CRC | ZIP_STAT_COMP_SIZE |
                                        ZIP_STAT_COMP_METHOD | ZIP_STAT_ENCRYPTION_METHOD;
        if (index < 0 || zip_stat_index(m_zip.get(), index, 0, &stat) != 0 ||
            (stat.valid & needed) != needed)
            return {};
        constexpr auto most = static_cast<zip_uint64_t>(std::numeric_limits<qint64>::max());
        return {.size = static_cast<qint64>(std::min<zip_uint64_t>(stat.size, most)),
                .sum = stat.crc,
                .packed = static_cast<qint64>(std::min<zip_uint64_t>(stat.comp_size, most)),
                .isEncrypted = stat.encryption_method != ZIP_EM_NONE,
                .isUsual = stat.comp_method == ZIP_CM_STORE || stat.comp_method == ZIP_CM_DEFLATE};
    }

    // No more memory is used than there are bytes, whatever the archive says of their number.
    std::optional<QByteArray> unpacked(const QString &name, qint64 size)
    {
        const std::unique_ptr<zip_file_t, decltype(&zip_fclose)> part(
            zip_fopen(m_zip.get(), name.toUtf8().constData(), ZIP_FL_ENC_GUESS), zip_fclose);
        QByteArray result;
        // The library checks the sum when it has come to the end.
        for (zip_int64_t count = part ? 1 : -1; count != 0;) {
            const qsizetype before = result.size();
            if (count < 0 || before > size || m_progress.isCancelled)
                return {};
            result.resize(before + std::min<qint64>(s_atOnce, size + 1 - before));
            count = zip_fread(part.get(), result.data() + before, result.size() - before);
            result.resize(before + std::max<zip_int64_t>(count, 0));
            m_read += std::max<zip_int64_t>(count, 0);
            m_progress.permille = static_cast<int>(
                std::min<qint64>(m_read * s_done / std::max<qint64>(m_toRead, 1), s_done));
        }
        return result.size() == size ? std::optional(result) : std::nullopt;
    }

    PictureProgress &m_progress;
    std::unique_ptr<zip_t, decltype(&zip_discard)> m_zip{nullptr, zip_discard};
    QSet<QString> m_names{};
    QString m_failure{};
    qint64 m_toRead = 0;
    qint64 m_read = 0;
};

// What `stack.xml` says.
struct Stack {
    struct Layer {
        QString part{};
        QPoint at{};
        qreal opacity = 1;
    };
    QSize size{};
    QList<Layer> layers{};   ///< those that are visible, top to bottom
    qsizetype count = 0;     ///< of all
    bool isBlended = false;  ///< in a way that this program can't
    QString failure{};
};

class StackReader
{
public:
    explicit StackReader(const QByteArray &bytes) : m_xml(bytes) {}

    Stack read()
    {
        while (m_stack.failure.isEmpty() && !m_xml.atEnd()) {
            switch (m_xml.readNext()) {
            // Nothing that a picture needs, and a way to make a small file large.
            case QXmlStreamReader::DTD:
                fail();
                break;
            case QXmlStreamReader::StartElement:
                begin();
                break;
            case QXmlStreamReader::EndElement:
                end();
                break;
            default:
                break;
            }
        }
        if (m_xml.hasError() || !m_isImage)
            fail();
        return m_stack;
    }

private:
    struct Level {
        QPoint at{};
        bool isVisible = true;
    };

    void fail() { m_stack.failure = LayeredFile::tr("%1 is damaged.").arg(s_stackPart); }

    void begin()
    {
        const auto name = m_xml.name();
        if (!m_isImage) {
            m_isImage = name == u"image";
            m_stack.size = {number(u"w"_s, -1), number(u"h"_s, -1)};
            if (!m_isImage || !isPictureSize(m_stack.size))
                fail();
        } else if (name == u"stack" && m_levels.size() < s_deepest) {
            const Level in = level();
            // A stack as a whole is faint or blended only after its layers have been put together.
            if (in.isVisible && (opacity() != 1 || !isOver()))
                m_stack.isBlended = true;
            m_levels.append(in);
        } else if (name == u"layer") {
            addLayer();
        } else if (name == u"stack") {
            fail();
        }
    }

    void end()
    {
        if (m_xml.name() == u"stack" && !m_levels.isEmpty())
            m_levels.removeLast();
    }

    void addLayer()
    {
        const Level in = level();
        const qreal faint = opacity();
        const QString part = m_xml.attributes().value(u"src"_s).toString();
        // No part of an archive has a name that leads out of it.
        if (part.isEmpty() || part.startsWith(u'/') || part.contains(u'\\') ||
            part.split(u'/').contains(u".."_s))
            fail();
        ++m_stack.count;
        if (!in.isVisible)
            return;
        m_stack.isBlended = m_stack.isBlended || !isOver();
        m_stack.layers.append({part, in.at, faint});
    }

    // What is told of a stack or layer, with what holds for those around it.
    Level level()
    {
        const Level around = m_levels.isEmpty() ? Level() : m_levels.last();
        const QPoint at(number(u"x"_s, 0), number(u"y"_s, 0));
        const bool isHidden = m_xml.attributes().value(u"visibility"_s) == u"hidden";
        return {around.at + at, around.isVisible && !isHidden};
    }

    bool isOver() const
    {
        const auto mode = m_xml.attributes().value(u"composite-op"_s);
        return mode.isEmpty() || mode == s_over;
    }

    qreal opacity()
    {
        const auto told = m_xml.attributes().value(u"opacity"_s);
        bool isNumber = true;
        const qreal result = told.isEmpty() ? 1 : told.toDouble(&isNumber);
        if (isNumber && result >= 0 && result <= 1)
            return result;
        fail();
        return 1;
    }

    int number(const QString &name, int unless)
    {
        const auto told = m_xml.attributes().value(name);
        bool isNumber = true;
        const int result = told.isEmpty() ? unless : told.toInt(&isNumber);
        if (isNumber && std::abs(qint64{result}) <= ShapeParts::s_farthest)
            return result;
        fail();
        return unless;
    }

    QXmlStreamReader m_xml;
    Stack m_stack{};
    bool m_isImage = false;
    QList<Level> m_levels{};
};

class Reader
{
public:
    Reader(int file, PictureProgress &progress, bool isOwn)
        : m_progress(progress), m_isOwn(isOwn), m_archive(file, progress)
    {
    }

    PictureRead read()
    {
        if (!m_archive.failure().isEmpty())
            return {.failure = m_archive.failure()};
        QString ignored;
        const QByteArray type =
            m_archive.read(s_typePart, s_longestType, ignored).value_or(QByteArray());
        if (QLatin1StringView(type.trimmed()) != s_type)
            return {.failure = LayeredFile::tr("This is no OpenRaster picture.")};
        PictureRead result;
        if (m_archive.has(s_statePart)) {
            result = readOwn();
            if (!result.picture.isNull())
                return result;
        }
        readMerged(result);
        if (result.picture.isNull())
            result.notice.clear();
        return result;
    }

private:
    // The picture with its shapes. Without a picture, the notice says why.
    PictureRead readOwn()
    {
        PictureRead result;
        result.notice =
            LayeredFile::tr("What the file says of its shapes is damaged, so they are part of "
                            "the picture now.");
        QString ignored;
        const auto bytes = m_archive.read(s_statePart, s_longestState, ignored);
        const QJsonObject state = QJsonDocument::fromJson(bytes.value_or(QByteArray())).object();
        const double version = state[u"version"_s].toDouble();
        if (!bytes || version < 1)
            return result;
        ShapeNumbers numbers;
        HistoryRead read;
        if (version <= s_version)
            read = historyFromJson(state[u"shapes"_s].toArray(), numbers);
        if (version > s_version || read.isNewer) {
            result.isFromLater = true;
            result.notice =
                LayeredFile::tr("A later version of this program has made the file. Its shapes "
                                "can't be changed here, and it will not be written over.");
            return result;
        }
        if (!fits(state[u"parts"_s].toArray())) {
            result.notice =
                LayeredFile::tr("Another program has changed the file, so its shapes are part of "
                                "the picture now.");
            return result;
        }
        if (!read.history || shapeCount(*read.history) > s_mostShapes)
            return result;
        QString failure;
        const QString part = state[u"picture"_s].toString();
        QImage picture = readPng(part, failure);
        if (picture.isNull() || !isAffordable(*read.history, picture.size()))
            return result;
        return {.picture = std::move(picture), .shapes = *read.history};
    }

    // All parts, and none but these, are as they were when our data were written.
    bool fits(const QJsonArray &parts) const
    {
        return m_archive.count() == parts.size() + 1 &&
               std::all_of(parts.begin(), parts.end(), [this](const QJsonValue &part) {
                   const Archive::Told now = m_archive.told(part[u"name"_s].toString());
                   return now.size >= 0 && now.size == part[u"size"_s].toInteger(-1) &&
                          now.sum == part[u"crc"_s].toInteger(-1);
               });
    }

    // A few words can make a picture of any size, again and again.
    bool isAffordable(const EditHistory &history, QSize size) const
    {
        Scene scene{.size = size};
        qint64 pixels = pixelsOf(size);
        for (auto step = history.crbegin(); step != history.crend(); ++step) {
            if (!changesPicture(**step))
                continue;
            scene = applied(std::move(scene), {*step});
            scene.shapes.clear();
            scene.picture.clear();
            pixels += pixelsOf(scene.size);
            if (pixels > s_mostPixels || (!m_isOwn && !tooLarge(pixelsOf(scene.size)).isEmpty()))
                return false;
        }
        return true;
    }

    // The picture that every program writes for those who know no layers; else what the layers come
    // to.
    void readMerged(PictureRead &result)
    {
        QString ignored;
        Stack stack;
        if (const auto bytes = m_archive.read(s_stackPart, s_longestStack, stack.failure))
            stack = StackReader(*bytes).read();
        if (m_archive.has(s_mergedPart))
            result.picture = readPng(s_mergedPart, result.failure);
        if (result.picture.isNull())
            result.picture = composed(stack, result);
        if (result.picture.isNull())
            return;
        result.failure.clear();
        if (stack.count > 1 && result.notice.isEmpty())
            result.notice =
                LayeredFile::tr("Its layers are shown as one picture, which takes their place when "
                                "the file is saved.");
    }

    QImage composed(const Stack &stack, PictureRead &result)
    {
        const auto fail = [&](const QString &reason) {
            // What is wrong with a merged picture that is there, is said in the first place.
            if (result.failure.isEmpty())
                result.failure = reason;
            return QImage();
        };
        if (!stack.failure.isEmpty())
            return fail(stack.failure);
        if (stack.isBlended)
            return fail(LayeredFile::tr(
                "The file has no picture of its layers put together, and this program "
                "can't put these together itself."));
        if (const QString reason = tooLarge(pixelsOf(stack.size)); !reason.isEmpty() && !m_isOwn)
            return fail(reason);
        QImage image(stack.size, QImage::Format_ARGB32_Premultiplied);
        if (image.isNull())
            return fail(noMemory());
        image.fill(Qt::transparent);
        QPainter painter(&image);
        QString missing;
        qsizetype drawn = 0;
        for (auto layer = stack.layers.crbegin(); layer != stack.layers.crend(); ++layer) {
            const QImage pixels = readPng(layer->part, missing);
            if (m_progress.isCancelled)
                return {};
            if (pixels.isNull())
                continue;
            painter.setOpacity(layer->opacity);
            painter.drawImage(layer->at, pixels);
            ++drawn;
        }
        painter.end();
        if (drawn == 0 && !missing.isEmpty())
            return fail(missing);
        if (!missing.isEmpty() && result.notice.isEmpty())
            result.notice = LayeredFile::tr("A layer could not be read: %1").arg(missing);
        return asPixmap(std::move(image));
    }

    // Null on failure, with the reason.
    QImage readPng(const QString &name, QString &failure)
    {
        std::optional<QByteArray> bytes = m_archive.read(name, s_longestPicture, failure);
        if (!bytes)
            return {};
        QBuffer buffer(&*bytes);
        QImageReader reader(&buffer, "png");
        const QSize size = reader.size();
        m_pixels += std::max<qint64>(pixelsOf(size), 0);
        if (!isPictureSize(size) || m_pixels > s_mostPixels)
            failure = LayeredFile::tr("%1 is no PNG picture of a usable size.").arg(name);
        else if (const QString reason = tooLarge(pixelsOf(size)); !m_isOwn && !reason.isEmpty())
            failure = reason;
        else if (QImage picture = reader.read(); !picture.isNull())
            return asPixmap(std::move(picture));
        else
            failure = LayeredFile::tr("%1 is damaged.").arg(name);
        return {};
    }

    PictureProgress &m_progress;
    bool m_isOwn;
    Archive m_archive;
    qint64 m_pixels = 0;  ///< that have been unpacked
};

}  // namespace

bool isLayered(QByteArrayView start) { return start.startsWith("PK"); }

PictureRead readLayered(int file, PictureProgress &progress, bool isOwn)
{
    return Reader(file, progress, isOwn).read();
}
