#include "shell/pictureintake.h"

#include "config/filters.h"
#include "editing/picturefile.h"
#include "shell/notices.h"
#include "shell/workbench.h"

#include <QClipboard>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QMimeData>
#include <QMimeDatabase>
#include <QUrl>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// Nobody finds anything among more tabs.
constexpr qsizetype s_mostFiles = 1000;

bool hasPictureEnding(const QString &path)
{
    static const QList<QByteArray> s_endings = QImageReader::supportedImageFormats() << "ora";
    return s_endings.contains(QFileInfo(path).suffix().toLower().toLatin1());
}

// By its ending, or else by how it begins.
bool isPicture(const QString &path)
{
    return hasPictureEnding(path) ||
           QMimeDatabase().mimeTypeForFile(path).name().startsWith(u"image/"_s);
}

// Those that lie in it, by name; what is in further folders stays there.
QStringList picturesIn(const QString &folder)
{
    QStringList found;
    QDirIterator files(folder, QDir::Files | QDir::Readable);
    while (files.hasNext()) {
        if (const QString path = files.next(); hasPictureEnding(path))
            found.append(path);
    }
    found.sort(Qt::CaseInsensitive);
    return found;
}

QString pictureFormat(const QMimeData &data)
{
    const QStringList formats = data.formats();
    const auto found = std::find_if(formats.begin(), formats.end(), [](const QString &format) {
        return format.startsWith(u"image/"_s);
    });
    return found == formats.end() ? QString() : *found;
}

}  // namespace

PictureIntake::PictureIntake(Workbench &work, Notices &notices, QObject *parent)
    : QObject(parent), m_work(work), m_notices(notices)
{
}

bool PictureIntake::isOffered(const QMimeData &data)
{
    return data.hasUrls() || data.hasImage() || data.hasText() || !pictureFormat(data).isEmpty();
}

PictureIntake::Files PictureIntake::filesOf(const QMimeData &data)
{
    Files files;
    for (const QUrl &url : data.urls()) {
        const QFileInfo info(url.toLocalFile());
        if (!url.isLocalFile()) {
            files.remote.append(url.toDisplayString());
        } else if (info.isDir()) {
            const QStringList inside = picturesIn(info.filePath());
            files.pictures += inside;
            if (inside.isEmpty())
                files.emptyFolder = info.filePath();
        } else if (!info.exists() || (info.isFile() && isPicture(info.filePath()))) {
            // Of one that is not there its tab tells.
            files.pictures.append(info.filePath());
        } else {
            ++files.others;
        }
    }
    files.beyond = std::max<qsizetype>(0, files.pictures.size() - s_mostFiles);
    files.pictures = files.pictures.first(files.pictures.size() - files.beyond);
    return files;
}

bool PictureIntake::takePicture(const QMimeData &data)
{
    auto picture = qvariant_cast<QImage>(data.imageData());
    if (const QString format = pictureFormat(data); picture.isNull() && !format.isEmpty())
        picture = QImage::fromData(data.data(format));
    if (picture.isNull())
        return false;
    picture.setDevicePixelRatio(1);
    m_work.add(QPixmap::fromImage(asPixmap(std::move(picture))), {},
               {.time = QDateTime::currentDateTime()});
    return true;
}

// Until the next picture comes.
void PictureIntake::say(const QString &text)
{
    m_told = text;
    m_notices.say(text);
}

void PictureIntake::take(const QMimeData &data)
{
    m_notices.withdraw(std::exchange(m_told, {}));
    const Files files = filesOf(data);
    if (!files.pictures.isEmpty())
        m_work.open(files.pictures);
    else if ((data.hasImage() || !pictureFormat(data).isEmpty()) && takePicture(data))
        return;
    tell(files);
    if (files.pictures.isEmpty() && files.others == 0 && files.remote.isEmpty() &&
        files.emptyFolder.isEmpty())
        say(data.hasText() && pictureFormat(data).isEmpty()
                ? tr("This is text, and no picture.")
                : tr("There is no picture that can be read."));
}

void PictureIntake::tell(const Files &files)
{
    if (files.beyond > 0)
        say(tr("Only the first %1 pictures were opened; %2 more were left out.")
                .arg(s_mostFiles)
                .arg(files.beyond));
    else if (!files.remote.isEmpty())
        say(tr("\"%1\" is not on this computer. Nothing was fetched; save the picture "
               "first, and open it then.")
                .arg(files.remote.first()));
    else if (!files.emptyFolder.isEmpty())
        say(tr("There are no pictures in the folder \"%1\".").arg(files.emptyFolder));
    else if (files.others > 0)
        say(tr("Files that are no pictures were not opened: %1.").arg(files.others));
}

void PictureIntake::takeFromClipboard()
{
    if (const QMimeData *data = QGuiApplication::clipboard()->mimeData();
        data && !data->formats().isEmpty())
        take(*data);
    else
        say(tr("There is nothing on the clipboard."));
}
