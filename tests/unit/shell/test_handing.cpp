#include "shell/handedfiles.h"
#include "shell/pictureintake.h"
#include "shell/workbench.h"
#include "shellfixture.h"

using namespace Qt::StringLiterals;

/// What comes from other programs, and what goes to them.
class TestHanding : public ShellTest
{
    Q_OBJECT

private slots:
    void init()
    {
        begin();
        m_window->InitShowGeometry();
        m_window->show();
    }
    void cleanup() { finish(); }

    void pasting()
    {
        QClipboard *clipboard = QGuiApplication::clipboard();
        const auto paste = [this] {
            activate();
            QTest::keyClick(m_window.get(), Qt::Key_V, Qt::ControlModifier);
            awaitJobs();
            return tabs()->count();
        };
        clipboard->clear();
        QCOMPARE(paste(), 0);
        QVERIFY(!told().isEmpty());
        clipboard->setImage(solid({30, 20}).toImage());
        QCOMPARE(paste(), 1);
        QCOMPARE(editor()->pictureSize(), QSize(30, 20));
        QVERIFY(m_window->HasModified(false));
        // As a program puts it there that knows no more than its bytes, whole or cut off.
        QByteArray png;
        QBuffer buffer(&png);
        QVERIFY(solid({40, 50}).save(&buffer, "PNG"));
        for (const QByteArray &bytes : {png, png.first(png.size() / 4)}) {
            auto *data = new QMimeData;
            data->setData(u"image/png"_s, bytes);
            clipboard->setMimeData(data);
            QCOMPARE(paste(), 2);
            QCOMPARE(editor()->pictureSize(), QSize(40, 50));
        }
        QVERIFY(told().contains(u"no picture"_s));
        // Where text is typed it goes there.
        m_window->chooseTool(stateText);
        clickAt(view(), view()->rect().center());
        clipboard->setText(u"some text"_s);
        QTest::keyClick(view()->findChild<QTextEdit *>(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(view()->findChild<QTextEdit *>()->toPlainText(), u"some text"_s);
        m_window->chooseTool(stateMove);
    }

    void dropping()
    {
        QVERIFY(QDir().mkpath(at(u"many/deeper"_s)) && QDir().mkpath(at(u"none"_s)));
        const QString first = at(u"many/0000.png"_s);
        QVERIFY(solid({8, 8}).save(first));
        for (int i = 1; i < 1003; ++i)
            QVERIFY(QFile::copy(first, at(u"many/%1.png"_s.arg(i, 4, 10, QChar(u'0')))));
        QVERIFY(QFile::copy(first, at(u"many/deeper/a.png"_s)));
        QVERIFY(QFile::copy(first, at(u"unnamed"_s)));
        m_scratch->put(u"many/notes.txt"_s, "no picture");
        const auto urls = [this](const QStringList &names) {
            QList<QUrl> result;
            for (const QString &name : names)
                result.append(QUrl::fromLocalFile(at(name)));
            return result;
        };
        struct Row {
            const char *name;
            QList<QUrl> urls;
            QString text;
            int opened;
            QString told;
        };
        const QList<Row> rows{
            {"a file", urls({u"many/0001.png"_s}), {}, 1, {}},
            {"by its content", urls({u"unnamed"_s}), {}, 1, {}},
            {"among others",
             urls({u"many/notes.txt"_s, u"many/0002.png"_s}),
             {},
             1,
             u"no pictures were not opened: 1"_s},
            {"an empty folder", urls({u"none"_s}), {}, 0, at(u"none"_s)},
            {"elsewhere", {QUrl(u"https://example.org/a.png"_s)}, {}, 0, u"Nothing was fetched"_s},
            {"text", {}, u"some text"_s, 0, u"text, and no picture"_s},
            {"a folder", urls({u"many"_s}), {}, 1000, u"3 more"_s}};
        for (const Row &row : rows) {
            m_window->say(u"before"_s);
            m_window->work().dropAll();
            QMimeData data;
            if (row.text.isEmpty())
                data.setUrls(row.urls);
            else
                data.setText(row.text);
            QDragEnterEvent enter({99, 99}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                                  {});
            QCoreApplication::sendEvent(m_window.get(), &enter);
            QVERIFY2(enter.isAccepted(), row.name);
            // Nobody's file may be taken away.
            QCOMPARE(enter.dropAction(), Qt::CopyAction);
            QElapsedTimer timer;
            timer.start();
            QDropEvent drop({99, 99}, Qt::CopyAction, &data, Qt::LeftButton, {});
            QCoreApplication::sendEvent(m_window.get(), &drop);
            QVERIFY2(timer.elapsed() < 5000, row.name);
            QVERIFY2(tabs()->count() == row.opened, row.name);
            QVERIFY2(told().contains(row.told.isEmpty() ? u"before"_s : row.told),
                     qPrintable(QLatin1StringView(row.name) + told()));
            awaitJobs();
        }
    }

    // Nobody else can read it, and it goes with the program, or with the next one.
    void files()
    {
        QString failure;
        const QString left = at(u"handed/7/left.png"_s);
        QVERIFY(QDir().mkpath(at(u"handed/7"_s)) && solid({9, 9}).save(left));
        QFile::setPermissions(at(u"handed"_s),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        {
            HandedFiles files(m_scratch->folder.path(), nullptr);
            QVERIFY(!QFile::exists(left));
            const QImage picture = solid({9, 9}).toImage();
            const QString one = files.write(picture, u"../a/b.png"_s, failure);
            const QString other = files.write(picture, u"../a/b.png"_s, failure);
            QVERIFY(one != other && QFileInfo(one).fileName() == QFileInfo(other).fileName());
            QVERIFY(one.startsWith(at(u"handed/"_s)) && !one.contains(u"/../"_s));
            const auto own = QFile::ReadOwner | QFile::WriteOwner;
            QCOMPARE(QFile::permissions(one) & ~(QFile::ReadUser | QFile::WriteUser),
                     QFile::Permissions(own));
            QCOMPARE(QImage(one).size(), picture.size());
            files.remove(one);
            QVERIFY(!QFile::exists(one) && QFile::exists(other));
        }
        QVERIFY(!QFile::exists(at(u"handed"_s)));
        HandedFiles nowhere(m_scratch->put(u"file"_s, ""), nullptr);
        QVERIFY(nowhere.write(solid({9, 9}).toImage(), {}, failure).isEmpty());
        QVERIFY(!failure.isEmpty());
    }

    // A drag that nobody takes leaves nothing, and the tab works as before.
    void dragging()
    {
        add({30, 20}, u"one"_s);
        add({30, 20}, u"two"_s);
        QTabBar *bar = tabs()->tabBar();
        const QPoint place = bar->tabRect(0).center();
        QTest::mousePress(bar, Qt::LeftButton, {}, place);
        QMouseEvent move(QEvent::MouseMove, place + QPoint(40, 90),
                         bar->mapToGlobal(place + QPoint(40, 90)), Qt::NoButton, Qt::LeftButton,
                         {});
        QCoreApplication::sendEvent(bar, &move);
        QTest::mouseRelease(bar, Qt::LeftButton, {}, place);
        QVERIFY(!QFile::exists(at(u"handed"_s)));
        QCOMPARE(tabs()->currentIndex(), 0);
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(1).center());
        QCOMPARE(tabs()->currentIndex(), 1);
    }
};

QTEST_MAIN(TestHanding)
#include "test_handing.moc"
