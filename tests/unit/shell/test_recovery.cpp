// What is not saved: kept while it is worked on, and brought back by the next start.

#include "editing/rendering.h"
#include "rows.h"
#include "shell/workbench.h"
#include "shellfixture.h"

#include <csignal>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_second = 1000;  // ms

OperationPtr shape(const Geometry &geometry, const EditMsg &style)
{
    return adding({geometry, style});
}

OperationPtr line(const QColor &color, const QPolygon &points)
{
    return shape(PolylineShape{points}, {.type = statePoly, .width = 3, .color = color});
}

}  // namespace

class TestRecovery : public ShellTest
{
    Q_OBJECT

private slots:
    void init()
    {
        begin();
        QVERIFY(!m_window->startRecovery(folder()));
        m_window->show();
    }
    void cleanup() { finish(); }

    // Each kind of shape and operation, what was undone, a text in the middle of a word, names and
    // numbers.
    void everythingComesBack()
    {
        QFont font(u"Sans Serif"_s, 23);
        font.setItalic(true);
        const EntryPtr kept = shapeOf(*line(Qt::magenta, {{20, 9}, {90, 60}}));
        const EditHistory shapes{
            operation(CropPicture{{{5, 5}, QSize(150, 120)}}),
            operation(SeveralChanges{
                {operation(ReplaceShape{std::make_shared<const EditEntry>(EditEntry{
                     EllipseShape{{QPoint(9, 9), QSize(60, 30)}}, kept->style, kept->id})}),
                 line(Qt::cyan, {{7, 8}, {30, 90}})}}),
            shape(TextShape{{10, 20}}, {.type = stateText,
                                        .color = QColor(1, 2, 3, 4),
                                        .text = u"\u00e4\n\U0001F600"_s,
                                        .font = font}),
            line(Qt::red, {{-5, 3}, {70, 80}}),
            shape(ArrowShape{CreateArrowPolygon({5, 5}, {90, 40}, 4)},
                  {.type = stateArrow, .width = 4, .color = Qt::blue}),
            shape(EllipseShape{{QPoint(9, 9), QSize(-4, 30)}},
                  {.type = stateEllipse, .width = 1000, .color = Qt::green}),
            shape(RectShape{QPolygon({{5, 5}, {15, 5}, {15, 15}, {5, 15}, {5, 5}})},
                  {.type = stateRect, .width = 2}),
            operation(AddShape{kept}),
            shape(EmptyShape{}, {.text = u"gone"_s})};
        addColoured(Qt::blue, u"A [*] & name"_s);
        m_window->NewDocument(solid({200, 150}, Qt::yellow), u"A [*] & name"_s,
                              {.kind = u"rectangle"_s});
        const EditHistory undone{operation(RemoveShape{kept->id})};
        editor()->setVecReDo(&undone);
        draw(shapes);
        button("BtnDrawText")->click();
        editor()->getUserText();
        QTest::keyClicks(m_window->findChild<QTextEdit *>(), u"half a wor"_s);
        kill();

        QVERIFY(!(QFileInfo(folder()).permissions() & 0x77));
        for (const QString &entry : entries()) {
            for (const auto &name : {u"/picture.png"_s, u"/state.json"_s})
                QVERIFY(!(QFileInfo(folder() + u'/' + entry + name).permissions() & 0x177));
        }
        QVERIFY(startAgain());
        QCOMPARE(told(), u"Pictures that had not been saved are back: 2"_s);
        QCOMPARE(tabs()->tabText(0), u"A [*] && name *"_s);
        QCOMPARE(tabs()->tabText(1), u"A [*] && name 1 *"_s);
        QCOMPARE(tabs()->currentIndex(), 1);
        QVERIFY(shows(Qt::yellow));
        QCOMPARE(editor()->getVecUnDo().size(), shapes.size() + 1);
        QCOMPARE(shapeOf(*editor()->getVecUnDo().first())->style.text, u"half a wor"_s);
        const EditHistory back = editor()->getVecUnDo().sliced(1);
        const QImage ground = solid({200, 150}, Qt::white).toImage();
        QCOMPARE(replayed(ground, back, {}), replayed(ground, shapes, {}));
        QCOMPARE(shapeOf(*back.last())->style.text, u"gone"_s);
        QCOMPARE(replayed(ground, editor()->getVecReDo() + back, {}),
                 replayed(ground, undone + shapes, {}));
        tabs()->setCurrentIndex(0);
        QVERIFY(shows(Qt::blue));
        addColoured(Qt::red, u"A [*] & name"_s);
        QCOMPARE(tabs()->tabText(2), u"A [*] && name 2 *"_s);
        // What came back once comes back again.
        kill();
        QVERIFY(startAgain());
        QCOMPARE(told(), u"Pictures that had not been saved are back: 3"_s);
    }

    // As an earlier version kept it.
    void earlierEntriesOpen()
    {
        addColoured(Qt::red);
        kill();
        QByteArray state =
            "{'version':1,'number':0,'shapes':["
            "{'kind':'line','points':[1,2,30,40],'tool':'line','color':'#ff0000ff','width':3},"
            "{'kind':'text','position':[5,6],'tool':'text','text':'a','width':1,"
            "'font':'Sans,12,-1,5,50,0,0,0,0,0','color':'#80ff0000'}],"
            "'undone':[{'kind':'nothing','tool':'move','color':'#ff000000','width':1}]}";
        m_scratch->put(u"recovery/"_s + entries().first() + u"/state.json"_s,
                       state.replace('\'', '"'));
        QVERIFY(startAgain());
        const Scene scene = sceneOf(editor()->getVecUnDo(), editor()->pictureSize());
        QCOMPARE(scene.shapes.size(), 2);
        QCOMPARE(std::get<PolylineShape>(scene.shapes.first()->geometry).points,
                 QPolygon(QList<QPoint>{{1, 2}, {30, 40}}));
        QCOMPARE(scene.shapes.last()->style.text, u"a"_s);
        QVERIFY(scene.shapes.first()->id != scene.shapes.last()->id);
        QCOMPARE(editor()->getVecReDo().size(), 1);
    }

    // With the picture as it was read, whatever has become of the file, which is not written over.
    void openedFilesComeBack()
    {
        const QString path = at(u"a.png"_s);
        QVERIFY(solid({200, 150}).save(path));
        open({path});
        m_desktop->clock->advance(s_second);
        QVERIFY(entries().isEmpty());
        draw({line(Qt::red, {{5, 5}, {50, 5}})});
        kill();
        QVERIFY(solid({200, 150}, Qt::green).save(path));
        QVERIFY(startAgain());
        QCOMPARE(title(), u"a.png * - Snap Workbench"_s);
        QVERIFY(shows(Qt::blue));
        QVERIFY(!m_window->SaveFile());
        QVERIFY(told().contains(u"another program"_s));
        QVERIFY(QFile::remove(path));
        QVERIFY(m_window->SaveFile());
        QCOMPARE(QImage(path).pixelColor(20, 5), QColor(Qt::red));
        m_window->keepUnsaved();
        QVERIFY(entries().isEmpty());
    }

    // The shapes of the file are not part of its picture, and come back once.
    void layeredFilesComeBack()
    {
        const QString path = at(u"a.ora"_s);
        const EditHistory drawn{line(Qt::red, {{5, 5}, {50, 5}})};
        PictureProgress progress;
        QVERIFY(writePicture(solid({200, 150}).toImage(), drawn, path, {}, -1, progress).isWritten);
        for (const bool isLater : {false, true}) {
            if (isLater)
                makeLater(path);
            open({path});
            const EditHistory shapes =
                EditHistory{line(Qt::green, {{5, 9}, {50, 9}})} + editor()->getVecUnDo();
            draw(shapes);
            kill();
            QVERIFY(startAgain());
            QCOMPARE(editor()->getVecUnDo().size(), shapes.size());
            const QPictureDocument &document = *m_window->work().documents().currentDocument();
            QCOMPARE(document.picture().pixelColor(20, 5),
                     isLater ? QColor(Qt::red) : QColor(Qt::blue));
            QCOMPARE(document.m_IsFileKept, isLater);
            answer(QMessageBox::Discard);
            m_window->CloseFile();
        }
    }

    void whatIsDoneWithGoes()
    {
        const QString path = at(u"b.png"_s);
        QVERIFY(solid({200, 150}).save(path));
        addColoured(Qt::red);
        open({path});
        draw({line(Qt::red, {{5, 5}, {50, 5}})});
        m_desktop->clock->advance(s_second);
        QTRY_COMPARE(entries().size(), 2);
        QVERIFY(m_window->SaveFile());
        QTRY_COMPARE(entries().size(), 1);
        draw({});
        m_desktop->clock->advance(s_second);
        QTRY_COMPARE(entries().size(), 2);
        answer(QMessageBox::Discard);
        QVERIFY(m_window->CloseAllFiles());
        QTRY_COMPARE(
            QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList());
    }

    // What covers hide in a saved picture is not to be found any more, whatever is drawn after it.
    void whatIsCoveredStaysCovered()
    {
        const QString path = at(u"c.png"_s);
        QVERIFY(solid({200, 150}).save(path));
        open({path});
        const OperationPtr cover =
            shape(SolidShape{{QRect(0, 0, 100, 100)}}, {.type = stateSolid, .color = Qt::black});
        draw({cover});
        m_desktop->clock->advance(s_second);
        QTRY_COMPARE(entries().size(), 1);
        QVERIFY(m_window->SaveFile());
        for (int i = 1; i <= 2; ++i) {
            draw({line(Qt::red, {{5, 5 + i}, {50, 5 + i}}), cover});
            m_desktop->clock->advance(s_second);
            awaitJobs();
        }
        m_window->keepUnsaved();
        QCOMPARE(entries().size(), 1);
        // Nor if the cover is taken off again.
        draw(
            {line(Qt::red, {{5, 7}, {50, 7}}), operation(RemoveShape{shapeOf(*cover)->id}), cover});
        kill();
        QVERIFY(startAgain());
        QVERIFY(editor()->getVecUnDo().isEmpty());
        const QImage back = editor()->getPixmap().toImage();
        QCOMPARE(back.pixelColor(20, 30), QColor(Qt::black));
        QCOMPARE(back.pixelColor(20, 7), QColor(Qt::red));
        QCOMPARE(back.pixelColor(150, 30), QColor(Qt::blue));
    }

    void nothingIsEverDeleted()
    {
        const auto check = [&](const QByteArray &row, const QString &file,
                               const QByteArray &content, bool isNewer) {
            init();
            addColoured(Qt::red);
            kill();
            const QString name = entries().first();
            m_scratch->put(u"recovery/"_s + name + u'/' + file, content);
            QVERIFY2(startAgain(), row);
            const QString left =
                isNewer ? folder() + u'/' + name : folder() + u"/damaged/"_s + name;
            QVERIFY2(
                told().contains(isNewer ? u"A later version"_s : u"is damaged. What is left"_s) &&
                    told().contains(left),
                qPrintable(told()));
            expect(row, QDir(left).entryList(QDir::Files).size(), 2);
            expect(row, title(), u"Snap Workbench"_s);
            QVERIFY2(m_window->CloseAllFiles(), row);
            kill();
            expect(row, startAgain(), isNewer);
            expect(row, QDir(left).entryList(QDir::Files).size(), 2);
        };
        const QString state = u"state.json"_s;
        const auto shapeOf = [](const QByteArray &kind) -> QByteArray {
            return R"({"version":1,"shapes":[{"kind":)" + kind +
                   R"(,"tool":"line","color":"#ff000000","width":1}]})";
        };
        check("no state", state, ""_ba, false);
        check("another state", state, "[1,2]"_ba, false);
        check("an unknown shape", state, shapeOf(R"("star")"), true);
        check("an unknown step", state, R"({"version":1,"shapes":[{"op":"melt"}]})"_ba, true);
        check("a shape beyond all measure", state, shapeOf(R"("line","points":[1e300,0])"), false);
        check("half a picture", u"picture.png"_s, "\x89PNG\r\n\x1a\n"_ba, false);
        check("a later version", state, R"({"version":3})"_ba, true);
    }

    // A limit on the size of files stands for the disk.
    void aFullDiskIsWaitedFor()
    {
        rlimit usual{};
        getrlimit(RLIMIT_FSIZE, &usual);
        signal(SIGXFSZ, SIG_IGN);
        const auto back = qScopeGuard([&] { setrlimit(RLIMIT_FSIZE, &usual); });
        const rlimit full{.rlim_cur = 10, .rlim_max = usual.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
        for (const auto color : {Qt::green, Qt::blue, Qt::red})
            addColoured(color);
        QTRY_VERIFY(told().startsWith(u"What is not saved can't be kept"_s));
        setrlimit(RLIMIT_FSIZE, &usual);
        // The first one tried is gone, and the others are kept all the same.
        answer(QMessageBox::Discard);
        m_window->CloseFile(0);
        QTRY_COMPARE((m_desktop->clock->advance(s_second), told()), QString());
        QTRY_COMPARE(entries().size(), 2);
        kill();
        QVERIFY(startAgain());
        QCOMPARE(told(), u"Pictures that had not been saved are back: 2"_s);
        QVERIFY(shows(Qt::red));
    }

private:
    QString folder() const { return at(u"recovery"_s); }
    QStringList entries() const
    {
        return QDir(folder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    }
    void addColoured(const QColor &color, const QString &name = {}) const
    {
        m_window->NewDocument(solid({200, 150}, color), name);
    }
    bool shows(const QColor &color) const
    {
        return editor()->getPixmap().toImage() == solid({200, 150}, color).toImage();
    }
    // What a worker has been told to write is written; nobody has a chance to say good-bye.
    void kill()
    {
        m_desktop->clock->advance(s_second);
        m_window->keepUnsaved();
        end();
        g_mapNameIndex.clear();
    }
    bool startAgain()
    {
        start();
        const bool isBack = m_window->startRecovery(folder());
        m_window->show();
        awaitJobs();
        return isBack;
    }
};

QTEST_MAIN(TestRecovery)
#include "test_recovery.moc"
