// Saving, and what arrives while the main window asks whether to save.

#include "config/settings.h"
#include "shellfixture.h"

#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <functional>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

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

// Gives the name that the next file dialog proposes, and cancels that.
void cancelSaveAs(QString &proposed)
{
    QTimer::singleShot(1, [&proposed] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return cancelSaveAs(proposed);
        proposed = QFileInfo(dialog->selectedFiles().value(0)).fileName();
        dialog->reject();
    });
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// One pixel.
const QByteArray s_gif =
    QByteArray::fromHex("47494638396101000100800100ff0000ffffff2c00000000010001000002024401003b");

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

// Milliseconds. Under the sanitizers memory alone is several times slower.
#ifdef __SANITIZE_ADDRESS__
constexpr qint64 s_heldUp = 400;
#else
constexpr qint64 s_heldUp = 100;
#endif

// The longest time in which the event loop did not turn. What this thread waited for a processor
// does not count: others may be busy.
class LoopWatch : public QObject
{
public:
    LoopWatch()
    {
        startTimer(1);
        restart();
    }
    void restart()
    {
        m_longest = 0;
        m_last = now();
    }
    qint64 longest() const { return m_longest / 1'000'000; }

protected:
    void timerEvent(QTimerEvent * /*event*/) override
    {
        const qint64 time = now();
        m_longest = std::max(m_longest, time - m_last);
        m_last = time;
    }

private:
    static qint64 now()
    {
        const QByteArray waited = contentOf(u"/proc/thread-self/schedstat"_s);
        return std::chrono::steady_clock::now().time_since_epoch() / 1ns -
               waited.split(' ').value(1).toLongLong();
    }

    qint64 m_longest = 0;
    qint64 m_last = 0;
};

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
    void eachFileGetsItsOwnShapes_data();
    void eachFileGetsItsOwnShapes();
    void failuresAreTold();
    void otherFormatsAreSavedElsewhere_data();
    void otherFormatsAreSavedElsewhere();
    void anotherFileIsNotOverwritten();
    void freeNamesAreProposed();
    void filesAreKnown();
    void theWindowAnswersMeanwhile();
    void questionsThatGoAwayDiscardNothing();

private:
    QString at(const QString &name) const { return m_shell->folder.filePath(name); }
    /// Opens a file, or shows the one that is open, and draws a rectangle with its left edge at 5.
    void markUp(const QString &path);
    QString told() const { return m_window->findChild<NoticeBar *>()->text(); }
    int tabs() const { return m_window->findChild<QTabWidget *>(u"tabWidget"_s)->count(); }

    std::unique_ptr<ShellFixture> m_shell;
    MainWindow *m_window = nullptr;
};

void TestPrompts::init()
{
    m_shell = std::make_unique<ShellFixture>();
    m_window = m_shell->window.get();
    for (const auto &name : {u"a.png"_s, u"b.png"_s})
        QVERIFY(picture().save(at(name)));
    m_window->show();
}

void TestPrompts::cleanup() { m_shell.reset(); }

void TestPrompts::markUp(const QString &path)
{
    m_window->openPictures({path});
    awaitJobs(*m_window);
    const EditHistory history = redRectangle();
    m_window->findChild<TPictureEditor *>()->setVecUnDo(&history);
    PictureChanged(TPictureEditor::HistoryChange, 0);
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
    const QString path = at(u"a.png"_s);
    markUp(path);
    answer(QMessageBox::Save, [&] {
        if (byBus)
            m_window->openPictures({at(u"b.png"_s)});
        else
            m_window->NewDocument(picture(), {});
    });
    m_window->CloseFile();
    QCOMPARE(QImage(path).pixelColor(5, 10), QColor(Qt::red));
    QCOMPARE(m_window->GetDocumentIndex(path), -1);
    QCOMPARE(tabs(), 1);
    QVERIFY(m_window->findChild<TPictureEditor *>()->getVecUnDo().isEmpty());
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
    const QString path = at(u"a.png"_s);
    markUp(path);
    for (const auto button : {QMessageBox::Cancel, QMessageBox::Discard, QMessageBox::SaveAll}) {
        PictureChanged(TPictureEditor::HistoryChange, 0);
        answer(button, [] {});
        QCOMPARE(m_window->saveChanges(), button != QMessageBox::Cancel);
        QCOMPARE(tabs(), 1);
        QCOMPARE(m_window->HasModified(true), button != QMessageBox::SaveAll);
    }
    QCOMPARE(QImage(path).pixelColor(5, 10), QColor(Qt::red));
    // A text that is still being typed counts.
    m_window->findChild<TPictureEditor *>()->setState(stateText);
    auto *view = m_window->findChild<QWidget *>(u"lblPicture"_s);
    const QPoint middle = view->rect().center();
    QMouseEvent press(QEvent::MouseButtonPress, middle, view->mapTo(m_window, middle),
                      view->mapToGlobal(middle), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view, &press);
    QVERIFY(m_window->HasModified(true));
}

void TestPrompts::eachFileGetsItsOwnShapes_data()
{
    QTest::addColumn<bool>("byTheTab");
    QTest::newRow("all are saved") << false;
    QTest::newRow("the tab that is not in front is closed") << true;
}

void TestPrompts::eachFileGetsItsOwnShapes()
{
    QFETCH(bool, byTheTab);
    markUp(at(u"a.png"_s));
    m_window->openPictures({at(u"b.png"_s)});
    PictureChanged(TPictureEditor::HistoryChange, 0);
    answer(byTheTab ? QMessageBox::Save : QMessageBox::SaveAll, [] {});
    if (byTheTab)
        m_window->CloseFile(0);
    else
        QVERIFY(m_window->CloseAllFiles());
    QCOMPARE(QImage(at(u"a.png"_s)).pixelColor(5, 10), QColor(Qt::red));
    QCOMPARE(QImage(at(u"b.png"_s)).pixelColor(5, 10), QColor(Qt::blue));
}

// The picture stays modified, and whatever wanted to close it stops; until a save works.
void TestPrompts::failuresAreTold()
{
    const QString gone = at(u"gone"_s);
    QVERIFY(QDir().mkpath(gone) && QFile::copy(at(u"a.png"_s), gone + u"/a.png"_s));
    markUp(gone + u"/a.png"_s);
    QVERIFY(QDir(gone).removeRecursively());
    QVERIFY(!m_window->SaveFile());
    QVERIFY(told().startsWith(u"\"a.png\" could not be saved: "_s));
    answer(QMessageBox::SaveAll, [] {});
    QVERIFY(!m_window->CloseAllFiles());
    answer(QMessageBox::Save, [] {});
    m_window->CloseFile();
    QCOMPARE(m_window->windowTitle(), u"a.png * - Snap Workbench"_s);
    QVERIFY(QDir().mkpath(gone));
    QVERIFY(m_window->SaveFile());
    QCOMPARE(told(), QString());
    QCOMPARE(m_window->windowTitle(), u"a.png - Snap Workbench"_s);
}

void TestPrompts::otherFormatsAreSavedElsewhere_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("proposed");
    QTest::newRow("read only") << u"a.gif"_s << u"a.png"_s;
    QTest::newRow("no ending") << u"a"_s << u"a 1.png"_s;
}

void TestPrompts::otherFormatsAreSavedElsewhere()
{
    QFETCH(QString, name);
    QFile file(at(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(s_gif);
    file.close();
    if (name == u"a.gif")
        QFile::remove(at(u"a.png"_s));
    markUp(at(name));
    QString proposed;
    cancelSaveAs(proposed);
    QVERIFY(!m_window->SaveFile());
    QTEST(proposed, "proposed");
    QCOMPARE(contentOf(at(name)), s_gif);
    QVERIFY(m_window->HasModified(false));
}

void TestPrompts::anotherFileIsNotOverwritten()
{
    const QString path = at(u"a.png"_s);
    markUp(path);
    QPixmap theirs(33, 33);
    theirs.fill(Qt::green);
    QVERIFY(theirs.save(path));
    QVERIFY(!m_window->SaveFile());
    QCOMPARE(QImage(path).width(), 33);
    QVERIFY(told().contains(u"another program"_s));
    QString proposed;
    cancelSaveAs(proposed);
    const auto press = [this](const QString &text) {
        const auto buttons = m_window->findChild<NoticeBar *>()->findChildren<QPushButton *>();
        const auto found = std::find_if(buttons.begin(), buttons.end(), [&](auto *button) {
            return button->text() == text && button->isVisible();
        });
        if (found != buttons.end())
            (*found)->click();
    };
    press(u"Save &As..."_s);
    QCOMPARE(proposed, u"a 1.png"_s);
    QVERIFY(!m_window->SaveFile());
    press(u"&Overwrite"_s);
    QCOMPARE(QImage(path).pixelColor(5, 10), QColor(Qt::red));
    QVERIFY(!m_window->HasModified(false));
    // One that is gone is written again.
    QVERIFY(QFile::remove(path));
    QVERIFY(m_window->SaveFile());
}

void TestPrompts::freeNamesAreProposed()
{
    SetConfigString(u"MediaDir"_s, m_shell->folder.path());
    SetConfigString(u"SaveMediaFilterIdx"_s, u"png(*.png)"_s);
    const QList<std::pair<QString, QString>> names{{u"Mail"_s, u"Mail"_s},
                                                   {u"b"_s, u"b 1"_s},
                                                   {u"b 7"_s, u"b 8"_s},
                                                   {u"b 2024"_s, u"b 2024 1"_s}};
    for (const auto &[name, expected] : names) {
        if (name.startsWith(u'b'))
            QVERIFY(picture().save(at(name + u".png"_s)));
        m_window->NewDocument(picture(), name);
        QString proposed;
        cancelSaveAs(proposed);
        QVERIFY(!m_window->SaveFile());
        QCOMPARE(proposed, QString(expected + u".png"_s));
    }
}

void TestPrompts::filesAreKnown()
{
    QVERIFY(QFile::copy(at(u"a.png"_s), at(u"A.png"_s)));
    QVERIFY(QFile::link(u"a.png"_s, at(u"link.png"_s)));
    QFile text(at(u"text.png"_s));
    QVERIFY(text.open(QIODevice::WriteOnly) && text.write("no picture") > 0);
    text.close();
    m_window->openPictures({at(u"a.png"_s), at(u"A.png"_s), at(u"link.png"_s), at(u"text.png"_s),
                            at(u"none.png"_s), m_shell->folder.path() + u"/./none.png"_s});
    QCOMPARE(tabs(), 4);
    QCOMPARE(m_window->GetDocumentIndex(at(u"link.png"_s)), 0);
    m_window->NewDocument(picture(), at(u"b.png"_s));  // a window of that name is no file
    QCOMPARE(m_window->GetDocumentIndex(at(u"b.png"_s)), -1);

    // What can't be read says why, and nothing can be written over it.
    awaitJobs(*m_window);
    m_window->SetCurDocumentIndex(2);
    auto *reason = m_window->findChild<QLabel *>(u"LblNoPicture"_s);
    QVERIFY(reason && reason->text().startsWith(u"\"text.png\" can't be shown: "_s));
    PictureChanged(TPictureEditor::HistoryChange, 0);
    QVERIFY(!m_window->SaveFile());
    QCOMPARE(contentOf(at(u"text.png"_s)), QByteArray("no picture"));
    m_window->SetCurDocumentIndex(0);
    QVERIFY(reason->isHidden());
    QCOMPARE(mkfifo(QFile::encodeName(at(u"pipe.png"_s)).constData(), 0600), 0);
    m_window->openPictures({at(u"pipe.png"_s)});
    awaitJobs(*m_window);
    QCOMPARE(reason->text(), u"\"pipe.png\" can't be shown: This is not a file."_s);
}

// Opened and saved, a large picture never holds the window up. It can be drawn on while it is
// saved, and what is new since then is saved next.
void TestPrompts::theWindowAnswersMeanwhile()
{
    const QString path = at(u"large.png"_s);
    {
        QImage large(4000, 3000, QImage::Format_RGB32);
        for (int y = 0; y < large.height(); ++y) {
            auto *line = reinterpret_cast<QRgb *>(large.scanLine(y));
            for (int x = 0; x < large.width(); ++x)
                line[x] = qRgb(x * y, x / 7, y);
        }
        QVERIFY(large.save(path, "PNG", 90));
    }
    const QByteArray before = contentOf(path);
    const auto *jobs = m_window->findChild<PictureJobs *>();
    const auto isSaving = [&] { return jobs->find(PictureJobs::Kind::Write, 0) != nullptr; };
    const QObject here;
    const std::function<void(const std::function<void()> &)> whenSaving =
        [&](const std::function<void()> &run) {
            QTimer::singleShot(1, &here, [&, run] { isSaving() ? run() : whenSaving(run); });
        };
    LoopWatch watch;
    m_window->openPictures({path});
    awaitJobs(*m_window);
    QVERIFY2(watch.longest() < s_heldUp, qPrintable(QString::number(watch.longest())));

    // Given up by Escape: the file is the old one.
    auto *editor = m_window->findChild<TPictureEditor *>();
    EditHistory shapes = redRectangle();
    editor->setVecUnDo(&shapes);
    PictureChanged(TPictureEditor::HistoryChange, 0);
    QTimer::singleShot(0, this, [&] {
        m_shell->desktop.clock->advance(1000);
        QVERIFY(m_window->findChild<QWidget *>(u"WidProgress"_s)->isVisible());
        QTest::keyClick(m_window, Qt::Key_Escape);
    });
    QVERIFY(!m_window->SaveFile());
    QVERIFY(contentOf(path) == before);
    QVERIFY(m_window->HasModified(false));

    QTimer::singleShot(0, this, [&] {
        QVERIFY(isSaving());
        shapes.prepend(shapes.first());
        editor->setVecUnDo(&shapes);
        PictureChanged(TPictureEditor::HistoryChange, 0);
        QVERIFY(!m_window->close());
    });
    watch.restart();
    QVERIFY(m_window->SaveFile());
    QVERIFY2(watch.longest() < s_heldUp, qPrintable(QString::number(watch.longest())));
    QVERIFY(m_window->HasModified(false));
    QTimer::singleShot(0, this, [&] { QVERIFY(m_window->SaveFile() && !isSaving()); });
    QVERIFY(m_window->SaveFile());
    QVERIFY(!m_window->HasModified(false));
    QCOMPARE(QImage(path).pixelColor(5, 10), QColor(Qt::red));

    // Who closes is asked once more about what was drawn while the file was written.
    const auto drawWhileSaved = [&](QMessageBox::StandardButton save) {
        PictureChanged(TPictureEditor::HistoryChange, 0);
        answer(save, [&] {
            whenSaving([&] {
                shapes.prepend(shapes.first());
                editor->setVecUnDo(&shapes);
                PictureChanged(TPictureEditor::HistoryChange, 0);
                answer(QMessageBox::Cancel, [] {});
            });
        });
    };
    drawWhileSaved(QMessageBox::SaveAll);
    QVERIFY(!m_window->CloseAllFiles());
    QCOMPARE(shapes.size(), 3);
    drawWhileSaved(QMessageBox::Save);
    m_window->CloseFile();
    QCOMPARE(shapes.size(), 4);
    QVERIFY(m_window->HasModified(false));
}

// The program may be told to end while it asks.
void TestPrompts::questionsThatGoAwayDiscardNothing()
{
    markUp(at(u"a.png"_s));
    const auto hideNext = [] {
        QTimer::singleShot(10, [] { QApplication::activeModalWidget()->hide(); });
    };
    hideNext();
    m_window->CloseFile();
    hideNext();
    QVERIFY(!m_window->CloseAllFiles());
    QVERIFY(m_window->HasModified(false));
    // What was told to be discarded, but not closed, is kept all the same.
    const QString kept = at(u"recovery"_s);
    m_window->startRecovery(kept);
    PictureChanged(TPictureEditor::HistoryChange, 0);
    answer(QMessageBox::Discard, [this] { m_window->NewDocument(picture(), {}); });
    QVERIFY(!m_window->CloseAllFiles());
    m_window->keepUnsaved();
    QCOMPARE(QDir(kept).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 2);
}

QTEST_MAIN(TestPrompts)
#include "test_prompts.moc"
