// Saving, and what arrives while the main window asks whether to save.

#include "config/settings.h"
#include "rows.h"
#include "shellfixture.h"

#include <algorithm>
#include <chrono>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// One pixel.
const QByteArray s_gif =
    QByteArray::fromHex("47494638396101000100800100ff0000ffffff2c00000000010001000002024401003b");

// Its left edge is at 5.
EditHistory redRectangle()
{
    const QPolygon outline({{5, 5}, {15, 5}, {15, 15}, {5, 15}, {5, 5}});
    return {adding({RectShape{outline}, {.type = stateRect, .width = 3, .color = Qt::red}})};
}

// Milliseconds. Under the sanitizers memory alone is several times slower.
#ifdef __SANITIZE_ADDRESS__
constexpr qint64 s_heldUp = 400;
#else
constexpr qint64 s_heldUp = 100;
#endif

// The longest time in which the event loop did not turn, since the last time that was asked. What
// this thread waited for a processor does not count: others may be busy.
class LoopWatch : public QObject
{
public:
    LoopWatch() { startTimer(1); }
    qint64 longest() { return std::exchange(m_longest, 0) / 1'000'000; }

protected:
    void timerEvent(QTimerEvent * /*event*/) override
    {
        const qint64 time = now();
        m_longest = std::max(m_longest, time - std::exchange(m_last, time));
    }

private:
    static qint64 now()
    {
        const QByteArray waited = contentOf(u"/proc/thread-self/schedstat"_s);
        return std::chrono::steady_clock::now().time_since_epoch() / 1ns -
               waited.split(' ').value(1).toLongLong();
    }

    qint64 m_longest = 0;
    qint64 m_last = now();
};

}  // namespace

class TestPrompts : public ShellTest
{
    Q_OBJECT

private slots:
    void init()
    {
        begin();
        for (const auto &name : {u"a.png"_s, u"b.png"_s})
            QVERIFY(solid({20, 20}).save(at(name)));
        m_window->show();
    }

    void cleanup() { finish(); }

    // What came to the front while the prompt was up must not lend its shapes to the file that is
    // saved.
    void shapesReachTheirFile()
    {
        const auto check = [&](const QByteArray &row, bool byBus) {
            init();
            markUp(at(u"a.png"_s));
            answer(QMessageBox::Save, [&] {
                byBus ? m_window->openPictures({at(u"b.png"_s)}) : add({20, 20});
            });
            m_window->CloseFile();
            expect(row, leftEdge(u"a.png"_s), QColor(Qt::red));
            expect(row, m_window->GetDocumentIndex(at(u"a.png"_s)), -1);
            expect(row, tabs()->count(), 1);
            QVERIFY2(editor()->getVecUnDo().isEmpty(), row);
        };
        check("a file opened meanwhile", true);
        check("a grab that ended meanwhile", false);
    }

    // At the end of a session another program may still say no, and the pictures must be there
    // then.
    void savingChangesClosesNothing()
    {
        markUp(at(u"a.png"_s));
        for (const auto button :
             {QMessageBox::Cancel, QMessageBox::Discard, QMessageBox::SaveAll}) {
            change();
            answer(button);
            QCOMPARE(m_window->saveChanges(), button != QMessageBox::Cancel);
            QCOMPARE(tabs()->count(), 1);
            QCOMPARE(m_window->HasModified(true), button != QMessageBox::SaveAll);
        }
        QCOMPARE(leftEdge(u"a.png"_s), QColor(Qt::red));
        // A text that is still being typed counts.
        editor()->setState(stateText);
        clickAt(view(), view()->rect().center());
        QVERIFY(m_window->HasModified(true));
    }

    void eachFileGetsItsOwnShapes()
    {
        const auto check = [&](const QByteArray &row, bool byTheTab) {
            init();
            markUp(at(u"a.png"_s));
            m_window->openPictures({at(u"b.png"_s)});
            change();
            answer(byTheTab ? QMessageBox::Save : QMessageBox::SaveAll);
            if (byTheTab)
                m_window->CloseFile(0);
            else
                QVERIFY2(m_window->CloseAllFiles(), row);
            expect(row, leftEdge(u"a.png"_s), QColor(Qt::red));
            expect(row, leftEdge(u"b.png"_s), QColor(Qt::blue));
        };
        check("all are saved", false);
        check("the tab that is not in front is closed", true);
    }

    // The picture stays modified, and whatever wanted to close it stops; until a save works.
    void failuresAreTold()
    {
        const QString gone = at(u"gone"_s);
        QVERIFY(QDir().mkpath(gone) && QFile::copy(at(u"a.png"_s), gone + u"/a.png"_s));
        markUp(gone + u"/a.png"_s);
        QVERIFY(QDir(gone).removeRecursively());
        QVERIFY(!m_window->SaveFile());
        QVERIFY(told().startsWith(u"\"a.png\" could not be saved: "_s));
        answer(QMessageBox::SaveAll);
        QVERIFY(!m_window->CloseAllFiles());
        answer(QMessageBox::Save);
        m_window->CloseFile();
        QCOMPARE(title(), u"a.png * - Snap Workbench"_s);
        QVERIFY(QDir().mkpath(gone));
        QVERIFY(m_window->SaveFile());
        QCOMPARE(told(), QString());
        QCOMPARE(title(), u"a.png - Snap Workbench"_s);
    }

    void otherFormatsAreSavedElsewhere()
    {
        const auto check = [&](const QByteArray &row, const QString &name,
                               const QString &proposed) {
            init();
            markUp(m_scratch->put(name, s_gif));
            cancelSaveAs();
            QVERIFY2(!m_window->SaveFile(), row);
            expect(row, m_proposed, proposed);
            expect(row, m_scratch->get(name), s_gif);
            QVERIFY2(m_window->HasModified(false), row);
        };
        check("read only", u"c.gif"_s, u"c.png"_s);
        check("no ending", u"a"_s, u"a 1.png"_s);
    }

    void anotherFileIsNotOverwritten()
    {
        const QString path = at(u"a.png"_s);
        markUp(path);
        QVERIFY(solid({33, 33}, Qt::green).save(path));
        QVERIFY(!m_window->SaveFile());
        QCOMPARE(QImage(path).width(), 33);
        QVERIFY(told().contains(u"another program"_s));
        cancelSaveAs();
        takeOffer(u"Save &As..."_s);
        QCOMPARE(m_proposed, u"a 1.png"_s);
        QVERIFY(!m_window->SaveFile());
        takeOffer(u"&Overwrite"_s);
        QCOMPARE(leftEdge(u"a.png"_s), QColor(Qt::red));
        QVERIFY(!m_window->HasModified(false));
        // One that is gone is written again.
        QVERIFY(QFile::remove(path));
        QVERIFY(m_window->SaveFile());
    }

    void layersAreSavedAndOpened()
    {
        markUp(at(u"a.png"_s));
        // The ending of another format does not make it one.
        acceptSaveAs(u"k.png"_s);
        QVERIFY(m_window->SaveFileWithLayers());
        QCOMPARE(title(), u"k.png.ora - Snap Workbench"_s);
        m_window->CloseFile();
        open({at(u"k.png.ora"_s)});
        QCOMPARE(editor()->getVecUnDo().size(), 1);
        QVERIFY(!m_window->HasModified(false));
        draw(redRectangle() + editor()->getVecUnDo());
        QVERIFY(m_window->SaveFile());
        m_window->CloseFile();
        open({at(u"k.png.ora"_s)});
        QCOMPARE(editor()->getVecUnDo().size(), 2);
        acceptSaveAs(u"l.png"_s);
        QVERIFY(m_window->SaveAsFile());
        QVERIFY(m_proposed.startsWith(u"k.png"_s) && !m_proposed.endsWith(u"ora"_s));
        QCOMPARE(leftEdge(u"l.png"_s), QColor(Qt::red));
    }

    void filesOfLaterVersionsAreKept()
    {
        markUp(at(u"a.png"_s));
        acceptSaveAs(u"k"_s);
        QVERIFY(m_window->SaveFileWithLayers());
        m_window->CloseFile();
        makeLater(at(u"k.ora"_s));
        const QByteArray later = m_scratch->get(u"k.ora"_s);
        open({at(u"k.ora"_s)});
        QVERIFY(told().startsWith(u"\"k.ora\": A later version"_s));
        draw(redRectangle());
        cancelSaveAs();
        QVERIFY(!m_window->SaveFile());
        QCOMPARE(m_proposed, u"k.png"_s);
        // Not even by its own name.
        acceptSaveAs(u"k.ora"_s);
        answer(QMessageBox::Yes);
        QVERIFY(!m_window->SaveFileWithLayers());
        QVERIFY(told().contains(u"was not saved"_s));
        QCOMPARE(m_scratch->get(u"k.ora"_s), later);
    }

    void coversInLayersAreToldOf()
    {
        open({at(u"a.png"_s)});
        draw({adding({SolidShape{{QRect(5, 5, 10, 10)}}, {.type = stateSolid}})});
        acceptSaveAs(u"k"_s);
        QVERIFY(m_window->SaveFileWithLayers());
        QVERIFY(told().contains(u"covers hide"_s));
        acceptSaveAs(u"l"_s);
        takeOffer(u"Save &without Layers"_s);
        QVERIFY(QFile::exists(at(u"l.png"_s)));
        QVERIFY(told().contains(u"\"k.ora\" is still there"_s));
    }

    void freeNamesAreProposed()
    {
        SetConfigString(u"MediaDir"_s, m_scratch->folder.path());
        SetConfigString(u"SaveMediaFilterIdx"_s, u"png(*.png)"_s);
        for (const auto &[name, expected] : {std::pair(u"Mail"_s, u"Mail.png"_s),
                                             {u"b"_s, u"b 1.png"_s},
                                             {u"b 7"_s, u"b 8.png"_s},
                                             {u"b 2024"_s, u"b 2024 1.png"_s}}) {
            if (name.startsWith(u'b'))
                m_scratch->put(name + u".png"_s, {});
            add({20, 20}, name);
            cancelSaveAs();
            QVERIFY(!m_window->SaveFile());
            QCOMPARE(m_proposed, expected);
        }
    }

    void filesAreKnown()
    {
        QVERIFY(QFile::copy(at(u"a.png"_s), at(u"A.png"_s)));
        QVERIFY(QFile::link(u"a.png"_s, at(u"link.png"_s)));
        m_scratch->put(u"text.png"_s, "no picture");
        open({at(u"a.png"_s), at(u"A.png"_s), at(u"link.png"_s), at(u"text.png"_s),
              at(u"none.png"_s), at(u"./none.png"_s)});
        QCOMPARE(tabs()->count(), 4);
        QCOMPARE(m_window->GetDocumentIndex(at(u"link.png"_s)), 0);
        add({20, 20}, at(u"b.png"_s));  // a window of that name is no file
        QCOMPARE(m_window->GetDocumentIndex(at(u"b.png"_s)), -1);

        // What can't be read says why, and nothing can be written over it.
        m_window->SetCurDocumentIndex(2);
        auto *reason = m_window->findChild<QLabel *>(u"LblNoPicture"_s);
        QVERIFY(reason && reason->text().startsWith(u"\"text.png\" can't be shown: "_s));
        change();
        QVERIFY(!m_window->SaveFile());
        QCOMPARE(m_scratch->get(u"text.png"_s), "no picture");
        m_window->SetCurDocumentIndex(0);
        QVERIFY(reason->isHidden());
        QCOMPARE(mkfifo(QFile::encodeName(at(u"pipe.png"_s)).constData(), 0600), 0);
        open({at(u"pipe.png"_s)});
        QCOMPARE(reason->text(), u"\"pipe.png\" can't be shown: This is not a file."_s);
    }

    // Opened and saved, a large picture never holds the window up. It can be drawn on while it is
    // saved, and what is new since then is saved next.
    void theWindowAnswersMeanwhile()
    {
        const QString path = at(u"large.png"_s);
        QImage large(4000, 3000, QImage::Format_RGB32);
        for (int y = 0; y < large.height(); ++y) {
            auto *line = reinterpret_cast<QRgb *>(large.scanLine(y));
            for (int x = 0; x < large.width(); ++x)
                line[x] = qRgb(x * y, x / 7, y);
        }
        QVERIFY(large.save(path, "PNG", 90));
        const QByteArray before = contentOf(path);
        const auto *jobs = m_window->findChild<PictureJobs *>();
        const auto isSaving = [&] { return jobs->find(PictureJobs::Kind::Write, 0) != nullptr; };
        const std::function<void(const Hook &)> whenSaving = [&](const Hook &run) {
            QTimer::singleShot(1, m_window.get(),
                               [&, run] { isSaving() ? run() : whenSaving(run); });
        };
        EditHistory shapes;
        const auto drawOneMore = [&] {
            shapes.append(redRectangle());
            draw(shapes);
        };
        LoopWatch watch;
        open({path});
        QCOMPARE_LT(watch.longest(), s_heldUp);

        // Given up by Escape: the file is the old one.
        drawOneMore();
        QTimer::singleShot(0, this, [&] {
            m_desktop->clock->advance(1000);
            QVERIFY(m_window->findChild<QWidget *>(u"WidProgress"_s)->isVisible());
            QTest::keyClick(m_window.get(), Qt::Key_Escape);
        });
        QVERIFY(!m_window->SaveFile());
        QVERIFY(contentOf(path) == before);
        QVERIFY(m_window->HasModified(false));

        QTimer::singleShot(0, this, [&] {
            QVERIFY(isSaving());
            drawOneMore();
            QVERIFY(!m_window->close());
        });
        watch.longest();
        QVERIFY(m_window->SaveFile());
        QCOMPARE_LT(watch.longest(), s_heldUp);
        QVERIFY(m_window->HasModified(false));
        QTimer::singleShot(0, this, [&] { QVERIFY(m_window->SaveFile() && !isSaving()); });
        QVERIFY(m_window->SaveFile());
        QVERIFY(!m_window->HasModified(false));
        QCOMPARE(leftEdge(u"large.png"_s), QColor(Qt::red));

        // Who closes is asked once more about what was drawn while the file was written.
        for (const auto save : {QMessageBox::SaveAll, QMessageBox::Save}) {
            change();
            answer(save, [&] {
                whenSaving([&] {
                    drawOneMore();
                    answer(QMessageBox::Cancel);
                });
            });
            const qsizetype count = shapes.size();
            if (save == QMessageBox::Save)
                m_window->CloseFile();
            else
                QVERIFY(!m_window->CloseAllFiles());
            QCOMPARE(shapes.size(), count + 1);
            QVERIFY(m_window->HasModified(false));
        }
    }

    // The program may be told to end while it asks.
    void questionsThatGoAwayDiscardNothing()
    {
        markUp(at(u"a.png"_s));
        const auto hideNext = [this] { whenUp<QMessageBox>([](QMessageBox &box) { box.hide(); }); };
        hideNext();
        m_window->CloseFile();
        hideNext();
        QVERIFY(!m_window->CloseAllFiles());
        QVERIFY(m_window->HasModified(false));
        // What was told to be discarded, but not closed, is kept all the same.
        const QString kept = at(u"recovery"_s);
        m_window->startRecovery(kept);
        change();
        answer(QMessageBox::Discard, [this] { add(); });
        QVERIFY(!m_window->CloseAllFiles());
        m_window->keepUnsaved();
        QCOMPARE(QDir(kept).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 2);
    }

private:
    /// Opens a file, or shows the one that is open, and draws on it.
    void markUp(const QString &path)
    {
        open({path});
        draw(redRectangle());
    }
    void change() { PictureChanged(TPictureEditor::HistoryChange, 0); }
    QColor leftEdge(const QString &name) const { return QImage(at(name)).pixelColor(5, 10); }
    /// Keeps the name that the next file dialog proposes, and gives it another one.
    void acceptSaveAs(const QString &name)
    {
        m_proposed.clear();
        whenUp<QFileDialog>([this, name](QFileDialog &dialog) {
            m_proposed = QFileInfo(dialog.selectedFiles().value(0)).fileName();
            dialog.selectFile(at(name));
            static_cast<QDialog &>(dialog).accept();
        });
    }
    /// Keeps the name that the next file dialog proposes, and cancels that.
    void cancelSaveAs()
    {
        m_proposed.clear();
        whenUp<QFileDialog>([this](QFileDialog &dialog) {
            m_proposed = QFileInfo(dialog.selectedFiles().value(0)).fileName();
            dialog.reject();
        });
    }

    QString m_proposed;
};

QTEST_MAIN(TestPrompts)
#include "test_prompts.moc"
