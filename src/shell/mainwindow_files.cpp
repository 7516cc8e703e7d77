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
#include <QGuiApplication>
#include <QMenu>
#include <QMessageBox>

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

// The editor's shapes go into the document whichever it is, also into one that is not current,
// which then takes over the current one's.
bool MainWindow::SaveFile(int index)
{
    m_pEditor->EndEdit();
    if (index < 0)
        index = m_CurDocument;
    if (!isDocument(index))
        return false;
    if (m_Documents[index].IsNewFile()) {
        if (!SaveAsFile(index))
            return false;
    } else {
        QPictureDocument &document = m_Documents[index];
        parkHistory(document);
        document.save(document.m_FileName, nullptr, -1);
    }
    m_Documents[index].m_Modified = false;
    m_Documents[index].SetIsNotNewFile();
    RefillTabList();
    return true;
}

bool MainWindow::SaveAsFile(int index)
{
    m_pEditor->EndEdit();
    if (index < 0)
        index = m_CurDocument;
    if (!isDocument(index))
        return false;
    // A window's title is no path.
    const QString path = m_Documents[index].IsNewFile()
                             ? mediaDirectory() + PathSep() +
                                   m_Documents[index].GetShowName().replace(PathSep(), u"_"_s)
                             : m_Documents[index].m_FileName;
    // While the dialog is open a hot key may make another document the current one.
    const bool wasCurrent = index == m_CurDocument;
    if (wasCurrent)
        parkHistory(m_Documents[index]);
    QString selected;
    const QString filters = GetMacFilter(GetSavePictureFilter(path, selected));
    if (selected.isEmpty())
        selected = GetConfigString(u"SaveMediaFilterIdx"_s);
    const QString answer = askSaveFileName(this, path, filters, selected);
    // The dialog ran an event loop, and the tray can close everything from there.
    if (answer.isEmpty() || !isDocument(index))
        return false;
    SetConfigString(u"SaveMediaFilterIdx"_s, selected);
    SetConfigString(u"MediaDir"_s, GetDirectory(answer));
    QPictureDocument &document = m_Documents[index];
    if (!wasCurrent)
        parkHistory(document);
    document.save(answer, nullptr, -1);
    document.m_FileName = answer;
    document.m_Modified = false;
    document.SetIsNotNewFile();
    RefillTabList();
    return true;
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
        // While the prompt is up a hot key or the bus may make another document the current one,
        // and saving takes the shapes of the current one.
        const bool wasCurrent = index == m_CurDocument;
        const auto answer =
            ask(this, tr("Save changes to \"%1\" ?").arg(m_Documents[index].GetShowName()),
                QMessageBox::Save);
        if (answer == QMessageBox::Cancel || !isDocument(index))
            return;
        if (answer == QMessageBox::Save) {
            if (wasCurrent)
                SetCurDocumentIndex(index);
            if (!SaveFile(index) || !isDocument(index))
                return;
        }
    }
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
    QGuiApplication::clipboard()->setPixmap(document.GetUnitePixmap());
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
