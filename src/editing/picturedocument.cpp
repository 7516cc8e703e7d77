#include "editing/picturedocument.h"

#include "base/wholefile.h"
#include "config/texthelpers.h"
#include "editing/pictureeditor.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>

std::map<QString, int> g_mapNameIndex;

using namespace Qt::StringLiterals;

namespace {

QString untitled(const QString &suffix)
{
    return QCoreApplication::translate("QPictureDocument", "untitled%1").arg(suffix);
}

// Formats that hold no transparency, told by the end of the name. The dot is not asked for.
bool isOpaqueFormat(const QString &path)
{
    const QString upper = path.toUpper();
    return upper.endsWith(u"BMP"_s) || upper.endsWith(u"JPG"_s) || upper.endsWith(u"JPEG"_s);
}

}  // namespace

QPictureDocument::QPictureDocument(const QPixmap &pixmap) : m_Pixmap(pixmap)
{
    m_Pixmap.setDevicePixelRatio(1);
}

QPictureDocument::QPictureDocument(const QString &path)
    : m_FileName(path), m_File(FileIdentity::of(path))
{
    // Not through the toolkit's store of pixmaps, which knows a file by its name, size and second.
    QFile file(path);
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile()) {
        // A pipe or a device would block or never end.
        m_Failure = QCoreApplication::translate("QPictureDocument", "This is not a file.");
    } else if (!file.open(QIODevice::ReadOnly)) {
        m_Failure = file.errorString();
    } else {
        QImageReader reader(path);
        const QImage image = reader.read();
        m_Pixmap = QPixmap::fromImage(image);
        if (image.isNull())
            m_Failure = reader.errorString();
    }
    // A picture is its pixels: the toolkit reads a scale out of names that end in "@2x".
    m_Pixmap.setDevicePixelRatio(1);
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
    editor.setPixmap(m_Pixmap);
    editor.setVecUnDo(&m_VecUnDo);
    editor.setVecReDo(&m_VecReDo);
    m_UnitePixmap = editor.sendPixmap(QColor(0, 0, 0, 0));
    return m_UnitePixmap;
}

bool QPictureDocument::save(const QString &path, const char *format, int quality)
{
    if (m_Pixmap.isNull()) {
        if (m_Failure.isEmpty())
            m_Failure = QCoreApplication::translate("QPictureDocument", "There is no picture.");
        return false;
    }
    QPixmap picture = GetUnitePixmap();
    if (isOpaqueFormat(path) && picture.hasAlpha()) {
        QPixmap opaque(picture.size());
        opaque.fill(Qt::white);
        QPainter(&opaque).drawPixmap(0, 0, picture);
        picture = opaque;
    }
    QBuffer bytes;
    QImageWriter writer(&bytes, format ? QByteArray(format) : QFileInfo(path).suffix().toLatin1());
    if (quality >= 0)
        writer.setQuality(quality);
    if (!writer.write(picture.toImage())) {
        m_Failure = writer.errorString();
        return false;
    }
    WholeFile file(path);
    if (!file.write(bytes.data())) {
        m_Failure = file.error();
        return false;
    }
    m_File = FileIdentity::of(path);
    return true;
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
