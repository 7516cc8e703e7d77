#include "editing/layeredfile.h"

#include "base/wholefile.h"
#include "editing/coverage.h"
#include "editing/layeredparts.h"
#include "editing/rendering.h"
#include "editing/rowwriter.h"
#include "editing/shapefile.h"
#include "editing/sparseimage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamWriter>

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include <zip.h>
#include <zlib.h>

using namespace layered;

namespace {

constexpr int s_done = 1000;             // permille
constexpr int s_encoded = 950;           // the same, when only the archive is still to be written
constexpr qsizetype s_atOnce = 1 << 20;  // bytes
constexpr int s_rowsAtOnce = 32;

constexpr qsizetype s_mostLayers = 64;  // above the picture
constexpr int s_thumbnail = 256;        // the longer side, pixels
constexpr qsizetype s_longestName = 40;

qint64 pixelsOf(QSize size) { return qint64{size.width()} * size.height(); }

struct Part {
    QString name{};
    QByteArray bytes{};
};

struct Layer {
    QString name{};
    QString part{};
    QPoint at{};
    QLatin1StringView mode = s_over;
};

// The mean of the pixels that fall onto each of the thumbnail's, taken band by band.
class Thumbnail
{
public:
    explicit Thumbnail(QSize picture) : m_picture(picture)
    {
        m_size = picture;
        if (std::max(picture.width(), picture.height()) > s_thumbnail)
            m_size.scale(s_thumbnail, s_thumbnail, Qt::KeepAspectRatio);
        m_size = m_size.expandedTo({1, 1});
        m_sums.resize(static_cast<size_t>(m_size.width()) * m_size.height());
    }

    void add(const QImage &band, int top)
    {
        for (int y = 0; y < band.height(); ++y) {
            const auto *line = reinterpret_cast<const QRgb *>(band.constScanLine(y));
            const qint64 row = qint64{top + y} * m_size.height() / m_picture.height();
            Sum *sums = &m_sums.at(static_cast<size_t>(row) * m_size.width());
            for (int x = 0; x < band.width(); ++x) {
                Sum &sum = sums[qint64{x} * m_size.width() / m_picture.width()];
                sum[0] += qRed(line[x]);
                sum[1] += qGreen(line[x]);
                sum[2] += qBlue(line[x]);
                sum[3] += qAlpha(line[x]);
                ++sum[4];
            }
        }
    }

    QImage image(QImage::Format format) const
    {
        QImage result(m_size, format);
        for (int y = 0; y < m_size.height(); ++y) {
            auto *line = reinterpret_cast<QRgb *>(result.scanLine(y));
            for (int x = 0; x < m_size.width(); ++x) {
                const Sum &sum = m_sums.at(static_cast<size_t>(y) * m_size.width() + x);
                const auto mean = [&](int of) {
                    return static_cast<int>((sum.at(of) + sum[4] / 2) / sum[4]);
                };
                line[x] = qRgba(mean(0), mean(1), mean(2), mean(3));
            }
        }
        return result;
    }

private:
    using Sum = std::array<quint64, 5>;  // red, green, blue, alpha, and how many pixels

    QSize m_picture;
    QSize m_size{};
    std::vector<Sum> m_sums{};
};

// How the shapes of a layer come to what they do to the pixels below.
enum class Blend {
    Over,      // it lies over them
    Multiply,  // they are multiplied with it
    Result,    // in more than one way, so the layer has what has become of them
};

Blend blendOf(const EntryPtr &shape)
{
    return std::holds_alternative<HighlighterShape>(shape->geometry) ? Blend::Multiply
                                                                     : Blend::Over;
}

QString nameOf(const EditEntry &shape)
{
    QString kind =
        QCoreApplication::translate("MainWindow", toolOf(shape.geometry).name).remove(u'&');
    if (const auto *marker = std::get_if<MarkerShape>(&shape.geometry))
        return kind + u' ' + QString::number(marker->number);
    if (!std::holds_alternative<TextShape>(shape.geometry))
        return kind;
    // What no XML file may contain is left out.
    QString beginning = shape.style.text.simplified();
    beginning.removeIf([](QChar c) { return !c.isPrint(); });
    return kind + u": "_s + beginning.left(s_longestName).trimmed();
}

// What is drawn of a part of a picture.
QRect drawnPart(const QImage &image, const QRect &within)
{
    QRect result;
    for (int y = within.top(); y <= within.bottom(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        const auto *end = line + within.right() + 1;
        const auto isDrawn = [](QRgb pixel) { return pixel != 0; };
        const auto *first = std::find_if(line + within.left(), end, isDrawn);
        if (first == end)
            continue;
        const auto *last = end;
        while (!isDrawn(*(last - 1)))
            --last;
        result |= QRect(static_cast<int>(first - line), y, static_cast<int>(last - first), 1);
    }
    return result;
}

class Writer
{
public:
    Writer(const QImage &picture, const EditHistory &history, PictureProgress &progress)
        : m_history(history), m_progress(progress), m_picture(picture),
          m_scene(sceneOf(history, picture.size())), m_base(changed(picture, m_scene))
    {
        m_base = m_base.convertToFormat(pixmapFormat(m_base));
    }

    bool write(WholeFile &file) { return checkLimits() && encode() && addState() && save(file); }

    const QString &failure() const { return m_failure; }

private:
    using Shapes = QList<EntryPtr>;

    bool fail(const QString &reason)
    {
        m_failure = reason;
        return false;
    }

    // What is written can be read again. Shapes that were removed are written, too.
    bool checkLimits()
    {
        if (!isPictureSize(m_picture.size()) || !isPictureSize(m_base.size()))
            return fail(LayeredFile::tr("A file with layers can't have that many pixels."));
        if (shapeCount(m_history) > s_mostShapes)
            return fail(tooManyShapes());
        return true;
    }

    static QString tooManyShapes()
    {
        return LayeredFile::tr("The picture has more shapes than a file with layers can have.");
    }

    // Other programs open what the picture is now, so the lowest layer is the picture after its
    // changes, without shapes. To take the changes back, this program needs it as it was before:
    // that is another part where it is not the same.
    bool encode()
    {
        m_groups = grouped();
        m_toDo = 2 * pixelsOf(m_base.size());
        if (!m_scene.picture.isEmpty())
            m_toDo += pixelsOf(m_picture.size());
        for (const Group &group : m_groups)
            m_toDo += pixelsOf(group.area.size());
        m_layers.append({.name = LayeredFile::tr("Picture"), .part = s_lowestPart});
        if (!add(s_lowestPart, m_base))
            return false;
        for (const Group &group : m_groups) {
            if (!addLayer(group))
                return false;
        }
        m_below = {};
        Thumbnail thumbnail(m_base.size());
        if (!add(s_mergedPart, m_base, m_scene.shapes, &thumbnail) ||
            !add(s_thumbnailPart, thumbnail.image(pixmapFormat(m_base))))
            return false;
        if (!m_scene.picture.isEmpty() && !add(s_picturePart, m_picture))
            return false;
        // The first part tells what the archive is, to those who read nothing else.
        m_parts.prepend({.name = s_stackPart, .bytes = stack()});
        m_parts.prepend({.name = s_typePart, .bytes = QByteArray(s_type.data(), s_type.size())});
        return true;
    }

    struct Group {
        Shapes shapes{};
        QString name{};
        QRect area{};  ///< beyond which they draw nothing
        Blend blend = Blend::Over;
    };

    QList<Group> grouped() const
    {
        const qsizetype count = m_scene.shapes.size();
        const qsizetype each = (count + s_mostLayers - 1) / s_mostLayers;
        QList<Group> result;
        for (qsizetype first = 0; first < count; first += each) {
            Group group{.shapes = m_scene.shapes.mid(first, each)};
            group.name = group.shapes.size() == 1 ? nameOf(*group.shapes.first())
                                                  : LayeredFile::tr("Shapes %1 to %2")
                                                        .arg(first + 1)
                                                        .arg(first + group.shapes.size());
            group.blend = blendOf(group.shapes.first());
            for (const EntryPtr &shape : std::as_const(group.shapes)) {
                if (blendOf(shape) != group.blend)
                    group.blend = Blend::Result;
                group.area |=
                    coverage(shape->geometry, shape->style, m_base.size(), true).boundingRect();
            }
            group.area &= m_base.rect();
            result.append(group);
        }
        return result;
    }

    // Shapes outside of the picture have no layer.
    bool addLayer(const Group &group)
    {
        QImage image;
        QRect part;
        if (group.blend == Blend::Result) {
            image = result(group);
            clearOutside(m_base.copy(group.area), image, image.rect());
            part = drawnPart(image, image.rect());
            image = image.copy(part);
            part.translate(group.area.topLeft());
        } else {
            SparseImage canvas(m_base.size(), QImage::Format_ARGB32_Premultiplied);
            if (canvas.isNull())
                return fail(noMemory());
            draw(canvas.image(), group.shapes);
            clearOutside(m_base, canvas.image(), group.area);
            part = drawnPart(canvas.image(), group.area);
            image = canvas.image().copy(part);
        }
        if (part.isEmpty())
            return !m_progress.isCancelled;
        const QString name = u"data/layer%1.png"_s.arg(m_layers.size());
        m_layers.append({.name = group.name,
                         .part = name,
                         .at = part.topLeft(),
                         .mode = group.blend == Blend::Multiply ? s_multiply : s_over});
        return add(name, image);
    }

    static void draw(QImage &image, const Shapes &shapes)
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        for (const EntryPtr &shape : shapes)
            drawShape(painter, shape->geometry, shape->style);
    }

    // The pixels of the group's area that it changes, as they are afterwards.
    QImage result(const Group &group)
    {
        if (m_below.isNull()) {
            m_below = m_base;
            useScreenDots(m_below);
        }
        const auto first = std::find(m_scene.shapes.begin() + m_countBelow, m_scene.shapes.end(),
                                     group.shapes.first());
        const qsizetype begin = first - m_scene.shapes.begin();
        draw(m_below, m_scene.shapes.mid(m_countBelow, begin - m_countBelow));
        const QImage before = m_below.copy(group.area);
        draw(m_below, group.shapes);
        m_countBelow = begin + group.shapes.size();
        QImage after =
            m_below.copy(group.area).convertToFormat(QImage::Format_ARGB32_Premultiplied);
        for (int y = 0; y < after.height(); ++y) {
            const auto *from = reinterpret_cast<const QRgb *>(before.constScanLine(y));
            auto *to = reinterpret_cast<QRgb *>(after.scanLine(y));
            std::transform(to, to + after.width(), from, to,
                           [](QRgb now, QRgb then) { return now == then ? 0 : now; });
        }
        return after;
    }

    // Adds a PNG file of a picture and its shapes.
    bool add(const QString &name, const QImage &picture, const Shapes &shapes = {},
             Thumbnail *thumbnail = nullptr)
    {
        QByteArray bytes;
        const std::unique_ptr<RowWriter> writer = RowWriter::create(
            "png", picture, pixmapFormat(picture), -1, [&bytes](QByteArrayView more) {
                bytes.append(more);
                return true;
            });
        const auto take = [&](const QImage &band, int /*top*/) {
            for (int y = 0; y < band.height() && !m_progress.isCancelled; y += s_rowsAtOnce) {
                const QImage rows(band.constScanLine(y), band.width(),
                                  std::min(s_rowsAtOnce, band.height() - y), band.bytesPerLine(),
                                  band.format());
                if (!writer->add(rows))
                    return false;
                m_pixelsDone += pixelsOf(rows.size());
                m_progress.permille = static_cast<int>(
                    std::min(m_pixelsDone * s_encoded / m_toDo, qint64{s_encoded}));
            }
            return !m_progress.isCancelled;
        };
        const auto takeAll = [&](const QImage &band, int top) {
            if (thumbnail)
                thumbnail->add(band, top);
            return take(band, top);
        };
        if (!writer->begin() || !replayedInBands(picture, shapes, takeAll) || !writer->end())
            return fail(noMemory());
        m_parts.append({.name = name, .bytes = bytes});
        return true;
    }

    QByteArray stack() const
    {
        QByteArray result;
        QXmlStreamWriter xml(&result);
        xml.setAutoFormatting(true);
        xml.writeStartDocument();
        xml.writeStartElement(u"image"_s);
        xml.writeAttribute(u"version"_s, u"0.0.3"_s);
        xml.writeAttribute(u"w"_s, QString::number(m_base.width()));
        xml.writeAttribute(u"h"_s, QString::number(m_base.height()));
        xml.writeStartElement(u"stack"_s);
        for (auto layer = m_layers.crbegin(); layer != m_layers.crend(); ++layer) {
            xml.writeEmptyElement(u"layer"_s);
            xml.writeAttribute(u"name"_s, layer->name);
            xml.writeAttribute(u"src"_s, layer->part);
            xml.writeAttribute(u"x"_s, QString::number(layer->at.x()));
            xml.writeAttribute(u"y"_s, QString::number(layer->at.y()));
            xml.writeAttribute(u"composite-op"_s, layer->mode);
        }
        xml.writeEndDocument();
        return result;
    }

    // The history in the form in which unsaved pictures are kept. What the user has taken back is
    // not part of what is saved. Another program may change the rest of the archive, and leave this
    // alone: it fits as long as all parts are those that were written with it.
    bool addState()
    {
        QJsonArray parts;
        for (const Part &part : std::as_const(m_parts)) {
            const auto sum = crc32_z(0, reinterpret_cast<const Bytef *>(part.bytes.constData()),
                                     part.bytes.size());
            parts.append(QJsonObject{{u"name"_s, part.name},
                                     {u"size"_s, part.bytes.size()},
                                     {u"crc"_s, static_cast<qint64>(sum)}});
        }
        ShapeNumbers numbers;
        const QJsonObject state{
            {u"version"_s, s_version},
            {u"picture"_s, m_scene.picture.isEmpty() ? s_lowestPart : s_picturePart},
            {u"shapes"_s, toJson(m_history, numbers)},
            {u"parts"_s, parts}};
        m_parts.append(
            {.name = s_statePart, .bytes = QJsonDocument(state).toJson(QJsonDocument::Compact)});
        if (m_parts.last().bytes.size() > s_longestState)
            return fail(tooManyShapes());
        return true;
    }

    bool save(WholeFile &file)
    {
        zip_error_t error;
        zip_error_init(&error);
        zip_source_t *target = zip_source_buffer_create(nullptr, 0, 0, &error);
        if (!target)
            return fail(noMemory());
        const std::unique_ptr<zip_source_t, decltype(&zip_source_free)> owner(target,
                                                                              zip_source_free);
        zip_source_keep(target);
        zip_t *archive = zip_open_from_source(target, ZIP_CREATE | ZIP_TRUNCATE, &error);
        if (!archive) {
            zip_source_free(target);
            return fail(noMemory());
        }
        const bool isFull = std::all_of(m_parts.begin(), m_parts.end(),
                                        [&](const Part &part) { return addTo(archive, part); });
        if (!isFull || zip_close(archive) != 0) {
            zip_discard(archive);
            return fail(noMemory());
        }
        m_parts.clear();
        return copy(target, file);
    }

    static bool addTo(zip_t *archive, const Part &part)
    {
        zip_source_t *source =
            zip_source_buffer(archive, part.bytes.constData(), part.bytes.size(), 0);
        const zip_int64_t index =
            source ? zip_file_add(archive, part.name.toUtf8().constData(), source, ZIP_FL_ENC_UTF_8)
                   : -1;
        if (index < 0) {
            zip_source_free(source);
            return false;
        }
        // Pictures are packed already.
        const bool isPacked = part.name == s_statePart || part.name == s_stackPart;
        return zip_set_file_compression(archive, index, isPacked ? ZIP_CM_DEFLATE : ZIP_CM_STORE,
                                        0) == 0;
    }

    bool copy(zip_source_t *source, WholeFile &file)
    {
        zip_stat_t stat;
        if (zip_source_stat(source, &stat) != 0 || zip_source_open(source) != 0)
            return fail(noMemory());
        QByteArray piece(s_atOnce, Qt::Uninitialized);
        bool isCopied = true;
        for (zip_uint64_t done = 0; isCopied && done < stat.size;) {
            const zip_int64_t count = zip_source_read(source, piece.data(), piece.size());
            isCopied = count > 0 && !m_progress.isCancelled &&
                       file.append(QByteArrayView(piece).first(count));
            done += std::max<zip_int64_t>(count, 0);
            m_progress.permille =
                s_encoded + static_cast<int>(done * (s_done - s_encoded) /
                                             std::max<zip_uint64_t>(stat.size, 1));
        }
        zip_source_close(source);
        return isCopied;
    }

    const EditHistory &m_history;
    PictureProgress &m_progress;
    const QImage &m_picture;
    Scene m_scene;
    QImage m_base;
    QImage m_below{};            ///< the base with the lowest shapes; null until it is needed
    qsizetype m_countBelow = 0;  ///< how many these are
    QList<Group> m_groups{};
    QList<Layer> m_layers{};  ///< bottom to top
    QList<Part> m_parts{};
    qint64 m_toDo = 0;  ///< pixels
    qint64 m_pixelsDone = 0;
    QString m_failure{};
};

}  // namespace

bool writeLayered(WholeFile &file, const QImage &picture, const EditHistory &history,
                  PictureProgress &progress, QString &failure)
{
    Writer writer(picture, history, progress);
    const bool isWritten = writer.write(file);
    failure = writer.failure();
    return isWritten;
}
