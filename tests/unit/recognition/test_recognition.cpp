#include "page.h"
#include "recognition/codereader.h"
#include "recognition/textreader.h"
#include "recognition/wordmending.h"

#include <QTest>

#include <numeric>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

// clang-format off
const QStringList s_story{
    u"The harbour master of Tollen wrote seventeen letters in the spring of 1987, and every"_s,
    u"one of them began with the same question: who had moved the yellow buoy? Nobody"_s,
    u"answered. Boats came in with the evening tide, unloaded barrels, rope and crates of"_s,
    u"lemons, then left again before the lamps were lit. \"Quite impossible,\" said Ilse Brandt,"_s,
    u"who kept the only clock that worked. She had watched from her window since 6:45 and seen"_s,
    u"nothing but fog, a heron and two boys fishing below the jetty. By Thursday the council"_s,
    u"met; Mr. Vexley proposed a fine of 250 crowns, Mrs. Okafor a reward of 75. The vote was"_s,
    u"postponed, as votes in Tollen usually were, because the bell rope had frayed and no"_s,
    u"session could be closed without ringing. Meanwhile the buoy drifted. It passed the"_s,
    u"lighthouse at noon, crossed the shallow bank near Quarry Point, and finally came to rest"_s,
    u"beside an old wooden sign on which somebody had painted, long ago, three words in blue:"_s,
    u"please keep left. The judge laughed when he heard the story. He bought a small"_s,
    u"telescope, a jar of pickled plums, and a ticket home for just 12 crowns, and never spoke"_s,
    u"about it again to anyone outside the family."_s,
};
// clang-format on

QImage besideEachOther(const QImage &left, const QImage &right)
{
    QImage both(left.width() + right.width(), left.height(), QImage::Format_RGB32);
    QPainter painter(&both);
    painter.drawImage(0, 0, left);
    painter.drawImage(left.width(), 0, right);
    return both;
}

qsizetype editDistance(const QString &a, const QString &b)
{
    std::vector<qsizetype> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 0; i < a.size(); ++i) {
        qsizetype corner = row[0]++;
        for (qsizetype j = 0; j < b.size(); ++j) {
            const qsizetype changed = corner + (a[i] == b[j] ? 0 : 1);
            corner = row[j + 1];
            row[j + 1] = std::min({changed, corner + 1, row[j] + 1});
        }
    }
    return row.back();
}

bool goOn(int /*permille*/) { return true; }

}  // namespace

class TestRecognition : public QObject
{
    Q_OBJECT

private slots:
    void words_data()
    {
        const QImage light = pageOf(s_story, 11, false);
        const QImage dark = pageOf(s_story, 11, true);
        QTest::addColumn<QImage>("page");
        QTest::addColumn<int>("copies");
        QTest::newRow("dark on light") << light << 1;
        QTest::newRow("light on dark") << dark << 1;
        QTest::newRow("both in one picture") << besideEachOther(light, dark) << 2;
    }
    void words()
    {
        QFETCH(const QImage, page);
        QFETCH(const int, copies);
        const QString story = s_story.join(u' ');
        QVERIFY(story.count(u' ') >= 199);
        QString read = TextReader().read(page, goOn).text().simplified();
        // How quotes are written is a matter of taste.
        read.replace(u'\u2019', u'\'').replace(u'\u201c', u'"').replace(u'\u201d', u'"');
        const QString expected = QStringList(copies, story).join(u' ');
        const qsizetype wrong = editDistance(expected, read);
        qInfo() << wrong << "wrong letters of" << expected.size();
        QVERIFY2(wrong * 50 <= expected.size(), qPrintable(read));
    }

    // In the picture's own pixels, and where lines are cut for reading none is lost or torn.
    void boxes()
    {
        QStringList lines;
        for (int i = 100; i < 240; ++i)
            lines.append(u"row %1 of the tide table"_s.arg(i));
        const ReadText read = TextReader().read(pageOf(lines), goOn);
        QStringList found;
        for (const ReadLine &line : read.lines) {
            const int row = static_cast<int>(found.size());
            const QRect place(s_pageMargin, s_pageMargin + row * s_pageRow, 200, s_pageRow);
            for (const ReadWord &word : line.words)
                QVERIFY2(place.contains(word.box), qPrintable(line.text));
            found.append(line.text);
        }
        QCOMPARE(found, lines);
    }

    // A ground of its own reaches to its edges, close to which text begins.
    void panel()
    {
        const QImage panel =
            pageOf({u"Right of the tide table"_s, u"Keep left at the buoy"_s}, 13, true);
        QImage picture(panel.size() + QSize(200, 200), QImage::Format_RGB32);
        picture.fill(Qt::white);
        const QRect part = panel.rect().adjusted(8, 8, -8, -8);
        QPainter(&picture).drawImage(QPoint(103, 101), panel, part);
        QCOMPARE(TextReader().read(picture, goOn).text(),
                 u"Right of the tide table\nKeep left at the buoy"_s);
    }

    // Text that is turned, and has a fixed pitch, whose letters stand far apart.
    void turned()
    {
        const QStringList lines{u"Write to anna.lindqvist@example.com before noon."_s,
                                u"The table is in docs.tollen.example for all boats."_s};
        const QImage page = pageOf(lines, 11, true, u"DejaVu Sans Mono"_s);
        const QRect second(s_pageMargin, s_pageMargin + s_pageRow, page.width() - 2 * s_pageMargin,
                           s_pageRow);
        for (const int angle : {0, 90, 180, 270}) {
            const QTransform turn =
                QImage::trueMatrix(QTransform().rotate(angle), page.width(), page.height());
            const ReadText read = TextReader().read(page.transformed(turn), goOn);
            QCOMPARE(read.text().simplified(), lines.join(u' '));
            QCOMPARE(read.words().size(), 13);
            QVERIFY(turn.mapRect(second).contains(read.words().last().box));
        }
    }

    // A box that ends in the middle of letters is as large as they are, but no larger.
    void letters()
    {
        QImage picture(60, 60, QImage::Format_Grayscale8);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        const QRect letters(20, 20, 20, 16);
        painter.fillRect(letters, Qt::black);
        painter.fillRect(QRect(20, 38, 20, 10), Qt::black);  // the next line
        painter.end();
        QCOMPARE(withWholeLetters(letters.adjusted(2, 3, -4, -1), picture), letters);
        painter.begin(&picture);
        painter.fillRect(QRect(0, 26, 60, 2), Qt::black);  // a rule through all of it
        painter.end();
        QVERIFY(withWholeLetters(letters, picture).width() < 2 * letters.width());
    }

    void nothingToRead_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("none") << QSize();
        QTest::newRow("a pixel") << QSize(1, 1);
        QTest::newRow("blank") << QSize(640, 480);
        QTest::newRow("wider than is read at once") << QSize(20'000, 10);
        QTest::newRow("higher than is read at once") << QSize(10, 20'000);
    }
    void nothingToRead()
    {
        QFETCH(const QSize, size);
        QImage picture(size, QImage::Format_ARGB32);
        picture.fill(Qt::transparent);
        const ReadText read = TextReader().read(picture, goOn);
        QCOMPARE(read.text(), QString());
        QCOMPARE(read.failure, QString());
        QCOMPARE(CodeReader().read(picture).codes.size(), 0);
    }

    // It ends at the first word after that, says nothing, and the next one is read as if nothing
    // had been.
    void givenUp()
    {
        const QImage page = pageOf(s_story, 11);
        int asked = 0;
        const ReadText read = TextReader().read(page, [&asked](int) { return ++asked < 5; });
        QCOMPARE(asked, 5);
        QVERIFY(read.lines.isEmpty());
        QCOMPARE(read.failure, QString());

        const ReadText late = TextReader().read(page, goOn, 0);
        QVERIFY(late.lines.isEmpty());
        QVERIFY(!late.failure.isEmpty());

        int last = -1;
        const auto isForward = [&last](int permille) {
            return std::exchange(last, permille) <= permille;
        };
        QVERIFY(TextReader().read(page, isForward).text().contains(u"harbour"));
        QCOMPARE(last, 1000);
    }

    // Not there, or another library by that name.
    void library()
    {
        for (const QString &name : {u"libnosuchthing.so.7"_s, u"libm.so.6"_s}) {
            const QImage page = pageOf({u"tide"_s});
            QVERIFY(TextReader({name}).read(page, goOn).failure.contains(u"tesseract-ocr"));
            QVERIFY(CodeReader({name}).read(page).failure.contains(u"libzbar0"));
        }
        QVERIFY(TextReader({u"libnosuchthing.so.7"_s}).lack().contains(u"tesseract-ocr"));
        QCOMPARE(TextReader().lack(), QString());
        QCOMPARE(CodeReader().lack(), QString());
    }

    void languageData()
    {
        qputenv("TESSDATA_PREFIX", "/nonexistent");
        const ReadText read = TextReader().read(pageOf({u"tide"_s}), goOn);
        qunsetenv("TESSDATA_PREFIX");
        QVERIFY2(read.failure.contains(u"tesseract-ocr-eng"), qPrintable(read.failure));
        const QStringList languages{u"zh-Hant-TW"_s, u"nb-NO"_s, u"fr-FR"_s};
        QCOMPARE(TextReader::codesOf(languages), QStringList({u"chi_tra"_s, u"nor"_s, u"eng"_s}));
        QCOMPARE(TextReader::codesOf({u"de-AT"_s, u"de"_s}), QStringList({u"deu"_s, u"eng"_s}));
        QCOMPARE(TextReader::codesOf({u"zh-CN"_s}), QStringList({u"chi_sim"_s, u"eng"_s}));
        QCOMPARE(TextReader::codesOf({u"C"_s}), QStringList({u"eng"_s}));
    }

    void codes()
    {
        for (const bool isDark : {false, true}) {
            const QImage picture = codePicture(isDark);
            const QList<ReadCode> codes = CodeReader().read(picture).codes;
            QCOMPARE(codes.size(), 1);
            QCOMPARE(codes.first().type, u"QR-Code"_s);
            QCOMPARE(codes.first().text, QLatin1StringView(s_codeText));
            QVERIFY(picture.rect().contains(codes.first().box));
        }
        const auto greek = CodeReader().read(codePicture(false, s_greekCode)).codes;
        QCOMPARE(greek.value(0).text, u"\u0391\u03b8\u03ae\u03bd\u03b1"_s);
        QCOMPARE(CodeReader().read(pageOf(s_story, 11)).codes.size(), 0);
    }
};

QTEST_MAIN(TestRecognition)
#include "test_recognition.moc"
