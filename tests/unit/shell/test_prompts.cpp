// What arrives while the main window asks whether to save.

#include "config/applicationrecord.h"
#include "config/xmlstore.h"
#include "fakedesktop.h"
#include "shell/mainwindow.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

// Lets something happen while the next message box is up, and then answers it.
void answer(QMessageBox::StandardButton button, const std::function<void()> &meanwhile)
{
    QTimer::singleShot(1, [button, meanwhile] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return answer(button, meanwhile);
        meanwhile();
        box->button(button)->click();
    });
}

QPixmap picture()
{
    QPixmap pixmap(20, 20);
    pixmap.fill(Qt::blue);
    return pixmap;
}

EditHistory redRectangle()
{
    const QPolygon outline({{5, 5}, {15, 5}, {15, 15}, {5, 15}, {5, 5}});
    return {std::make_shared<const EditEntry>(
        EditEntry{RectShape{outline}, {.type = stateRect, .width = 3, .color = Qt::red}})};
}

}  // namespace

class TestPrompts : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void shapesReachTheirFile_data();
    void shapesReachTheirFile();
    void newPicturesAreNotDiscarded_data();
    void newPicturesAreNotDiscarded();
    void savingChangesClosesNothing();

private:
    int tabs() const { return m_window->findChild<QTabWidget *>(u"tabWidget"_s)->count(); }

    FakeDesktop m_desktop;
    QTemporaryDir m_folder;
    std::unique_ptr<MainWindow> m_window;
};

void TestPrompts::init()
{
    g_ResourceFileName = m_folder.filePath(u"SnapWorkbench.xml"_s);
    QFile file(g_ResourceFileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<Galeway ver=\"1\"/>");
    file.close();
    for (const auto &name : {u"a.png"_s, u"b.png"_s})
        QVERIFY(picture().save(m_folder.filePath(name)));
    m_window = std::make_unique<MainWindow>();
    g_MainWindow = m_window.get();
    m_window->show();
}

void TestPrompts::cleanup()
{
    g_MainWindow = nullptr;
    m_window.reset();
    FreeAllXmlDocument();
}

void TestPrompts::shapesReachTheirFile_data()
{
    QTest::addColumn<bool>("byBus");
    QTest::newRow("a file opened meanwhile") << true;
    QTest::newRow("a grab that ended meanwhile") << false;
}

// What came to the front while the prompt was up must not lend its shapes to the file that is
// saved.
void TestPrompts::shapesReachTheirFile()
{
    QFETCH(bool, byBus);
    const QString path = m_folder.filePath(u"a.png"_s);
    m_window->openPictures({path});
    auto *editor = m_window->findChild<TPictureEditor *>();
    const EditHistory history = redRectangle();
    editor->setVecUnDo(&history);
    PictureChanged(TPictureEditor::HistoryChange, 0);
    answer(QMessageBox::Save, [&] {
        if (byBus)
            m_window->openPictures({m_folder.filePath(u"b.png"_s)});
        else
            m_window->NewDocument(picture(), {});
    });
    m_window->CloseFile();
    QCOMPARE(QImage(path).pixelColor(5, 10), QColor(Qt::red));
    QCOMPARE(m_window->GetDocumentIndex(path), -1);
    QCOMPARE(tabs(), 1);
    QVERIFY(editor->getVecUnDo().isEmpty());
}

void TestPrompts::newPicturesAreNotDiscarded_data()
{
    QTest::addColumn<bool>("arrives");
    QTest::newRow("a grab ended meanwhile") << true;
    QTest::newRow("nothing happened") << false;
}

void TestPrompts::newPicturesAreNotDiscarded()
{
    QFETCH(bool, arrives);
    m_window->NewDocument(picture(), {});
    answer(QMessageBox::Discard, [&] {
        if (arrives)
            m_window->NewDocument(picture(), {});
    });
    QCOMPARE(m_window->CloseAllFiles(), !arrives);
    QCOMPARE(tabs(), arrives ? 2 : 0);
}

// At the end of a session another program may still say no, and the pictures must be there then.
void TestPrompts::savingChangesClosesNothing()
{
    const QString path = m_folder.filePath(u"a.png"_s);
    m_window->openPictures({path});
    const EditHistory history = redRectangle();
    m_window->findChild<TPictureEditor *>()->setVecUnDo(&history);
    for (const auto button : {QMessageBox::Cancel, QMessageBox::Discard, QMessageBox::SaveAll}) {
        PictureChanged(TPictureEditor::HistoryChange, 0);
        answer(button, [] {});
        QCOMPARE(m_window->saveChanges(), button != QMessageBox::Cancel);
        QCOMPARE(tabs(), 1);
        QCOMPARE(m_window->HasModified(true), button != QMessageBox::SaveAll);
    }
    QCOMPARE(QImage(path).pixelColor(5, 10), QColor(Qt::red));
}

QTEST_MAIN(TestPrompts)
#include "test_prompts.moc"
