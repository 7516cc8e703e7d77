#include "shell/mainwindow.h"

#include "base/paths.h"
#include "config/applicationrecord.h"
#include "config/filters.h"
#include "config/settings.h"
#include "shell/copiedpicture.h"
#include "shell/filedialogs.h"
#include "shell/openfiles.h"
#include "ui_mainwindow.h"

#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenu>
#include <QMessageBox>

#include <algorithm>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// QAction::data() of the File menu's items.
constexpr int s_closeItem = 1;
constexpr int s_saveItem = 2;
constexpr int s_saveAsItem = 3;

QString mediaDirectory()
{
    const QString stored = GetConfigString(u"MediaDir"_s);
    return stored.isEmpty() ? QDir::homePath() + u"/Pictures/"_s : stored;
}

QMessageBox::StandardButton ask(QWidget *parent, const QString &text,
                                QMessageBox::StandardButton save)
{
    QMessageBox box(QMessageBox::Question, QString::fromWCharArray(g_AppName), text,
                    save | QMessageBox::Discard | QMessageBox::Cancel, parent);
    box.setDefaultButton(QMessageBox::Cancel);
    // A picture's name may look like markup.
    box.setTextFormat(Qt::PlainText);
    box.exec();
    // One that was hidden, since the program is to end, has not been answered.
    return box.clickedButton() ? box.standardButton(box.clickedButton()) : QMessageBox::Cancel;
}

// Some styles put a mnemonic of their own into a menu's texts.
QString captionOf(const QAction &action) { return action.text().remove(u'&'); }

}  // namespace

bool MainWindow::SaveFile(int index)
{
    m_pEditor->EndEdit();
    if (index < 0)
        index = m_CurDocument;
    if (!isDocument(index))
        return false;
    QPictureDocument &document = m_Documents[index];
    if (document.IsNewFile() || !HasSavableEnding(document.m_FileName))
        return SaveAsFile(index);
    if (!document.isAnotherFile())
        return writeDocument(index, document.m_FileName);
    const auto overwrite = [this, number = document.m_Number] {
        if (const int now = indexOf(number); isDocument(now)) {
            m_Documents[now].m_File = FileIdentity::of(m_Documents[now].m_FileName);
            SaveFile(now);
        }
    };
    sayOfFile(index,
              tr("\"%1\" was not saved: another program or another tab has changed the file.")
                  .arg(document.GetShowName()),
              {{tr("&Overwrite"), overwrite}});
    return false;
}

bool MainWindow::SaveAsFile(int index)
{
    m_pEditor->EndEdit();
    if (index < 0)
        index = m_CurDocument;
    if (!isDocument(index))
        return false;
    const QPictureDocument &asked = m_Documents[index];
    const int number = asked.m_Number;
    // A window's title is no path.
    QString path = asked.IsNewFile() ? mediaDirectory() + PathSep() +
                                           asked.GetShowName().replace(PathSep(), u"_"_s)
                                     : asked.m_FileName;
    const bool isSavable = HasSavableEnding(path);
    const bool isOwn = !asked.IsNewFile() && isSavable && !asked.isAnotherFile();
    if (!asked.IsNewFile() && !isSavable)
        path = QFileInfo(path).path() + PathSep() + QFileInfo(path).completeBaseName() + u".png"_s;
    QString selected;
    const QString filters = GetMacFilter(GetSavePictureFilter(path, selected));
    if (selected.isEmpty())
        selected = GetConfigString(u"SaveMediaFilterIdx"_s);
    const QString answer = askSaveFileName(this, path, filters, selected, isOwn);
    // The dialog ran an event loop, and the tray can close everything from there.
    index = indexOf(number);
    if (answer.isEmpty() || !isDocument(index))
        return false;
    SetConfigString(u"SaveMediaFilterIdx"_s, selected);
    if (!writeDocument(index, answer))
        return false;
    SetConfigString(u"MediaDir"_s, GetDirectory(answer));
    return true;
}

bool MainWindow::writeDocument(int index, const QString &path)
{
    const int number = m_Documents[index].m_Number;
    const bool waited = m_Jobs->find(PictureJobs::Kind::Write, number) != nullptr;
    if (!waitForJobs(number))
        return false;
    index = indexOf(number);
    QPictureDocument &document = m_Documents[index];
    // The save that was waited for has done it all.
    if (waited && path == document.m_FileName && !document.IsNewFile() && !document.m_Modified)
        return true;
    // The editor has the shapes of the current document; the others have their own.
    if (index == m_CurDocument)
        parkHistory(document);
    const EditHistory shapes = document.m_VecUnDo;
    if (!document.hasPicture()) {
        const QString failure =
            document.m_Failure.isEmpty() ? tr("There is no picture.") : document.m_Failure;
        return written(number, path, shapes, {.failure = failure});
    }
    struct Outcome {
        PictureWrite result{};
        bool isSaved = false;
    };
    const auto outcome = std::make_shared<Outcome>();
    const auto job = m_Jobs->start(
        PictureJobs::Kind::Write, number, tr("Saving \"%1\"...").arg(QFileInfo(path).fileName()),
        [picture = document.pictureLater(), shapes, path, outcome](PictureProgress &progress) {
            outcome->result = writePicture(picture(), shapes, path, {}, -1, progress);
        },
        // At once: whoever else waits for this save goes on before its own caller does.
        [this, number, path, shapes, outcome] {
            outcome->isSaved = written(number, path, shapes, outcome->result);
        });
    return PictureJobs::waitFor(job) && outcome->isSaved;
}

bool MainWindow::written(int number, const QString &path, const EditHistory &shapes,
                         const PictureWrite &result)
{
    // While the worker wrote, the user went on with the document, and may have closed others.
    const int index = indexOf(number);
    if (!isDocument(index))
        return false;
    QPictureDocument &document = m_Documents[index];
    if (!result.isWritten) {
        // Nothing is said to who gave it up.
        if (!result.failure.isEmpty())
            sayOfFile(index, tr("\"%1\" could not be saved: %2")
                                 .arg(QFileInfo(path).fileName(), result.failure));
        return false;
    }
    if (index == m_CurDocument)
        parkHistory(document);
    document.m_File = result.file;
    document.m_FileName = path;
    document.m_Modified = document.m_VecUnDo != shapes;
    document.SetIsNotNewFile();
    withdrawNotice(document);
    RefillTabList();
    touchRecovery(number);
    return true;
}

void MainWindow::sayOfFile(int index, const QString &text, QList<NoticeBar::Action> actions)
{
    QPictureDocument &document = m_Documents[index];
    withdrawNotice(document);
    document.m_Notice = text;
    actions.prepend({tr("Save &As..."), [this, number = document.m_Number] {
                         if (const int now = indexOf(number); isDocument(now))
                             SaveAsFile(now);
                     }});
    say(text, actions);
}

void MainWindow::withdrawNotice(QPictureDocument &document)
{
    if (m_pNotice && !document.m_Notice.isEmpty())
        m_pNotice->withdraw(std::exchange(document.m_Notice, {}));
}

bool MainWindow::SaveAllFiles()
{
    m_pEditor->EndEdit();
    // Events run while a file is written, and documents may come and go.
    QList<int> numbers;
    for (const QPictureDocument &document : m_Documents)
        numbers.append(document.m_Number);
    return std::all_of(numbers.begin(), numbers.end(), [this](int number) {
        const int index = indexOf(number);
        return !isDocument(index) || !m_Documents[index].m_Modified || SaveFile(index);
    });
}

void MainWindow::CloseFile(int index)
{
    m_pEditor->EndEdit();
    if (index < 0)
        index = m_CurDocument;
    if (!isDocument(index))
        return;
    const int number = m_Documents[index].m_Number;
    // What is only read is given up.
    const auto write = m_Jobs->find(PictureJobs::Kind::Write, number);
    if (write && !PictureJobs::waitFor(write))
        return;
    index = indexOf(number);
    if (isDocument(index) && m_Documents[index].m_Modified) {
        const auto answer =
            ask(this, tr("Save changes to \"%1\" ?").arg(m_Documents[index].GetShowName()),
                QMessageBox::Save);
        // While the prompt is up the bus or the tray may open and close others.
        index = indexOf(number);
        if (answer == QMessageBox::Cancel || !isDocument(index))
            return;
        if (answer == QMessageBox::Save) {
            // What was drawn while the file was written is asked about.
            if (SaveFile(index) && isDocument(indexOf(number)))
                CloseFile(indexOf(number));
            return;
        }
    }
    if (isDocument(index))
        dropDocument(index);
}

void MainWindow::dropDocument(int index)
{
    const int number = m_Documents[index].m_Number;
    m_Jobs->cancel(number);
    withdrawNotice(m_Documents[index]);
    // The switch below parks nothing, and the document that stays current must not lose what is
    // new.
    if (isDocument(m_CurDocument) && m_CurDocument != index)
        parkState(m_Documents[m_CurDocument]);
    m_Documents.erase(m_Documents.begin() + index);
    RefillTabList();
    // With no current document the switch parks nothing. The number stays, whichever tab was
    // closed.
    const int before = m_CurDocument;
    m_CurDocument = -1;
    SetCurDocumentIndex(isDocument(before) ? before : before - 1);
    forgetLastPicture();
    touchRecovery(number);
}

// The editor holds the current document's picture and shapes, also when that was the last one.
void MainWindow::forgetLastPicture()
{
    if (!m_Documents.empty())
        return;
    m_pEditor->clearShape();
    m_pEditor->setPixmap({});
}

bool MainWindow::saveChanges()
{
    for (m_pEditor->EndEdit(); HasModified(true); m_pEditor->EndEdit()) {
        showInFront();
        QList<int> asked;
        for (const QPictureDocument &document : m_Documents)
            asked.append(document.m_Number);
        const auto answer = ask(this, tr("Save all changes ?"), QMessageBox::SaveAll);
        if (answer == QMessageBox::Cancel || (answer == QMessageBox::SaveAll && !SaveAllFiles()))
            return false;
        // A grab that arrived meanwhile has not been asked about; nor has what was drawn while the
        // files were written.
        m_isDiscarded =
            answer == QMessageBox::Discard &&
            std::all_of(m_Documents.begin(), m_Documents.end(),
                        [&](const auto &document) { return asked.contains(document.m_Number); });
        if (answer == QMessageBox::Discard)
            return m_isDiscarded;
    }
    return true;
}

bool MainWindow::CloseAllFiles()
{
    while (const auto write = m_Jobs->find(PictureJobs::Kind::Write, 0)) {
        if (!PictureJobs::waitFor(write))
            return false;
    }
    if (!saveChanges())
        return false;
    QList<int> numbers;
    for (QPictureDocument &document : m_Documents) {
        numbers.append(document.m_Number);
        m_Jobs->cancel(document.m_Number);
        withdrawNotice(document);
    }
    m_Documents.clear();
    RefillTabList();
    SetCurDocumentIndex(-1);
    forgetLastPicture();
    for (const int number : numbers)
        touchRecovery(number);
    return true;
}

bool MainWindow::CopyFile()
{
    if (!isDocument(m_CurDocument))
        return false;
    m_pEditor->EndEdit();
    QPictureDocument &document = m_Documents[m_CurDocument];
    parkHistory(document);
    auto *copied = new CopiedPicture(document.GetUnitePixmap().toImage());
    document.m_UnitePixmap = {};
    copied->pack(*m_Jobs);
    QGuiApplication::clipboard()->setMimeData(copied);
    return true;
}

void MainWindow::OpenFile()
{
    QString filters = GetOpenPictureFilter();
    QString selected = GetConfigString(u"MediaFilterIdx"_s);
    if (selected.isEmpty())
        selected = filters;
    filters = GetMacFilter(filters) + u";;"_s;
    const QStringList paths = askOpenFileNames(this, mediaDirectory(), filters, selected);
    if (paths.isEmpty())
        return;
    SetConfigString(u"MediaFilterIdx"_s, selected);
    SetConfigString(u"MediaDir"_s, GetDirectory(paths.first()));
    openPictures(paths);
}

void MainWindow::openPictures(const QStringList &paths)
{
    const int before = static_cast<int>(m_Documents.size());
    int firstOpen = -1;
    OpenFiles open(m_Documents);
    for (const QString &path : paths) {
        const int index = open.indexOf(path);
        if (index >= 0) {
            firstOpen = firstOpen < 0 ? index : firstOpen;
            continue;
        }
        m_Documents.push_back(
            QPictureDocument::awaited({.name = path, .file = FileIdentity::of(path)}));
        open.add(path, static_cast<int>(m_Documents.size()) - 1);
    }
    if (!isDocument(before)) {
        if (firstOpen >= 0)
            SetCurDocumentIndex(firstOpen);
        return;
    }
    RefillTabList();
    SetCurDocumentIndex(before);
    for (int i = before; isDocument(i); ++i) {
        const int number = m_Documents[i].m_Number;
        const auto read = [path = m_Documents[i].m_FileName](PictureProgress &progress) {
            return readPicture(path, progress);
        };
        awaitPicture(number, PictureJobs::Kind::Read, tr("Opening \"%1\"..."), read, [](bool) {});
    }
}

void MainWindow::BeforeShowFile()
{
    const bool any = !m_Documents.empty();
    QString name = GetFileShowName(m_CurDocument);
    if (!name.isEmpty())
        name = u'"' + name + u'"';
    name.replace(u'&', u"&&"_s);
    for (QAction *action : m_FileMenu->actions()) {
        switch (action->data().toInt()) {
        case s_closeItem:
            action->setEnabled(any);
            action->setText(tr("Close %1").arg(name));
            break;
        case s_saveItem:
            action->setEnabled(HasModified(false));
            action->setText(tr("Save %1").arg(name));
            break;
        case s_saveAsItem:
            action->setEnabled(any);
            // Without a name two blanks would be left in the middle.
            action->setText(any ? tr("Save %1 As...").arg(name)
                                : tr("Save %1 As...").arg(name).replace(u"  "_s, u" "_s));
            break;
        default:
            if (captionOf(*action) == tr("Close All"))
                action->setEnabled(any);
            else if (captionOf(*action) == tr("Save All"))
                action->setEnabled(HasModified(true));
        }
    }
}
