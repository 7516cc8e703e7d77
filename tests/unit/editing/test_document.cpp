#include "editing/picturedocument.h"
#include "editing/picturefile.h"
#include "editing/rendering.h"
#include "rows.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageWriter>
#include <QLocale>
#include <QPainter>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include <array>

#include <sys/stat.h>
#include <zlib.h>

using namespace Qt::StringLiterals;

namespace {

OperationPtr rectangle(const QRect &rect, const QColor &color = Qt::red)
{
    const QPolygon outline({rect.topLeft(),
                            {rect.x() + rect.width(), rect.y()},
                            {rect.x() + rect.width(), rect.y() + rect.height()},
                            {rect.x(), rect.y() + rect.height()},
                            rect.topLeft()});
    return adding({RectShape{outline}, {.type = stateRect, .width = 2, .color = color}});
}

QPixmap filled(const QSize &size, const QColor &color)
{
    QPixmap pixmap(size);
    pixmap.fill(color);
    return pixmap;
}

// Two or three of each kind, across the picture and beyond it.
EditHistory randomShapes(QRandomGenerator &random, const QSize &size)
{
    const auto point = [&] {
        return QPoint(random.bounded(-30, size.width() + 30),
                      random.bounded(-30, size.height() + 30));
    };
    const auto points = [&](int count) {
        QPolygon result;
        for (int i = 0; i < count; ++i)
            result.append(point());
        return result;
    };
    EditHistory history;
    for (int i = 0; i < 14; ++i) {
        EditMsg style{.width = 1 + random.bounded(12),
                      .color = QColor::fromRgba(random.generate() | 0x40000000),
                      .text = u"fjÅg\tمرحبا\nWA"_s};
        style.font.setPointSize(6 + random.bounded(40));
        const std::array<Geometry, 6> kinds{
            EmptyShape{},          RectShape{points(5)},     EllipseShape{QRect(point(), point())},
            ArrowShape{points(5)}, PolylineShape{points(9)}, TextShape{point()}};
        history.append(adding({kinds.at(i % 6), style}));
    }
    return history;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool fill(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray packed(const QByteArray &bytes)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"a.gz"_s);
    const gzFile file = gzopen(QFile::encodeName(path).constData(), "wb1");
    gzwrite(file, bytes.constData(), static_cast<unsigned>(bytes.size()));
    gzclose(file);
    return contentOf(path);
}

}  // namespace

class TestDocument : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_pipe = QFile::encodeName(m_folder.filePath(u"pipe.png"_s));
        QCOMPARE(mkfifo(m_pipe.constData(), 0600), 0);
    }

    // White, and not black, where a format has none; some of them lose a little.
    void savedTransparency()
    {
        QImage cut(40, 40, QImage::Format_ARGB32_Premultiplied);
        cut.fill(Qt::transparent);
        QPainter(&cut).fillRect(4, 4, 34, 34, Qt::blue);
        QPictureDocument document(QPixmap::fromImage(cut));
        for (const QString &name : {u"a.BmP"_s, u"a.Jpeg"_s}) {
            const QString path = m_folder.filePath(name);
            QVERIFY(document.save(path, nullptr, -1));
            const QImage saved(path);
            QVERIFY(saved.pixelColor(0, 0).lightness() > 250);
            QVERIFY(saved.pixelColor(20, 20).blue() > 250);
        }
    }

    void writtenByRows_data()
    {
        QTest::addColumn<QImage::Format>("format");
        QTest::addColumn<QString>("name");
        for (const auto format :
             {QImage::Format_RGB32, QImage::Format_ARGB32_Premultiplied, QImage::Format_ARGB32,
              QImage::Format_Indexed8, QImage::Format_Mono, QImage::Format_Grayscale8,
              QImage::Format_Grayscale16, QImage::Format_RGB888, QImage::Format_RGBA64}) {
            QTest::addRow("png %d", format) << format << u"a.jpeg.PNG"_s;
            QTest::addRow("jpg %d", format) << format << u"a.jpg"_s;
        }
        QTest::newRow("by its format") << QImage::Format_ARGB32_Premultiplied << u"png.jpe"_s;
    }

    // What a file that was written row by row holds is what the toolkit writes of the whole replay.
    void writtenByRows()
    {
        QFETCH(QImage::Format, format);
        QFETCH(QString, name);
        const QTemporaryDir folder;
        const QString path = folder.filePath(name);
        QRandomGenerator random(format);
        for (const QSize &size : {QSize(211, 407), QSize(90, 16), QSize(1, 1), QSize(640, 17)}) {
            QImage noise(size, QImage::Format_ARGB32);
            for (int y = 0; y < size.height(); ++y) {
                for (int x = 0; x < size.width(); ++x)
                    noise.setPixel(x, y, x % 7 ? random.generate() : random.generate() & 0xffffff);
            }
            QImage picture = noise.convertToFormat(format);
            picture.setDotsPerMeterX(2835);
            picture.setDotsPerMeterY(3937);
            picture.setText(u"Title"_s, u"short"_s);
            picture.setText(u"Author"_s, u"截圖 "_s.repeated(40));
            picture.setText(u"Copyright"_s, u"é"_s.repeated(300));
            if (format != QImage::Format_Mono && format != QImage::Format_Indexed8)
                picture.setColorSpace(QColorSpace::AdobeRgb);
            const EditHistory shapes =
                size.width() == 90 ? EditHistory() : randomShapes(random, size);
            const QByteArray kind = name.endsWith(u"jpe"_s) ? "jpeg" : QByteArray();
            const int quality = size.width() == 640 ? 30 : -1;
            PictureProgress progress;
            const PictureWrite written =
                writePicture(picture, shapes, path, kind, quality, progress);
            QVERIFY2(written.isWritten, qPrintable(written.failure));
            QVERIFY(written.file == FileIdentity::of(path));
            QCOMPARE(progress.permille.load(), 1000);

            QImage whole = replayed(QPixmap::fromImage(picture).toImage(), shapes, Qt::transparent);
            if (name.endsWith(u"jpg"_s)) {
                QImage white(size, QImage::Format_RGB32);
                white.fill(Qt::white);
                QPainter(&white).drawImage(0, 0, whole);
                white.setDotsPerMeterX(whole.dotsPerMeterX());
                white.setDotsPerMeterY(whole.dotsPerMeterY());
                for (const QString &key : whole.textKeys())
                    white.setText(key, whole.text(key));
                white.setColorSpace(whole.colorSpace());
                whole = white;
            }
            QBuffer bytes;
            QImageWriter writer(&bytes,
                                name.endsWith(u"PNG"_s, Qt::CaseInsensitive) ? "png" : "jpg");
            writer.setQuality(quality);
            QVERIFY(writer.write(whole));
            const QImage expected = QImage::fromData(bytes.data());
            const QImage actual(path);
            QCOMPARE(actual, expected);
            QCOMPARE(actual.format(), expected.format());
            QCOMPARE(actual.dotsPerMeterX(), expected.dotsPerMeterX());
            QCOMPARE(actual.dotsPerMeterY(), expected.dotsPerMeterY());
            QCOMPARE(actual.colorSpace(), expected.colorSpace());
            QCOMPARE(actual.textKeys(), expected.textKeys());
            for (const QString &key : expected.textKeys())
                QCOMPARE(actual.text(key), expected.text(key));
            QVERIFY(qAbs(contentOf(path).size() - bytes.size()) < 200 + bytes.size() / 50);
            // As it is read here no pixmap changes it.
            const PictureRead read = readPicture(path, progress);
            QVERIFY(read.picture.format() == QPixmap::fromImage(actual).toImage().format());
            QCOMPARE(read.picture, QPixmap::fromImage(actual).toImage());
        }
    }

    // From another thread, in the middle of it; and in a format that is written whole.
    void givenUp()
    {
        const QTemporaryDir folder;
        QImage picture(2000, 3000, QImage::Format_RGB32);
        QRandomGenerator random(3);
        random.fillRange(reinterpret_cast<quint32 *>(picture.bits()), picture.sizeInBytes() / 4);
        for (const QString &name : {u"a.png"_s, u"a.bmp"_s}) {
            const QString path = folder.filePath(name);
            QVERIFY(fill(path, "old"));
            PictureProgress progress;
            PictureWrite written;
            const std::unique_ptr<QThread> worker(QThread::create([&] {
                written =
                    writePicture(picture, {rectangle({9, 9, 900, 900})}, path, {}, -1, progress);
            }));
            progress.isCancelled = name == u"a.bmp";
            worker->start();
            QTRY_VERIFY(progress.permille > 100 || progress.isCancelled);
            progress.isCancelled = true;
            QVERIFY(worker->wait());
            QVERIFY(progress.permille < 1000);
            QVERIFY(!written.isWritten && written.failure.isEmpty());
            QCOMPARE(contentOf(path), "old");
        }
        PictureProgress progress;
        const QString path = folder.filePath(u"b.png"_s);
        QVERIFY(writePicture(picture, {}, path, {}, -1, progress).isWritten);
        progress.permille = 0;
        PictureRead read;
        const std::unique_ptr<QThread> worker(
            QThread::create([&] { read = readPicture(path, progress); }));
        worker->start();
        QTRY_VERIFY(progress.permille > 10);
        progress.isCancelled = true;
        QVERIFY(worker->wait());
        QVERIFY(progress.permille < 1000);
        QVERIFY(read.picture.isNull() && read.failure.isEmpty());
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 3);
    }

    void refusedFiles_data();
    // Where a pipe is opened this does not end.
    void refusedFiles()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, failure);
        const QString path = m_folder.filePath(u"a.svg"_s);
        QVERIFY(fill(path, content));
        PictureProgress progress;
        const PictureRead read = readPicture(path, progress);
        QCOMPARE(read.picture.isNull(), !failure.isEmpty());
        QVERIFY2(read.failure.startsWith(failure), qPrintable(read.failure));
        QCOMPARE(read.failure.isEmpty(), failure.isEmpty());
        QVERIFY(read.file == FileIdentity::of(path));
        for (const QString &other : {QFile::decodeName(m_pipe), u"/dev/zero"_s, m_folder.path()})
            QCOMPARE(readPicture(other, progress).failure, u"This is not a file."_s);
    }

    void unitedPicture()
    {
        const QPixmap picture = filled({60, 40}, Qt::blue);
        QPictureDocument document(picture);
        QCOMPARE(document.GetUnitePixmap().toImage(), picture.toImage());
        document.m_VecUnDo = {rectangle({10, 10, 20, 20}, Qt::green), rectangle({10, 10, 20, 20})};
        QCOMPARE(document.GetUnitePixmap().toImage().pixelColor(20, 10), QColor(Qt::green));
        document.m_VecUnDo.removeFirst();
        const QPictureDocument copy = document;
        QCOMPARE(document.GetUnitePixmap().toImage().pixelColor(20, 10), QColor(Qt::red));
        QCOMPARE(document.m_Pixmap.toImage(), picture.toImage());
        document.m_VecUnDo.clear();
        QCOMPARE(copy.m_VecUnDo.size(), 1);
    }

    // A shape does not leave the outline of a cut picture; pixels that only look empty are not its
    // border.
    void cutPicture()
    {
        QImage picture(60, 40, QImage::Format_ARGB32);
        picture.fill(Qt::blue);
        picture.setPixel(20, 10, 0);
        picture.setPixel(21, 10, qRgba(9, 9, 9, 0));
        const QImage result = replayed(picture, {rectangle({10, 10, 20, 20})}, QColor(0, 0, 0, 0));
        QCOMPARE(result.pixel(20, 10), 0U);
        QCOMPARE(result.pixelColor(21, 10), QColor(Qt::red));
        QCOMPARE(result.pixelColor(22, 10), QColor(Qt::red));
        QCOMPARE(replayed(picture, {}, Qt::yellow).pixelColor(20, 10), QColor(Qt::yellow));
    }

private:
    const QTemporaryDir m_folder;
    QByteArray m_pipe;
};

void TestDocument::refusedFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("failure");
    const QString outside = u"The drawing refers to other files, which are not read."_s;
    const QString tooMuch = u"The drawing is too complicated."_s;
    const auto drawing = [this](const QByteArray &inside, const QByteArray &before = {}) {
        QByteArray text = before +
                          R"(<svg width="20" height="10" xmlns="http://www.w3.org/2000/svg")"
                          R"( xmlns:xlink="http://www.w3.org/1999/xlink">)" +
                          inside + "</svg>";
        return text.replace("FIFO", m_pipe);
    };
    QTest::newRow("drawing")
        << drawing(
               R"-(<a href="http://example.org"><rect id="r" width="9" height="9" fill="url(#g)"/></a>)-"
               R"-(<style>rect { stroke: url("#g") }</style><use xlink:href="#r"/>)-",
               R"(<!DOCTYPE svg PUBLIC "-//W3C//DTD SVG 1.1//EN" "http://www.w3.org/svg11.dtd">)")
        << QString();
    for (const QByteArray reference :
         {"xlink:href=\"FIFO\"", "href=\"file://FIFO\"", "xlink:href=\" FIFO\"",
          "xlink:href=\"&#x2f;FIFO\"", "href=\"http://127.0.0.1:9/a.png\""}) {
        QTest::addRow("%s", reference.constData())
            << drawing("<image width=\"9\" height=\"9\" " + reference + "/>") << outside;
    }
    QTest::newRow("entity") << drawing("<image xlink:href=\"&f;\"/>",
                                       "<!DOCTYPE svg [<!ENTITY f \"FIFO\">]>")
                            << outside;
    QTest::newRow("outer entity") << drawing("&f;", "<!DOCTYPE svg [<!ENTITY f SYSTEM \"FIFO\">]>")
                                  << outside;
    QTest::newRow("style sheet")
        << drawing({}, R"(<?xml version="1.0"?><?xml-stylesheet href="FIFO" type="text/css"?>)")
        << outside;
    QTest::newRow("import") << drawing("<style><![CDATA[ @import 'FIFO'; ]]></style>") << outside;
    QTest::newRow("style") << drawing("<g style=\"fill:url( 'FIFO#a' )\"/>") << outside;
    QTest::newRow("drawing inside")
        << drawing("<image xlink:href=\"data:image/svg+xml;base64," +
                   drawing("<image width=\"9\" height=\"9\" xlink:href=\"FIFO\"/>").toBase64() +
                   "\"/>")
        << outside;
    QByteArray uses("<g id=\"g0\"><path/></g>");
    for (int i = 1; i < 40; ++i) {
        const QByteArray last = QByteArray::number(i - 1);
        uses += "<g id=\"g" + QByteArray::number(i) + "\"><use xlink:href=\"#g" + last +
                "\"/><use xlink:href=\"#g" + last + "\"/></g>";
    }
    QTest::newRow("doubling") << drawing(uses) << tooMuch;
    QTest::newRow("around")
        << drawing(R"(<g id="a"><use href="#b"/></g><g id="b"><use href="#a"/></g>)") << tooMuch;
    QTest::newRow("deep") << drawing(QByteArray("<g>").repeated(100'000)) << tooMuch;
    QTest::newRow("packed") << packed(drawing({})) << QString();
    QByteArray chain;
    for (int i = 0; i < 200; ++i)
        chain += "<g id=\"g" + QByteArray::number(i) + "\"><use xlink:href=\"#g" +
                 QByteArray::number(i + 1) + "\"/></g>";
    QTest::newRow("uses of uses of uses") << drawing(chain) << tooMuch;
    QTest::newRow("packed twice") << packed(packed(drawing("<image xlink:href=\"FIFO\"/>")))
                                  << u"The drawing is damaged."_s;
    QTest::newRow("packed, refers") << packed(drawing("<use href=\"a.svg#b\"/>")) << outside;
    QTest::newRow("packed without an end")
        << packed(QByteArray(65 << 20, ' ')) << u"The drawing can't be unpacked or is too large."_s;
    // The size, and then nothing.
    QByteArray header = QByteArray::fromHex("49484452000f4240000f42400802000000");
    const auto sum = static_cast<quint32>(
        crc32(0, reinterpret_cast<const Bytef *>(header.constData()), header.size()));
    header = QByteArray::fromHex("89504e470d0a1a0a0000000d" + header.toHex() +
                                 QByteArray::number(sum, 16).rightJustified(8, '0') +
                                 "0000000049444154");
    QTest::newRow("large") << header
                           << u"The picture needs %1 of memory, and only "_s.arg(
                                  QLocale().formattedDataSize(qint64{12} * 1'000'000 * 1'000'000));
    QTest::newRow("large drawing")
        << drawing({}).replace("\"20\" height=\"10\"", "\"90000\" height=\"900000\"")
        << u"The picture needs "_s;
}

QTEST_MAIN(TestDocument)
#include "test_document.moc"
