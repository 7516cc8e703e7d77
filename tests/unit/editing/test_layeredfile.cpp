#include "editing/picturefile.h"
#include "editing/rendering.h"
#include "editing/shapefile.h"
#include "rows.h"
#include "scratch.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>

#include <functional>
#include <map>

#include <zip.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize s_size(160, 120);
const QString s_state = u"SnapWorkbench/state.json"_s;

// A picture with details, in the middle of nothing where it is to be transparent.
QImage picture(bool isTransparent = false)
{
    QRandomGenerator random(4);
    QImage result(s_size,
                  isTransparent ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    for (int y = 0; y < result.height(); ++y) {
        for (int x = 0; x < result.width(); ++x) {
            const bool isIn = !isTransparent || QRect(20, 10, 110, 90).contains(x, y);
            result.setPixel(x, y, isIn ? 0xff000000 | random.generate() : 0);
        }
    }
    return result;
}

EditEntry entry(const Tool &tool, int at)
{
    const QPoint from(20 + at % 40, 30 + at % 30);
    const Drag drag{.start = from,
                    .end = from + QPoint(70, 40),
                    .pointer = from + QPoint(70, 40),
                    .box = QRect(from, QSize(70, 40)),
                    .line = QPolygon(QList<QPoint>{from, from + QPoint(50, 60), {90, 20}}),
                    .width = 4};
    EditMsg style{.type = tool.state,
                  .width = 4,
                  .color = QColor(200, 30 + at, 60, 160),
                  .text = u"Ab & <c>\n\x01"_s,
                  .fill = Fill::Translucent,
                  .hasShadow = true};
    style.font.setPixelSize(20);
    const auto shape = tool.state == stateText ? TextShape{from} : shapeFrom(tool.state, drag);
    return {shape.value_or(EmptyShape()), style};
}

// A shape of each tool, and every change that a picture can go through.
EditHistory everything()
{
    EditHistory result;
    int at = 0;
    for (const Tool *tool : allTools())
        result.prepend(adding(entry(*tool, at += 5)));
    const EntryPtr first = shapeOf(*result.first());
    EditEntry moved = *first;
    moved.style.color = Qt::blue;
    const QList<OperationPtr> changes{
        operation(ReplaceShape{std::make_shared<const EditEntry>(moved)}),
        operation(OrderShape{first->id, 0}),
        operation(CropPicture{QRect(5, 5, 140, 100)}),
        operation(ExtendPicture{QRect(-10, -10, 180, 140), Qt::yellow}),
        operation(SeveralChanges{{operation(TurnPicture{1}), adding(entry(toolOf(stateRect), 3))}}),
        operation(MirrorPicture{Qt::Horizontal}),
        operation(BackdropPicture{Backdrop{.ground = Backdrop::Ground::Blurred,
                                           .blots = {0xff102030},
                                           .padding = 9,
                                           .ratio = {4, 3}}}),
        operation(RecolorBackdrop{{0xff405060, 0xff00ff00}}),
        operation(ResizePicture{{200, 230}}),
        operation(RemoveShape{shapeOf(*result.at(3))->id})};
    for (const OperationPtr &change : changes)
        result.prepend(change);
    return result;
}

QJsonArray json(const EditHistory &history)
{
    ShapeNumbers numbers;
    return toJson(history, numbers);
}

using Parts = std::map<QString, QByteArray>;

// The parts of an archive, those that `change` leaves, in an archive of its own.
void rewrite(const QString &from, const QString &to, const std::function<void(Parts &)> &change)
{
    Parts parts;
    zip_t *archive = zip_open(from.toUtf8().constData(), 0, nullptr);
    for (zip_int64_t i = 0; archive && i < zip_get_num_entries(archive, 0); ++i) {
        zip_stat_t stat;
        zip_stat_index(archive, i, 0, &stat);
        QByteArray bytes(static_cast<qsizetype>(stat.size), 0);
        zip_file_t *file = zip_fopen_index(archive, i, 0);
        zip_fread(file, bytes.data(), stat.size);
        zip_fclose(file);
        parts[QString::fromUtf8(stat.name)] = bytes;
    }
    if (archive)
        zip_discard(archive);
    change(parts);
    zip_t *written = zip_open(to.toUtf8().constData(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    for (const auto &[name, bytes] : parts)
        zip_file_add(written, name.toUtf8().constData(),
                     zip_source_buffer(written, bytes.constData(), bytes.size(), 0), 0);
    QCOMPARE(zip_close(written), 0);
}

QByteArray png(QSize size, const QColor &color, const char *format = "png")
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    QBuffer buffer;
    image.save(&buffer, format);
    return buffer.data();
}

QByteArray stack(const QByteArray &layers, const QByteArray &size = "w='40' h='30'")
{
    return "<?xml version='1.0'?><image " + size + "><stack>" + layers + "</stack></image>";
}

}  // namespace

class TestLayeredFile : public QObject
{
    Q_OBJECT

private slots:
    // The shapes stay shapes, each change can be taken back, and other programs see what a plain
    // picture shows.
    void comesBack_data()
    {
        QTest::addColumn<bool>("isTransparent");
        QTest::addColumn<EditHistory>("history");
        QTest::addColumn<QStringList>("expected");
        const QStringList drawn{u"Picture"_s, u"Text: Ab & <c>"_s, u"Numbered marker 1"_s};
        const auto toolCount = static_cast<qsizetype>(allTools().size());
        const EditHistory all = everything();
        QTest::newRow("all shapes and changes") << false << all << drawn.first(1);
        QTest::newRow("all of them, cut out") << true << all << drawn.first(1);
        QTest::newRow("shapes alone") << true << all.last(toolCount) << drawn;
        QTest::newRow("nothing drawn") << false << EditHistory() << drawn.first(1);
        EditHistory many;
        for (int i = 0; i < 200; ++i)
            many.prepend(adding(entry(toolOf(i % 3 ? stateRect : stateHighlighter), i)));
        QTest::newRow("more shapes than layers")
            << false << many << QStringList(u"Shapes 1 to 4"_s);
    }
    void comesBack()
    {
        QFETCH(const bool, isTransparent);
        QFETCH(const EditHistory, history);
        QFETCH(const QStringList, expected);
        const QImage before = picture(isTransparent);
        const QString path = write(before, history);
        const PictureRead read = readPicture(path, m_progress);
        QCOMPARE(read.notice + read.failure, u""_s);
        QCOMPARE(read.picture, before);
        QCOMPARE(json(read.shapes), json(history));
        QCOMPARE(replayed(read.picture, read.shapes, Qt::transparent),
                 replayed(before, history, Qt::transparent));
        const QString plain = m_scratch.path(u"plain.png"_s);
        QVERIFY(writePicture(before, history, plain, {}, -1, m_progress).isWritten);
        // What a program sees that knows nothing of this one.
        QProcess python;
        python.start(u"/usr/bin/python3"_s, {u"-c"_s, QString::fromUtf8(s_python), path, plain});
        QVERIFY(python.waitForFinished());
        QVERIFY2(python.exitCode() == 0, python.readAllStandardError());
        const QStringList names = QString::fromUtf8(python.readAllStandardOutput()).split(u'\n');
        QVERIFY(names.size() <= 66);
        for (const QString &name : expected)
            QVERIFY2(names.contains(name), qPrintable(names.join(u", "_s)));
        QVERIFY(!contentOf(plain).contains("SnapWorkbench"));
    }

    // Whoever else has changed the file, its merged picture is what counts.
    void openedElsewhere_data()
    {
        using Change = std::function<void(Parts &)>;
        QTest::addColumn<Change>("change");
        QTest::addColumn<QString>("told");
        QTest::addColumn<bool>("isFromLater");
        const auto state = [](const QByteArray &from, const QByteArray &to) {
            return Change([=](Parts &parts) { parts[s_state].replace(from, to); });
        };
        // clang-format off
        QTest::newRow("later shape")    << state("\"rectangle\"", "\"cloud\"")       << u"later version"_s   << true;
        QTest::newRow("later data")     << state("\"version\":1", "\"version\":2") << u"later version"_s << true;
        QTest::newRow("damaged data")   << state("[", "")                        << u"is damaged"_s      << false;
        QTest::newRow("missing picture") << state("data/layer0.png\",\"shapes", "data/layer.png\",\"shapes")
                                                                                 << u"is damaged"_s      << false;
        QTest::newRow("too many pixels") << state("\"shapes\":[", "\"shapes\":[" + QByteArray("{\"op\":\"resize\",\"size\":[20000,20000]},").repeated(9))
                                                                                 << u"is damaged"_s      << false;
        QTest::newRow("another part")   << Change([](Parts &parts) { parts[u"new"_s] = "x"; })
                                                                                 << u"Another program"_s << false;
        QTest::newRow("another layer")  << Change([](Parts &parts) { parts[u"data/layer1.png"_s] = png({9, 9}, Qt::red); })
                                                                                 << u"Another program"_s << false;
        QTest::newRow("none of ours")   << Change([](Parts &parts) { parts.erase(s_state); })
                                                                                 << u"one picture"_s     << false;
        // clang-format on
    }
    void openedElsewhere()
    {
        using Change = std::function<void(Parts &)>;
        QFETCH(const Change, change);
        QFETCH(const QString, told);
        QFETCH(const bool, isFromLater);
        const EditHistory history{adding(entry(toolOf(stateRect), 0))};
        const QString other = m_scratch.path(u"other.ora"_s);
        rewrite(write(picture(), history), other, change);
        const PictureRead read = readPicture(other, m_progress);
        QVERIFY2(read.notice.contains(told), qPrintable(read.notice));
        QCOMPARE(read.isFromLater, isFromLater);
        QCOMPARE(read.shapes, EditHistory());
        QCOMPARE(read.picture, replayed(picture(), history, Qt::transparent));
    }

    // Without a merged picture. The parts are those of an archive with a red layer, and a half blue
    // one that reaches out of the picture.
    void otherPrograms_data()
    {
        QTest::addColumn<QByteArray>("stackOf");
        QTest::addColumn<Parts>("more");
        QTest::addColumn<QString>("told");
        QTest::addColumn<QColor>("corner");
        const QColor none;
        const QColor red = Qt::red;
        const QColor mixed(128, 0, 127);
        const QByteArray below = "<layer src='a.png'/>";
        const QByteArray above = "<layer src='b.png' x='-5' y='-5' opacity='0.5'/>";
        const auto layer = [](const QByteArray &attributes) {
            return stack("<layer src='a.png' " + attributes + "/>");
        };
        const auto part = [](const char *name, const QByteArray &bytes) {
            return Parts{{QString::fromLatin1(name), bytes}};
        };
        // clang-format off
        QTest::newRow("two layers")     << stack(above + below)                             << Parts() << u"one picture"_s << mixed;
        QTest::newRow("hidden")         << stack("<layer src='b.png' visibility='hidden'/>" + below) << Parts() << u"one picture"_s << red;
        QTest::newRow("in a stack")     << stack("<stack x='-3' y='-3'>" + above + "</stack>" + below) << Parts() << u"one picture"_s << mixed;
        QTest::newRow("one is missing") << stack("<layer src='c.png'/>" + below)            << Parts() << u"c.png is missing"_s << red;
        QTest::newRow("one is no PNG")  << stack("<layer src='c.png'/>" + below)
                                        << part("c.png", png({9, 9}, red, "jpg"))           << u"c.png is no PNG"_s << red;
        QTest::newRow("merged one")     << QByteArray("no XML")
                                        << part("mergedimage.png", png({40, 30}, red))      << u""_s << red;
        QTest::newRow("merged damaged") << stack(below)
                                        << part("mergedimage.png", png({40, 30}, Qt::blue).chopped(30)) << u""_s << red;
        QTest::newRow("all missing")    << stack("<layer src='c.png'/>")                    << Parts() << u"c.png is missing"_s << none;
        QTest::newRow("blended")        << layer("composite-op='svg:multiply'")             << Parts() << u"can't put these together"_s << none;
        QTest::newRow("out of it")      << stack("<layer src='../a.png'/>")                 << part("../a.png", png({9, 9}, red)) << u"stack.xml is damaged"_s << none;
        QTest::newRow("absolute")       << stack("<layer src='/a.png'/>")                   << part("/a.png", png({9, 9}, red))   << u"stack.xml is damaged"_s << none;
        QTest::newRow("no number")      << layer("x='nan'")                                 << Parts() << u"stack.xml is damaged"_s << none;
        QTest::newRow("far away")       << layer("x='99999999999'")                         << Parts() << u"stack.xml is damaged"_s << none;
        QTest::newRow("opacity")        << layer("opacity='nan'")                           << Parts() << u"stack.xml is damaged"_s << none;
        QTest::newRow("huge")           << stack(below, "w='32000' h='32000'")              << Parts() << u"stack.xml is damaged"_s << none;
        QTest::newRow("entities")       << "<!DOCTYPE image [<!ENTITY a 'b'>]>" + stack(below) << Parts() << u"stack.xml is damaged"_s << none;
        QTest::newRow("deep")           << stack(QByteArray("<stack>").repeated(40) + below + QByteArray("</stack>").repeated(40)) << Parts() << u"stack.xml is damaged"_s << none;
        QTest::newRow("cut off")        << stack(below).chopped(9)                          << Parts() << u"stack.xml is damaged"_s << none;
        QTest::newRow("bomb")           << stack("<layer src='c.png'/>")
                                        << part("c.png", QByteArray(20 << 20, 'x'))         << u"unpacks to more"_s << none;
        QTest::newRow("another kind")   << stack(below) << part("mimetype", "application/x")  << u"no OpenRaster"_s << none;
        // clang-format on
    }
    void otherPrograms()
    {
        QFETCH(const QByteArray, stackOf);
        QFETCH(const Parts, more);
        QFETCH(const QString, told);
        QFETCH(const QColor, corner);
        const QString path = m_scratch.path(u"foreign.ora"_s);
        rewrite({}, path, [&](Parts &parts) {
            parts = {{u"mimetype"_s, "image/openraster"},
                     {u"stack.xml"_s, stackOf},
                     {u"a.png"_s, png({40, 30}, Qt::red)},
                     {u"b.png"_s, png({20, 20}, Qt::blue)}};
            for (const auto &[name, bytes] : more)
                parts[name] = bytes;
        });
        const PictureRead read = readPicture(path, m_progress);
        const QString text = read.notice + read.failure;
        QVERIFY2(text.contains(told) && text.isEmpty() == told.isEmpty(), qPrintable(text));
        QCOMPARE(read.picture.isNull(), !corner.isValid());
        QCOMPARE(read.picture.isNull() ? QColor() : read.picture.pixelColor(0, 0), corner);
    }

    // Archives that no library writes.
    void hostileBytes()
    {
        const EditHistory history{adding(entry(toolOf(stateRect), 0))};
        const QByteArray sound = contentOf(write(picture(), history));
        const auto told = [&](const QByteArray &bytes) {
            const PictureRead read =
                readPicture(m_scratch.put(u"hostile.ora"_s, bytes), m_progress);
            return read.picture.isNull() ? read.failure : read.notice;
        };
        const auto changed = [&](const QByteArray &from, const QByteArray &to) {
            return QByteArray(sound).replace(from, to);
        };
        for (const qsizetype size : {2, 40, 3000})
            expect("truncated", told(sound.first(size)), u"The file is damaged or not complete."_s);
        expect("twice", told(changed("data/layer0.png", "mergedimage.png")),
               u"The file has two parts that are called mergedimage.png."_s);
        // In the directory at the end: the flag of encryption, and a size of nearly 4 GiB.
        const qsizetype directory = sound.lastIndexOf("PK\x01\x02"_ba);
        QByteArray bytes = sound;
        bytes[directory + 8] = char(bytes.at(directory + 8) | 1);
        QVERIFY(told(bytes).contains(u"damaged"_s));
        bytes = sound;
        bytes.replace(directory + 24, 4, "\xff\xff\xff\xf0");
        QVERIFY(told(bytes).contains(u"damaged"_s));
        // Whatever is changed: a picture, or a reason.
        QRandomGenerator random(12);
        for (int round = 0; round < 300; ++round) {
            QByteArray mutated = sound;
            for (int i = random.bounded(1, 6); i > 0; --i)
                mutated[random.bounded(int(mutated.size()))] = char(random.generate());
            const PictureRead read =
                readPicture(m_scratch.put(u"hostile.ora"_s, mutated), m_progress);
            QVERIFY(read.picture.isNull() != read.failure.isEmpty());
        }
    }

    void givenUp()
    {
        const QString path = m_scratch.put(u"kept.ora"_s, "old");
        PictureProgress progress;
        progress.isCancelled = true;
        const PictureWrite result = writePicture(picture(), everything(), path, {}, -1, progress);
        QVERIFY(!result.isWritten && result.failure.isEmpty());
        QCOMPARE(contentOf(path), "old");
    }

private:
    QString write(const QImage &image, const EditHistory &history)
    {
        QString path = m_scratch.path(u"a.ora"_s);
        const PictureWrite result = writePicture(image, history, path, {}, -1, m_progress);
        [&] { QVERIFY2(result.isWritten, qPrintable(result.failure)); }();
        return path;
    }

    // Checks the archive with the means of another language, and tells the layers' names. What its
    // layers come to may differ a little: each pixel is rounded once more for each layer.
    static constexpr const char *s_python = R"(
import io, sys, zipfile
import xml.etree.ElementTree as tree
from PIL import Image, ImageChops

archive = zipfile.ZipFile(sys.argv[1])
plain = Image.open(sys.argv[2]).convert("RGBA")
assert archive.testzip() is None
first = archive.infolist()[0]
assert (first.filename, first.compress_type, first.header_offset, first.extra) == (
    "mimetype", zipfile.ZIP_STORED, 0, b"")
assert archive.read(first) == b"image/openraster"
image = tree.fromstring(archive.read("stack.xml"))
assert (int(image.get("w")), int(image.get("h"))) == plain.size

def part(name):
    return Image.open(io.BytesIO(archive.read(name))).convert("RGBA")

def same(one, other):
    return one.size == other.size and one.tobytes() == other.tobytes()

assert same(part("mergedimage.png"), plain)
assert max(part("Thumbnails/thumbnail.png").size) == min(256, max(plain.size))
merged = Image.new("RGBA", plain.size)
for layer in reversed(image.find("stack").findall("layer")):
    print(layer.get("name"))
    above = Image.new("RGBA", plain.size)
    above.paste(part(layer.get("src")), (int(layer.get("x")), int(layer.get("y"))))
    if layer.get("composite-op") == "svg:multiply":
        alpha = above.getchannel("A")
        color = above.convert("RGB")
        above = Image.composite(ImageChops.multiply(color, merged.convert("RGB")), color,
                                merged.getchannel("A"))
        above.putalpha(alpha)
    merged = Image.alpha_composite(merged, above)
white = [Image.alpha_composite(Image.new("RGBA", plain.size, "white"), one) for one in (merged, plain)]
difference = ImageChops.difference(white[0].convert("RGB"), white[1].convert("RGB"))
worst = max(high for low, high in difference.getextrema())
assert worst <= 8, worst
)";

    Scratch m_scratch{};
    PictureProgress m_progress{};
};

QTEST_MAIN(TestLayeredFile)
#include "test_layeredfile.moc"
