#include "shell/handedfiles.h"

#include "base/privatefolder.h"
#include "editing/picturefile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>

using namespace Qt::StringLiterals;

namespace {

const QString s_folder = u"handed"_s;
constexpr int s_longestName = 80;  // characters

QString fileNameOf(QString name)
{
    for (const QChar banned : {u'/', u'\0', u'\n', u'\r'})
        name.replace(banned, u'_');
    name = name.trimmed();
    while (name.startsWith(u'.'))
        name.remove(0, 1);
    if (name.endsWith(u".png"_s, Qt::CaseInsensitive))
        name.chop(4);
    return (name.isEmpty() ? u"picture"_s : name.left(s_longestName)) + u".png"_s;
}

}  // namespace

HandedFiles::HandedFiles(QString base, QObject *parent) : QObject(parent), m_base(std::move(base))
{
    PrivateFolder(m_base, {s_folder}).remove();
}

HandedFiles::~HandedFiles() { PrivateFolder(m_base, {s_folder}).remove(); }

// Each has a folder of its own, for they may be called alike.
QString HandedFiles::write(const QImage &picture, const QString &name, QString &failure)
{
    PrivateFolder folder(m_base, {s_folder, QString::number(++m_count)});
    if (!folder.make()) {
        failure = folder.error();
        return {};
    }
    QString path = folder.path() + u'/' + fileNameOf(name);
    PictureProgress progress;
    const PictureWrite written = writePicture(picture, {}, path, "png", -1, progress);
    failure = written.failure;
    if (!written.isWritten) {
        folder.remove();
        return {};
    }
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    return path;
}

void HandedFiles::remove(const QString &path)
{
    if (!path.isEmpty())
        PrivateFolder(m_base, {s_folder, QFileInfo(path).dir().dirName()}).remove();
}
