#include "editing/picturedocument.h"

#include "base/paths.h"
#include "config/filters.h"
#include "editing/pictureeditor.h"
#include "editing/picturefile.h"

#include <QCoreApplication>

std::map<QString, int> g_mapNameIndex;

using namespace Qt::StringLiterals;

namespace {

QString untitled(const QString &suffix)
{
    return QCoreApplication::translate("QPictureDocument", "untitled%1").arg(suffix);
}

}  // namespace

QPictureDocument::QPictureDocument(const QPixmap &pixmap) : m_Pixmap(pixmap)
{
    m_Pixmap.setDevicePixelRatio(1);
}

QPictureDocument::QPictureDocument(const QString &path) : m_FileName(path)
{
    PictureProgress progress;
    PictureRead read = readPicture(path, progress);
    m_Pixmap = QPixmap::fromImage(std::move(read.picture));
    m_Failure = read.failure;
    m_File = read.file;
    m_VecUnDo = read.shapes;
    m_IsFileKept = read.isFromLater;
}

QPictureDocument QPictureDocument::awaited(const UnsavedWork &work)
{
    QPictureDocument result;
    result.m_FileName = work.name;
    result.m_NameIndex = work.number;
    result.m_File = work.file;
    result.m_IsFileKept = work.isFileKept;
    result.m_Origin = work.origin;
    result.m_VecUnDo = work.shapes;
    result.m_VecReDo = work.undone;
    result.m_IsAwaited = true;
    return result;
}

QImage QPictureDocument::picture() const { return pictureLater()(); }

QSize QPictureDocument::size() const
{
    const QSize picture = m_Packed.isNull() ? m_Pixmap.size() : m_Packed.size();
    return picture.isEmpty() ? QSize() : sceneOf(m_VecUnDo, picture).size;
}

std::function<QImage()> QPictureDocument::pictureLater() const
{
    return [picture = m_Pixmap.toImage(), packed = m_Packed] {
        return packed.isNull() ? picture : packed.unpacked();
    };
}

void QPictureDocument::setPicture(QImage picture)
{
    // The ratio is 1, although the toolkit derives a scale from file names that end in "@2x".
    picture.setDevicePixelRatio(1);
    m_Packed = {};
    // A worker has already detected opaque pictures.
    m_Pixmap = QPixmap::fromImage(std::move(picture), Qt::NoOpaqueDetection);
}

UnsavedWork QPictureDocument::unsavedWork() const
{
    return {.shapes = m_VecUnDo,
            .undone = m_VecReDo,
            .name = m_FileName,
            .number = m_NameIndex,
            .file = m_File,
            .isFileKept = m_IsFileKept,
            .origin = m_Origin};
}

QString QPictureDocument::GetShowName() const
{
    if (!IsNewFile())
        return m_FileName.mid(m_FileName.lastIndexOf(PathSep()) + 1);
    const QString suffix = m_NameIndex > 0 ? u" "_s + QString::number(m_NameIndex) : QString();
    return m_FileName.isEmpty() ? untitled(suffix) : m_FileName + suffix;
}

QString QPictureDocument::GetEmptyName() { return untitled({}); }

QPixmap &QPictureDocument::GetUnitePixmap()
{
    TPictureEditor editor(static_cast<QObject *>(nullptr));
    editor.setPixmap(m_Packed.isNull() ? m_Pixmap : QPixmap::fromImage(picture()));
    editor.setVecUnDo(&m_VecUnDo);
    editor.setVecReDo(&m_VecReDo);
    m_UnitePixmap = editor.sendPixmap(QColor(0, 0, 0, 0));
    return m_UnitePixmap;
}

bool QPictureDocument::save(const QString &path, const char *format, int quality)
{
    // The document keeps the reason why its picture could not be read.
    if (!hasPicture() && !m_Failure.isEmpty())
        return false;
    m_UnitePixmap = {};
    PictureProgress progress;
    const PictureWrite written =
        writePicture(picture(), m_VecUnDo, path, format, quality, progress);
    if (written.isWritten) {
        m_File = written.file;
        noteWritten(path, m_VecUnDo);
    } else
        m_Failure = written.failure;
    return written.isWritten;
}

void QPictureDocument::noteWritten(const QString &path, const EditHistory &history)
{
    m_IsLayered = HasLayeredEnding(path);
    m_Covered = hasCovers(history) && !m_IsLayered ? history : EditHistory();
}

bool QPictureDocument::isAnotherFile() const
{
    const std::optional<FileIdentity> now = FileIdentity::of(m_FileName);
    return now && now != m_File;
}

int QPictureDocument::nextNumber()
{
    static int s_last = 0;
    return ++s_last;
}
