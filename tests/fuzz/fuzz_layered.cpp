// Layered files, of other programs or with our data in them. Hardly a byte of an archive can be
// changed without its sums telling, so the input is what two of its parts hold; but what begins as
// an archive does is read as it is.

#include "editing/picturefile.h"
#include "editing/rendering.h"
#include "fuzzing.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <vector>

#include <fuzzer/FuzzedDataProvider.h>
#include <zip.h>
#include <zlib.h>

namespace {

QByteArray png()
{
    QImage image(12, 9, QImage::Format_ARGB32);
    image.fill(0x80ff8040);
    QBuffer buffer;
    image.save(&buffer, "png");
    return buffer.data();
}

struct Part {
    const char *name = nullptr;
    QByteArray bytes{};
};

// Our data with the sums of all other parts, which no input would find.
QByteArray withSums(const QByteArray &state, const std::vector<Part> &parts)
{
    QJsonObject result = QJsonDocument::fromJson(state).object();
    if (result.isEmpty())
        return state;
    QJsonArray sums;
    for (const Part &part : parts) {
        const auto *bytes = reinterpret_cast<const Bytef *>(part.bytes.constData());
        sums.append(
            QJsonObject{{QStringLiteral("name"), QString::fromLatin1(part.name)},
                        {QStringLiteral("size"), part.bytes.size()},
                        {QStringLiteral("crc"), qint64(crc32_z(0, bytes, part.bytes.size()))}});
    }
    result[QStringLiteral("parts")] = sums;
    return QJsonDocument(result).toJson(QJsonDocument::Compact);
}

QByteArray archive(const QByteArray &stack, const QByteArray &state, bool isMerged)
{
    static const QByteArray s_png = png();
    std::vector<Part> parts{
        {"mimetype", "image/openraster"}, {"stack.xml", stack}, {"data/layer0.png", s_png}};
    if (isMerged)
        parts.push_back({"mergedimage.png", s_png});
    if (!state.isEmpty())
        parts.push_back({"SnapWorkbench/state.json", withSums(state, parts)});
    zip_source_t *target = zip_source_buffer_create(nullptr, 0, 0, nullptr);
    zip_source_keep(target);
    zip_t *written = zip_open_from_source(target, ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    for (const Part &part : parts) {
        zip_source_t *source =
            zip_source_buffer(written, part.bytes.constData(), part.bytes.size(), 0);
        REQUIRE(zip_file_add(written, part.name, source, 0) >= 0);
    }
    REQUIRE(zip_close(written) == 0);
    zip_stat_t stat;
    zip_source_stat(target, &stat);
    QByteArray bytes(static_cast<qsizetype>(stat.size), 0);
    zip_source_open(target);
    REQUIRE(zip_source_read(target, bytes.data(), stat.size) == bytes.size());
    zip_source_close(target);
    zip_source_free(target);
    return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int s_count = 0;
    static char s_offscreen[] = "QT_QPA_PLATFORM=offscreen";
    static const int s_set = putenv(s_offscreen);
    static QGuiApplication s_application(s_count, nullptr);
    static FuzzFile s_file;
    (void)s_set;
    QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    if (!bytes.startsWith("PK")) {
        FuzzedDataProvider input(data, size);
        const bool isMerged = input.ConsumeBool();
        const std::string stack = input.ConsumeRandomLengthString(size);
        bytes = archive(QByteArray::fromStdString(stack),
                        QByteArray::fromStdString(input.ConsumeRemainingBytesAsString()), isMerged);
    }
    s_file.fill(bytes);
    PictureProgress progress;
    const PictureRead read = readPicture(s_file.path(), progress);
    REQUIRE(read.picture.isNull() != read.failure.isEmpty());
    if (!read.shapes.isEmpty() && read.picture.width() < 64 &&
        sceneOf(read.shapes, read.picture.size()).size.width() < 64)
        replayed(read.picture, read.shapes, Qt::transparent);
    return 0;
}
