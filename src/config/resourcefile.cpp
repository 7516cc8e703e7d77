#include "config/resourcefile.h"

#include "config/applicationrecord.h"
#include "config/settings.h"
#include "config/texthelpers.h"
#include "config/xmlstore.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <array>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

const QString s_resourceName = u"SnapWorkbench.xml"_s;

QString markerPath() { return userDataFolder() + u"Exceptionfile.rtf"_s; }

QString backupPath(const QString &resource)
{
    std::array<wchar_t, WideTextCapacity> path;
    ChangeFileExt(resource.toStdWString().c_str(), L".~xml", path.data());
    return QString::fromWCharArray(path.data());
}

bool isFile(const QString &path) { return QFileInfo(path).isFile(); }

// A folder is never one of our files, but may hold something of the user's: nothing in it is lost.
void moveFolderAside(const QString &path)
{
    constexpr int tries = 1000;
    for (int number = 1; QFileInfo(path).isDir() && number <= tries; ++number)
        QFile::rename(path, path + u'.' + QString::number(number));
}

void removeFile(const QString &path)
{
    moveFolderAside(path);
    QFile::remove(path);
}

// The shipped file may be read-only, and permissions travel with the file.
void letUserWrite(const QString &path)
{
    QFile::setPermissions(path, QFile::permissions(path) | QFile::ReadOwner | QFile::WriteOwner);
}

// Stops at any point with the old target or the new one in place. Without a readable source the old
// target stays.
void replaceFile(const QString &source, const QString &target)
{
    const QString fresh = target + u".new"_s;
    removeFile(fresh);
    if (!QFile::copy(source, fresh))
        return;
    letUserWrite(fresh);
    moveFolderAside(target);
    // QFile::rename() would not replace a file.
    std::rename(QFile::encodeName(fresh).constData(), QFile::encodeName(target).constData());
}

// The backup becomes the resource file. Moved, and not copied, so that a full disk costs nothing.
void restore(const QString &backup, const QString &resource)
{
    removeFile(resource);
    if (isFile(backup)) {
        QFile::rename(backup, resource);
        letUserWrite(resource);
    }
}

int readNumber(const QString &file, const QString &element, const QString &attribute)
{
    std::array<wchar_t, WideTextCapacity> text;
    GetTextFromXML_W(file.toStdWString().c_str(), element.toStdWString().c_str(),
                     attribute.toStdWString().c_str(), text.data(), int(text.size()));
    return QString::fromWCharArray(text.data()).toInt();
}

}  // namespace

QString userDataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u'/' +
           QString::fromWCharArray(g_AppName) + u'/';
}

bool ProcessResourceFile(const QString &)
{
    const QString shipped = QCoreApplication::applicationDirPath() + u'/' + s_resourceName;
    const QString resource = userDataFolder() + s_resourceName;
    const QString backup = backupPath(resource);
    g_ResourceFileName = resource;

    const bool lastStartFailed = isFile(markerPath());
    CreateExceptionFile();
    if (lastStartFailed || !isFile(resource) || QFileInfo(resource).size() <= 0)
        restore(backup, resource);

    if (!isFile(resource) || XmlIsOld(shipped, resource, u"Galeway"_s, u"ver"_s)) {
        // The store holds the old file by now.
        FreeAllXmlDocument();
        replaceFile(shipped, resource);
    }
    try {
        // Any read will do: it makes the store parse a file that has just been installed.
        GetString(u"test"_s);
        replaceFile(resource, backup);
        DeleteExceptionFile();
        return true;
    } catch (...) {
        removeFile(resource);
        replaceFile(backup, resource);
        return false;
    }
}

bool XmlIsOld(const QString &shippedXml, const QString &userXml, const QString &element,
              const QString &attribute)
{
    if (!isFile(userXml))
        return true;
    const int shippedNumber = readNumber(shippedXml, element, attribute);
    return readNumber(userXml, element, attribute) < shippedNumber;
}

void CreateExceptionFile()
{
    moveFolderAside(markerPath());
    QFile marker(markerPath());
    marker.open(QIODevice::WriteOnly);
}

void DeleteExceptionFile() { QFile::remove(markerPath()); }
