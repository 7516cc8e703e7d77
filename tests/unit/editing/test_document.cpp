#include "editing/picturedocument.h"
#include "editing/pictureeditor.h"
#include "editing/rendering.h"
#include "editing/viewmapping.h"

#include <QPainterPath>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QList<long> g_changes;

long remember(long code, long /*unused*/)
{
    g_changes.append(code);
    return 0;
}

EntryPtr rectangle(const QRect &rect, const QColor &color = Qt::red)
{
    const QPolygon outline({rect.topLeft(),
                            {rect.x() + rect.width(), rect.y()},
                            {rect.x() + rect.width(), rect.y() + rect.height()},
                            {rect.x(), rect.y() + rect.height()},
                            rect.topLeft()});
    return std::make_shared<const EditEntry>(
        EditEntry{RectShape{outline}, {.type = stateRect, .width = 2, .color = color}});
}

QPixmap filled(const QSize &size, const QColor &color)
{
    QPixmap pixmap(size);
    pixmap.fill(color);
    return pixmap;
}

}  // namespace

class TestDocument : public QObject
{
    Q_OBJECT

private slots:
    void shownNames_data();
    void shownNames();
    void savedTransparency_data();
    void savedTransparency();
    void failedSaveAndLoad();
    void unitedPicture();
    void cutPicture();
    void undoAndRedo();
    void mapping_data();
    void mapping();
};

void TestDocument::shownNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("shown");
    QTest::newRow("first grab") << u""_s << 0 << u"untitled"_s;
    QTest::newRow("third grab") << u""_s << 2 << u"untitled 2"_s;
    QTest::newRow("named grab") << u"Mail"_s << 0 << u"Mail"_s;
    QTest::newRow("second of a name") << u"a/b"_s << 1 << u"a/b 1"_s;
    QTest::newRow("file") << u"/home/me/a.b.png"_s << -1 << u"a.b.png"_s;
    QTest::newRow("file without a folder") << u"a.png"_s << -1 << u"a.png"_s;
}

void TestDocument::shownNames()
{
    QFETCH(QString, name);
    QFETCH(int, number);
    QPictureDocument document;
    document.m_FileName = name;
    document.m_NameIndex = number;
    QTEST(document.GetShowName(), "shown");
    QCOMPARE(document.IsNewFile(), number >= 0);
}

void TestDocument::savedTransparency_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QColor>("corner");
    QTest::newRow("png") << u"a.png"_s << QColor(0, 0, 0, 0);
    QTest::newRow("bmp") << u"a.BmP"_s << QColor(Qt::white);
    QTest::newRow("jpg") << u"a.JPG"_s << QColor(Qt::white);
    QTest::newRow("jpeg") << u"a.Jpeg"_s << QColor(Qt::white);
}

void TestDocument::savedTransparency()
{
    QFETCH(QString, name);
    const QTemporaryDir folder;
    QPixmap picture = filled({40, 40}, Qt::blue);
    QPixmap flag;
    QPainterPath path;
    path.addEllipse(0, 0, 40, 40);
    TPictureEditor::EditPolyPixmap(picture, flag, true, &path, nullptr);
    QPictureDocument document(picture);
    QVERIFY(document.save(folder.filePath(name), nullptr, -1));
    const QImage saved(folder.filePath(name));
    QFETCH(QColor, corner);
    QCOMPARE(saved.pixelColor(0, 0).alpha(), corner.alpha());
    // Some of the formats lose a little.
    QVERIFY(qAbs(saved.pixelColor(0, 0).red() - corner.red()) < 8);
    QVERIFY(qAbs(saved.pixelColor(0, 0).blue() - corner.blue()) < 8);
    QVERIFY(saved.pixelColor(20, 20).blue() > 250);
}

void TestDocument::failedSaveAndLoad()
{
    const QTemporaryDir folder;
    QPictureDocument document(filled({4, 4}, Qt::blue));
    QVERIFY(!document.save(folder.filePath(u"no/such/folder/a.png"_s), nullptr, -1));
    QVERIFY(!document.save(folder.filePath(u"noformat"_s), nullptr, -1));
    QFile text(folder.filePath(u"text.png"_s));
    QVERIFY(text.open(QIODevice::WriteOnly));
    text.write("this is no picture");
    text.close();
    QPictureDocument broken(text.fileName());
    QVERIFY(broken.m_Pixmap.isNull());
    QVERIFY(!broken.m_Modified);
    QVERIFY(!broken.IsNewFile());
    QVERIFY(broken.GetUnitePixmap().isNull());
    QVERIFY(!broken.save(folder.filePath(u"empty.png"_s), nullptr, -1));
}

void TestDocument::unitedPicture()
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
void TestDocument::cutPicture()
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

void TestDocument::undoAndRedo()
{
    QWidget widget;
    TPictureEditor editor(&widget, nullptr);
    editor.setcallback(remember);
    const QPixmap picture = filled({60, 40}, Qt::blue);
    editor.setPixmap(picture);
    const EditHistory history{rectangle({1, 1, 9, 9}, Qt::green),
                              rectangle({20, 1, 9, 9}, Qt::red)};
    editor.setVecUnDo(&history);
    g_changes.clear();

    editor.Redo();
    QVERIFY(g_changes.isEmpty());
    editor.Undo();
    QCOMPARE(editor.getVecUnDo(), EditHistory{history[1]});
    QCOMPARE(editor.sendPixmap(Qt::transparent).toImage().pixelColor(5, 0), QColor(Qt::blue));
    editor.Undo();
    editor.Undo();
    QCOMPARE(editor.getVecReDo(), (EditHistory{history[1], history[0]}));
    QCOMPARE(editor.sendPixmap(Qt::transparent).toImage(), picture.toImage());
    editor.Redo();
    QCOMPARE(editor.getVecUnDo(), EditHistory{history[1]});
    QCOMPARE(g_changes, (QList<long>{1, 1, 1}));
    // The document's own vectors are a copy.
    QCOMPARE(history.size(), 2);
    editor.setVecUnDo(&editor.getVecUnDo());
    QVERIFY(editor.getVecUnDo().isEmpty());
}

void TestDocument::mapping_data()
{
    QTest::addColumn<QSize>("widget");
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<float>("scale");
    QTest::addColumn<QPoint>("margins");
    QTest::addColumn<QSize>("drawing");
    QTest::newRow("centred, cut") << QSize(101, 50) << QSize(40, 60) << 1.0F << QPoint(30, 0)
                                  << QSize(101, 60);
    QTest::newRow("zoomed in") << QSize(100, 100) << QSize(40, 60) << 2.0F << QPoint(10, 0)
                               << QSize(100, 120);
    QTest::newRow("zoomed out, truncated")
        << QSize(10, 10) << QSize(33, 33) << 0.5F << QPoint(0, 0) << QSize(16, 16);
}

void TestDocument::mapping()
{
    QFETCH(QSize, widget);
    QFETCH(QSize, picture);
    QFETCH(float, scale);
    const ViewMapping view{.widget = widget, .picture = picture, .scale = scale};
    QTEST(view.margins(), "margins");
    QTEST(drawingSize(widget, picture, scale), "drawing");
}

QTEST_MAIN(TestDocument)
#include "test_document.moc"
