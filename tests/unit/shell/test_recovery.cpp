// What is not saved: kept while it is worked on, and brought back by the next start.

#include "editing/rendering.h"
#include "shellfixture.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTextEdit>
#include <QTimer>

#include <csignal>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_second = 1000;  // ms

QPixmap picture(const QColor &color)
{
    QPixmap pixmap(200, 150);
    pixmap.fill(color);
    return pixmap;
}

EntryPtr line(const QColor &color, const QPolygon &points)
{
    return std::make_shared<const EditEntry>(
        EditEntry{PolylineShape{points}, {.type = statePoly, .width = 3, .color = color}});
}

}  // namespace

class TestRecovery : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_shell.reset(); }
    void everythingComesBack();
    void openedFilesComeBack();
    void whatIsDoneWithGoes();
    void nothingIsEverDeleted_data();
    void nothingIsEverDeleted();
    void aFullDiskIsWaitedFor();

private:
    MainWindow &window() { return *m_shell->window; }
    TPictureEditor &editor() { return *window().findChild<TPictureEditor *>(); }
    QString folder() const { return m_shell->folder.filePath(u"recovery"_s); }
    QStringList entries() const
    {
        return QDir(folder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    }
    QString told()
    {
        const auto *bar = window().findChild<NoticeBar *>();
        return bar ? bar->text() : QString();
    }
    void draw(const QList<EntryPtr> &shapes)
    {
        editor().setVecUnDo(&shapes);
        PictureChanged(TPictureEditor::HistoryChange, 0);
    }
    // What a worker has been told to write is written; nobody has a chance to say good-bye.
    void kill()
    {
        m_shell->desktop.clock->advance(s_second);
        window().keepUnsaved();
        m_shell->end();
        g_mapNameIndex.clear();
    }
    bool startAgain()
    {
        m_shell->start();
        const bool isBack = window().startRecovery(folder());
        window().show();
        awaitJobs(window());
        return isBack;
    }

    std::unique_ptr<ShellFixture> m_shell;
};

void TestRecovery::init()
{
    m_shell = std::make_unique<ShellFixture>();
    QVERIFY(!window().startRecovery(folder()));
    window().show();
}

// Each kind of shape, what was undone, a text in the middle of a word, names and numbers.
void TestRecovery::everythingComesBack()
{
    QFont font(u"Sans Serif"_s, 23);
    font.setItalic(true);
    const EditHistory shapes{
        std::make_shared<const EditEntry>(EditEntry{TextShape{{10, 20}},
                                                    {.type = stateText,
                                                     .color = QColor(1, 2, 3, 4),
                                                     .text = u"\u00e4\n\U0001F600"_s,
                                                     .font = font}}),
        line(Qt::red, {{-5, 3}, {70, 80}}),
        std::make_shared<const EditEntry>(
            EditEntry{ArrowShape{CreateArrowPolygon({5, 5}, {90, 40}, 4)},
                      {.type = stateArrow, .width = 4, .color = Qt::blue}}),
        std::make_shared<const EditEntry>(
            EditEntry{EllipseShape{{QPoint(9, 9), QSize(-4, 30)}},
                      {.type = stateEllipse, .width = 1000, .color = Qt::green}}),
        std::make_shared<const EditEntry>(
            EditEntry{RectShape{QPolygon({{5, 5}, {15, 5}, {15, 15}, {5, 15}, {5, 5}})},
                      {.type = stateRect, .width = 2}}),
        std::make_shared<const EditEntry>(EditEntry{EmptyShape{}, {.text = u"gone"_s}})};
    window().NewDocument(picture(Qt::blue), u"A [*] & name"_s);
    window().NewDocument(picture(Qt::yellow), u"A [*] & name"_s, {.kind = u"rectangle"_s});
    const EditHistory undone{line(Qt::cyan, {{1, 1}})};
    editor().setVecReDo(&undone);
    draw(shapes);
    window().findChild<QPushButton *>(u"BtnDrawText"_s)->click();
    editor().getUserText();
    QTest::keyClicks(window().findChild<QTextEdit *>(), u"half a wor"_s);
    kill();

    QVERIFY(!(QFileInfo(folder()).permissions() & 0x77));
    for (const QString &entry : entries()) {
        for (const auto &name : {u"/picture.png"_s, u"/state.json"_s})
            QVERIFY(!(QFileInfo(folder() + u'/' + entry + name).permissions() & 0x177));
    }
    QVERIFY(startAgain());
    QCOMPARE(told(), u"Pictures that had not been saved are back: 2"_s);
    const auto *tabs = window().findChild<QTabWidget *>(u"tabWidget"_s);
    QCOMPARE(tabs->tabText(0), u"A [*] && name *"_s);
    QCOMPARE(tabs->tabText(1), u"A [*] && name 1 *"_s);
    QCOMPARE(tabs->currentIndex(), 1);
    QCOMPARE(editor().getPixmap().toImage(), picture(Qt::yellow).toImage());
    QCOMPARE(editor().getVecUnDo().size(), shapes.size() + 1);
    QCOMPARE(editor().getVecUnDo().first()->style.text, u"half a wor"_s);
    EditHistory back = editor().getVecUnDo().sliced(1);
    const QImage ground = picture(Qt::white).toImage();
    QCOMPARE(replayed(ground, back, {}), replayed(ground, shapes, {}));
    QCOMPARE(back.last()->style.text, u"gone"_s);
    QCOMPARE(replayed(ground, editor().getVecReDo(), {}), replayed(ground, undone, {}));
    tabs->findChild<QTabBar *>()->setCurrentIndex(0);
    QCOMPARE(editor().getPixmap().toImage(), picture(Qt::blue).toImage());
    window().NewDocument(picture(Qt::red), u"A [*] & name"_s);
    QCOMPARE(tabs->tabText(2), u"A [*] && name 2 *"_s);
    // What came back once comes back again.
    kill();
    QVERIFY(startAgain());
    QCOMPARE(told(), u"Pictures that had not been saved are back: 3"_s);
}

// With the picture as it was read, whatever has become of the file, which is not written over.
void TestRecovery::openedFilesComeBack()
{
    const QString path = m_shell->folder.filePath(u"a.png"_s);
    QVERIFY(picture(Qt::blue).save(path));
    window().openPictures({path});
    awaitJobs(window());
    m_shell->desktop.clock->advance(s_second);
    QVERIFY(entries().isEmpty());
    draw({line(Qt::red, {{5, 5}, {50, 5}})});
    kill();
    QVERIFY(picture(Qt::green).save(path));
    QVERIFY(startAgain());
    QCOMPARE(window().windowTitle(), u"a.png * - Snap Workbench"_s);
    QCOMPARE(editor().getPixmap().toImage(), picture(Qt::blue).toImage());
    QVERIFY(!window().SaveFile());
    QVERIFY(told().contains(u"another program"_s));
    QVERIFY(QFile::remove(path));
    QVERIFY(window().SaveFile());
    QCOMPARE(QImage(path).pixelColor(20, 5), QColor(Qt::red));
    window().keepUnsaved();
    QVERIFY(entries().isEmpty());
}

void TestRecovery::whatIsDoneWithGoes()
{
    const QString path = m_shell->folder.filePath(u"b.png"_s);
    QVERIFY(picture(Qt::blue).save(path));
    window().NewDocument(picture(Qt::red), {});
    window().openPictures({path});
    awaitJobs(window());
    draw({line(Qt::red, {{5, 5}, {50, 5}})});
    m_shell->desktop.clock->advance(s_second);
    QTRY_COMPARE(entries().size(), 2);
    QVERIFY(window().SaveFile());
    QTRY_COMPARE(entries().size(), 1);
    draw({});
    m_shell->desktop.clock->advance(s_second);
    QTRY_COMPARE(entries().size(), 2);
    QTimer::singleShot(0, [] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
            box->button(QMessageBox::Discard)->click();
    });
    QVERIFY(window().CloseAllFiles());
    QTRY_COMPARE(QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList());
}

void TestRecovery::nothingIsEverDeleted_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("told");
    const QString damaged = u"is damaged. What is left of it is in "_s;
    QTest::newRow("no state") << u"state.json"_s << QByteArray("") << damaged;
    QTest::newRow("another state") << u"state.json"_s << QByteArray("[1,2]") << damaged;
    QTest::newRow("an unknown shape")
        << u"state.json"_s
        << QByteArray(
               R"({"version":1,"shapes":[{"kind":"star","tool":"move","color":"#ff000000","width":1}]})")
        << damaged;
    QTest::newRow("a shape beyond all measure")
        << u"state.json"_s
        << QByteArray(
               R"({"version":1,"shapes":[{"kind":"line","points":[1e300,0],"tool":"line","color":"#ff000000","width":1}]})")
        << damaged;
    QTest::newRow("half a picture")
        << u"picture.png"_s << QByteArray("\x89PNG\r\n\x1a\n") << damaged;
    QTest::newRow("a later version")
        << u"state.json"_s << QByteArray(R"({"version":2})") << u"A later version"_s;
}

void TestRecovery::nothingIsEverDeleted()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QString, told);
    window().NewDocument(picture(Qt::red), {});
    kill();
    const QString name = entries().first();
    QFile changed(folder() + u'/' + name + u'/' + file);
    QVERIFY(changed.open(QIODevice::WriteOnly));
    changed.write(content);
    changed.close();
    QVERIFY(startAgain());
    const bool isNewer = told.startsWith(u"A later"_s);
    const QString left = isNewer ? folder() + u'/' + name : folder() + u"/damaged/"_s + name;
    QVERIFY2(TestRecovery::told().contains(told) && TestRecovery::told().contains(left),
             qPrintable(TestRecovery::told()));
    QCOMPARE(QDir(left).entryList(QDir::Files).size(), 2);
    QCOMPARE(window().windowTitle(), u"Snap Workbench"_s);
    QVERIFY(window().CloseAllFiles());
    kill();
    QCOMPARE(startAgain(), isNewer);
    QCOMPARE(QDir(left).entryList(QDir::Files).size(), 2);
}

// A limit on the size of files stands for the disk.
void TestRecovery::aFullDiskIsWaitedFor()
{
    rlimit usual{};
    getrlimit(RLIMIT_FSIZE, &usual);
    signal(SIGXFSZ, SIG_IGN);
    const auto back = qScopeGuard([&] { setrlimit(RLIMIT_FSIZE, &usual); });
    const rlimit full{.rlim_cur = 10, .rlim_max = usual.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    window().NewDocument(picture(Qt::green), {});
    window().NewDocument(picture(Qt::blue), {});
    window().NewDocument(picture(Qt::red), {});
    QTRY_VERIFY(told().startsWith(u"What is not saved can't be kept"_s));
    setrlimit(RLIMIT_FSIZE, &usual);
    // The first one tried is gone, and the others are kept all the same.
    const auto discard = [] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        box->button(QMessageBox::Discard)->click();
    };
    QTimer::singleShot(10, discard);
    window().CloseFile(0);
    QTRY_COMPARE((m_shell->desktop.clock->advance(s_second), told()), QString());
    QTRY_COMPARE(entries().size(), 2);
    kill();
    QVERIFY(startAgain());
    QCOMPARE(told(), u"Pictures that had not been saved are back: 2"_s);
    QCOMPARE(editor().getPixmap().toImage(), picture(Qt::red).toImage());
}

QTEST_MAIN(TestRecovery)
#include "test_recovery.moc"
