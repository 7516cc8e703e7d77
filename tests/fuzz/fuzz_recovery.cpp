// What an earlier run has left of an unsaved picture, changed by whatever has had its hands on it.
// What is read of it can be drawn, and written and read again as it was.

#include "editing/recoveryfolder.h"
#include "editing/rendering.h"
#include "editing/shapefile.h"
#include "fuzzing.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

namespace {

void put(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    REQUIRE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int s_count = 0;
    static char s_offscreen[] = "QT_QPA_PLATFORM=offscreen";
    static const int s_set = putenv(s_offscreen);
    static QGuiApplication s_application(s_count, nullptr);
    static const QTemporaryDir s_folder;
    (void)s_set;
    const QString entry = s_folder.filePath(QStringLiteral("entry"));
    QDir().mkpath(entry);
    put(entry + QStringLiteral("/picture.png"), "picture");
    put(entry + QStringLiteral("/state.json"),
        QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    const RecoveryFolder folder(s_folder.path());
    const RecoveryFolder::Content content = folder.read();
    REQUIRE(content.entries.size() + content.damaged.size() + content.newer.size() == 1);
    for (const RecoveryFolder::Entry &found : content.entries) {
        const QImage ground(64, 64, QImage::Format_ARGB32_Premultiplied);
        replayed(ground, found.work.shapes, Qt::transparent);
        ShapeNumbers written;
        ShapeNumbers read;
        const QJsonArray kept = toJson(found.work.shapes, written);
        const std::optional<EditHistory> again = historyFromJson(kept, read).history;
        ShapeNumbers rewritten;
        REQUIRE(again && toJson(*again, rewritten) == kept);
    }
    QDir(s_folder.filePath(QStringLiteral("damaged"))).removeRecursively();
    return 0;
}
