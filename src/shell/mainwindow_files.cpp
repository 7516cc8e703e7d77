#include "shell/mainwindow.h"

#include "config/applicationrecord.h"
#include "config/filters.h"
#include "config/settings.h"
#include "config/texthelpers.h"
#include "shell/savedialog.h"
#include "ui_mainwindow.h"

#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenu>
#include <QMessageBox>

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
    return static_cast<QMessageBox::StandardButton>(box.exec());
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
    QPictureDocument &document = m_Documents[index];
    // The editor has the shapes of the current document; the others have their own.
    if (index == m_CurDocument)
        parkHistory(document);
    if (!document.save(path, nullptr, -1)) {
        sayOfFile(index, tr("\"%1\" could not be saved: %2")
                             .arg(QFileInfo(path).fileName(), document.m_Failure));
        return false;
    }
    document.m_FileName = path;
    document.m_Modified = false;
    document.SetIsNotNewFile();
    withdrawNotice(document);
    RefillTabList();
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
    for (int i = 0; isDocument(i); ++i) {
        if (m_Documents[i].m_Modified && !SaveFile(i))
            return false;
    }
    return true;
}

void MainWindow::CloseFile(int index)
{
    m_pEditor->EndEdit();
    if (index < 0)
        index = m_CurDocument;
    if (!isDocument(index))
        return;
    if (m_Documents[index].m_Modified) {
        const int number = m_Documents[index].m_Number;
        const auto answer =
            ask(this, tr("Save changes to \"%1\" ?").arg(m_Documents[index].GetShowName()),
                QMessageBox::Save);
        // While the prompt is up the bus or the tray may open and close others.
        index = indexOf(number);
        if (answer == QMessageBox::Cancel || !isDocument(index))
            return;
        if (answer == QMessageBox::Save && !SaveFile(index))
            return;
        index = indexOf(number);
        if (!isDocument(index))
            return;
    }
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
    m_pEditor->EndEdit();
    if (!HasModified(true))
        return true;
    showInFront();
    const size_t asked = m_Documents.size();
    const auto answer = ask(this, tr("Save all changes ?"), QMessageBox::SaveAll);
    if (answer == QMessageBox::Cancel || (answer == QMessageBox::SaveAll && !SaveAllFiles()))
        return false;
    // A grab that arrived meanwhile has not been asked about.
    return m_Documents.size() <= asked;
}

bool MainWindow::CloseAllFiles()
{
    if (!saveChanges())
        return false;
    for (QPictureDocument &document : m_Documents)
        withdrawNotice(document);
    m_Documents.clear();
    RefillTabList();
    SetCurDocumentIndex(-1);
    forgetLastPicture();
    return true;
}

bool MainWindow::CopyFile()
{
    if (!isDocument(m_CurDocument))
        return false;
    m_pEditor->EndEdit();
    QPictureDocument &document = m_Documents[m_CurDocument];
    parkHistory(document);
    // An image and no pixmap: the toolkit hands it to a clipboard manager when the program is all
    // but gone, and a pixmap with it.
    QGuiApplication::clipboard()->setImage(document.GetUnitePixmap().toImage());
    return true;
}

void MainWindow::OpenFile()
{
    QString filters = GetOpenPictureFilter();
    QString selected = GetConfigString(u"MediaFilterIdx"_s);
    if (selected.isEmpty())
        selected = filters;
    filters = GetMacFilter(filters) + u";;"_s;
    const QStringList paths =
        QFileDialog::getOpenFileNames(this, QString(), mediaDirectory(), filters, &selected);
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
    for (const QString &path : paths) {
        const int open = GetDocumentIndex(path);
        if (open < 0)
            m_Documents.emplace_back(path);
        else if (firstOpen < 0)
            firstOpen = open;
    }
    if (isDocument(before)) {
        RefillTabList();
        SetCurDocumentIndex(before);
    } else if (firstOpen >= 0) {
        SetCurDocumentIndex(firstOpen);
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
