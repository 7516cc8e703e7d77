#include "shell/documentfiles.h"

#include "base/paths.h"
#include "config/applicationrecord.h"
#include "config/filters.h"
#include "config/settings.h"
#include "shell/copiedpicture.h"
#include "shell/filedialogs.h"
#include "shell/notices.h"
#include "shell/unsavedpictures.h"
#include "shell/workbench.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMessageBox>
#include <QUrl>

#include <algorithm>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

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

// What the save dialog offers: a path of an ending that can be written, with layers or without.
QString proposedPath(const QPictureDocument &document, bool isLayered)
{
    // A window's title is no path.
    if (document.IsNewFile())
        return mediaDirectory() + PathSep() + document.GetShowName().replace(PathSep(), u"_"_s);
    if (HasSavableEnding(document.m_FileName) && !document.m_IsFileKept &&
        HasLayeredEnding(document.m_FileName) == isLayered)
        return document.m_FileName;
    const QFileInfo file(document.m_FileName);
    return file.path() + PathSep() + file.completeBaseName() + (isLayered ? u".ora"_s : u".png"_s);
}

bool isSameFile(const QString &one, const QString &other)
{
    const std::optional<FileIdentity> found = FileIdentity::of(one);
    const std::optional<FileIdentity> known = FileIdentity::of(other);
    return found && known && found->device == known->device && found->inode == known->inode;
}

}  // namespace

DocumentFiles::DocumentFiles(QWidget &window, Workbench &work, Notices &notices,
                             UnsavedPictures &unsaved)
    : m_window(window), m_work(work), m_notices(notices), m_unsaved(unsaved)
{
}

int DocumentFiles::chosen(int index) const
{
    return index < 0 ? m_work.documents().current() : index;
}

void DocumentFiles::open()
{
    QString filters = GetOpenPictureFilter();
    QString selected = GetConfigString(u"MediaFilterIdx"_s);
    if (selected.isEmpty())
        selected = filters;
    filters = GetMacFilter(filters) + u";;"_s;
    const QStringList paths = askOpenFileNames(&m_window, mediaDirectory(), filters, selected);
    if (paths.isEmpty())
        return;
    SetConfigString(u"MediaFilterIdx"_s, selected);
    SetConfigString(u"MediaDir"_s, GetDirectory(paths.first()));
    m_work.open(paths);
}

bool DocumentFiles::save(int index)
{
    m_work.editor().EndEdit();
    index = chosen(index);
    if (!m_work.documents().has(index))
        return false;
    QPictureDocument &document = m_work.documents()[index];
    if (document.IsNewFile() || document.m_IsFileKept || !HasSavableEnding(document.m_FileName))
        return saveAs(index);
    // By its name it would become a plain picture.
    if (document.m_IsLayered && !HasLayeredEnding(document.m_FileName))
        return saveWithLayers(index);
    if (!document.isAnotherFile())
        return write(document.m_Number, document.m_FileName);
    tellChanged(document);
    return false;
}

void DocumentFiles::tellChanged(QPictureDocument &document)
{
    const auto overwrite = [this, number = document.m_Number] {
        if (QPictureDocument *now = m_work.documents().find(number)) {
            now->m_File = FileIdentity::of(now->m_FileName);
            save(m_work.documents().indexOf(number));
        }
    };
    tell(document,
         tr("\"%1\" was not saved: another program or another tab has changed the file.")
             .arg(document.GetShowName()),
         {{tr("&Overwrite"), overwrite}});
}

bool DocumentFiles::saveAs(int index) { return saveElsewhere(index, false); }

bool DocumentFiles::saveWithLayers(int index) { return saveElsewhere(index, true); }

bool DocumentFiles::saveElsewhere(int index, bool isLayered)
{
    m_work.editor().EndEdit();
    index = chosen(index);
    if (!m_work.documents().has(index))
        return false;
    const QPictureDocument &asked = m_work.documents()[index];
    const int number = asked.m_Number;
    const QString path = proposedPath(asked, isLayered);
    const bool isOwn = !asked.IsNewFile() && path == asked.m_FileName && !asked.isAnotherFile();
    QString selected;
    const QString filters =
        GetMacFilter(isLayered ? GetLayeredPictureFilter() : GetSavePictureFilter(path, selected));
    if (selected.isEmpty() && !isLayered)
        selected = GetConfigString(u"SaveMediaFilterIdx"_s);
    const QString answer = askSaveFileName(&m_window, path, filters, selected, isOwn);
    // The dialog ran an event loop, and the tray can close everything from there.
    if (answer.isEmpty() || !m_work.documents().find(number))
        return false;
    if (!isLayered)
        SetConfigString(u"SaveMediaFilterIdx"_s, selected);
    if (!write(number, answer))
        return false;
    SetConfigString(u"MediaDir"_s, GetDirectory(answer));
    return true;
}

bool DocumentFiles::write(int number, const QString &path)
{
    const bool waited = m_work.jobs().find(PictureJobs::Kind::Write, number) != nullptr;
    if (!m_work.waitForJobs(number))
        return false;
    QPictureDocument &document = *m_work.documents().find(number);
    // The save that was waited for has done it all.
    if (waited && path == document.m_FileName && !document.IsNewFile() && !document.m_Modified)
        return true;
    if (document.m_IsFileKept && isSameFile(path, document.m_FileName)) {
        tell(document, tr("\"%1\" was not saved: it would take the place of the file of a later "
                          "version of this program.")
                           .arg(document.GetShowName()));
        return false;
    }
    // The editor has the shapes of the current document; the others have their own.
    if (&document == m_work.documents().currentDocument())
        m_work.parkHistory(document);
    const EditHistory history = document.m_VecUnDo;
    if (!document.hasPicture()) {
        const QString failure =
            document.m_Failure.isEmpty() ? tr("There is no picture.") : document.m_Failure;
        return written(number, path, history, {.failure = failure});
    }
    struct Outcome {
        PictureWrite result{};
        bool isSaved = false;
    };
    const auto outcome = std::make_shared<Outcome>();
    const auto job = m_work.jobs().start(
        PictureJobs::Kind::Write, number, tr("Saving \"%1\"...").arg(QFileInfo(path).fileName()),
        [picture = document.pictureLater(), history, path, outcome](PictureProgress &progress) {
            outcome->result = writePicture(picture(), history, path, {}, -1, progress);
        },
        // At once: whoever else waits for this save goes on before its own caller does.
        [this, number, path, history, outcome] {
            outcome->isSaved = written(number, path, history, outcome->result);
        });
    return PictureJobs::waitFor(job) && outcome->isSaved;
}

bool DocumentFiles::written(int number, const QString &path, const EditHistory &history,
                            const PictureWrite &result)
{
    // While the worker wrote, the user went on with the document, and may have closed others.
    QPictureDocument *document = m_work.documents().find(number);
    if (!document)
        return false;
    if (!result.isWritten) {
        // Nothing is said to who gave it up.
        if (!result.failure.isEmpty())
            tell(*document, tr("\"%1\" could not be saved: %2")
                                .arg(QFileInfo(path).fileName(), result.failure));
        return false;
    }
    if (document == m_work.documents().currentDocument())
        m_work.parkHistory(*document);
    document->m_File = result.file;
    document->m_FileName = path;
    document->m_Modified = document->m_VecUnDo != history;
    document->noteWritten(path, history);
    document->m_IsFileKept = false;
    document->SetIsNotNewFile();
    m_notices.withdraw(std::exchange(document->m_Notice, {}));
    m_work.saved(number);
    if (HasLayeredEnding(path) && hasCovers(history))
        tellCovered(*document);
    return true;
}

void DocumentFiles::tellCovered(QPictureDocument &document)
{
    document.m_Notice = tr("\"%1\" keeps what its covers hide. Whoever gets the file can take them "
                           "off.")
                            .arg(document.GetShowName());
    m_notices.say(document.m_Notice,
                  {{tr("Save &without Layers"),
                    [this, number = document.m_Number, name = document.GetShowName()] {
                        if (m_work.documents().find(number) &&
                            saveAs(m_work.documents().indexOf(number)))
                            m_notices.say(tr("\"%1\" is still there, with what "
                                             "the covers hide.")
                                              .arg(name));
                    }}});
}

void DocumentFiles::tell(QPictureDocument &document, const QString &text,
                         QList<NoticeBar::Action> actions)
{
    m_notices.withdraw(document.m_Notice);
    document.m_Notice = text;
    actions.prepend({tr("Save &As..."), [this, number = document.m_Number] {
                         if (m_work.documents().find(number))
                             saveAs(m_work.documents().indexOf(number));
                     }});
    m_notices.say(text, actions);
}

bool DocumentFiles::saveAll()
{
    m_work.editor().EndEdit();
    // Events run while a file is written, and documents may come and go.
    const QList<int> numbers = m_work.documents().numbers();
    return std::all_of(numbers.begin(), numbers.end(), [this](int number) {
        const QPictureDocument *document = m_work.documents().find(number);
        return !document || !document->m_Modified || save(m_work.documents().indexOf(number));
    });
}

void DocumentFiles::close(int index)
{
    m_work.editor().EndEdit();
    index = chosen(index);
    if (!m_work.documents().has(index))
        return;
    const int number = m_work.documents()[index].m_Number;
    // What is only read is given up.
    const auto write = m_work.jobs().find(PictureJobs::Kind::Write, number);
    if (write && !PictureJobs::waitFor(write))
        return;
    const QPictureDocument *document = m_work.documents().find(number);
    if (document && document->m_Modified) {
        const auto answer =
            ask(&m_window, tr("Save changes to \"%1\" ?").arg(document->GetShowName()),
                QMessageBox::Save);
        // While the prompt is up the bus or the tray may open and close others.
        document = m_work.documents().find(number);
        if (answer == QMessageBox::Cancel || !document)
            return;
        if (answer == QMessageBox::Save) {
            // What was drawn while the file was written is asked about.
            if (save(m_work.documents().indexOf(number)) && m_work.documents().find(number))
                close(m_work.documents().indexOf(number));
            return;
        }
    }
    if (document)
        m_work.drop(m_work.documents().indexOf(number));
}

void DocumentFiles::closeOthers()
{
    const QPictureDocument *kept = m_work.documents().currentDocument();
    if (!kept)
        return;
    const int number = kept->m_Number;
    for (const int other : m_work.documents().numbers()) {
        if (other == number || !m_work.documents().find(other))
            continue;
        close(m_work.documents().indexOf(other));
        if (m_work.documents().find(other))
            break;
    }
    if (m_work.documents().find(number))
        m_work.show(m_work.documents().indexOf(number));
}

void DocumentFiles::openFolder()
{
    const QPictureDocument *document = m_work.documents().currentDocument();
    if (!document || document->IsNewFile())
        return;
    const QString folder = QFileInfo(document->m_FileName).absolutePath();
    if (!QFileInfo(folder).isDir())
        m_notices.say(tr("The folder \"%1\" is not there any more.").arg(folder));
    else if (!QDesktopServices::openUrl(QUrl::fromLocalFile(folder)))
        m_notices.say(tr("No program opens the folder \"%1\".").arg(folder));
}

bool DocumentFiles::saveChanges()
{
    TPictureEditor &editor = m_work.editor();
    for (editor.EndEdit(); m_work.hasModified(true); editor.EndEdit()) {
        emit asks();
        const QList<int> asked = m_work.documents().numbers();
        const auto answer = ask(&m_window, tr("Save all changes ?"), QMessageBox::SaveAll);
        if (answer == QMessageBox::Cancel || (answer == QMessageBox::SaveAll && !saveAll()))
            return false;
        // A grab that arrived meanwhile has not been asked about; nor has what was drawn while the
        // files were written.
        const QList<int> now = m_work.documents().numbers();
        const bool isDiscarded =
            answer == QMessageBox::Discard &&
            std::all_of(now.begin(), now.end(), [&](int number) { return asked.contains(number); });
        m_unsaved.setDiscarded(isDiscarded);
        if (answer == QMessageBox::Discard)
            return isDiscarded;
    }
    return true;
}

bool DocumentFiles::closeAll()
{
    while (const auto write = m_work.jobs().find(PictureJobs::Kind::Write, 0)) {
        if (!PictureJobs::waitFor(write))
            return false;
    }
    if (!saveChanges())
        return false;
    m_work.dropAll();
    return true;
}

bool DocumentFiles::copy()
{
    if (!m_work.documents().currentDocument())
        return false;
    CopiedPicture::copy(m_work.unitedPicture().toImage(), m_work.jobs());
    m_notices.sayDone(tr("The picture is in the clipboard."));
    return true;
}
