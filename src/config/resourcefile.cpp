#include "config/resourcefile.h"

#include "base/boundedtext.h"
#include "base/log.h"
#include "base/paths.h"
#include "base/wholefile.h"
#include "config/applicationrecord.h"
#include "config/resourceupgrade.h"
#include "config/settings.h"
#include "config/xmlstore.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QXmlStreamReader>

#include <array>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <string>

using namespace Qt::StringLiterals;

namespace {

const QString s_resourceName = u"SnapWorkbench.xml"_s;

ResourceFileProblem s_problem;

QString markerPath() { return userDataFolder() + u"Exceptionfile.rtf"_s; }

QString backupPath(const QString &resource)
{
    std::array<wchar_t, WideTextCapacity> path;
    ChangeFileExt(resource.toStdWString().c_str(), L".~xml", path.data());
    return QString::fromWCharArray(path.data());
}

bool isFile(const QString &path) { return QFileInfo(path).isFile(); }

// Renames a file that is in the way, so that its content is not lost.
void moveAside(const QString &path, const QString &ending)
{
    constexpr int tries = 1000;
    for (int number = 1; number <= tries; ++number) {
        if (QFile::rename(path, path + ending + QString::number(number)))
            break;
    }
}

// A folder of this name is not the program's, but it may contain the user's files.
void moveFolderAside(const QString &path)
{
    if (QFileInfo(path).isDir())
        moveAside(path, u"."_s);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool canBeRead(const QString &path)
{
    const bool isRead = ReadXmlDocument(path) != nullptr;
    if (!isRead && QFile::exists(path))
        qCInfo(logStore) << path << "can't be read";
    return isRead;
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    moveFolderAside(path);
    // A copied file keeps its permissions, so this one may be read-only.
    const QFile::Permissions permissions = QFile::permissions(path);
    const QFile::Permissions needed = QFile::ReadOwner | QFile::WriteOwner;
    if (isFile(path) && (permissions & needed) != needed)
        QFile::setPermissions(path, permissions | needed);
    if (contentOf(path) == bytes)
        return true;
    WholeFile file(path);
    if (file.write(bytes))
        return true;
    s_problem = {path, file.error()};
    return false;
}

// Makes the backup the resource file. If the backup can't be read, a readable resource file stays.
// Returns false if the backup is readable but could not be installed, and the resource file is not
// readable; the shipped file must not replace a good backup then.
bool restore(const QString &backup, const QString &resource)
{
    const bool isDamaged =
        isFile(resource) && QFileInfo(resource).size() > 0 && !canBeRead(resource);
    if (isDamaged)
        moveAside(resource, u".damaged."_s);
    if (!canBeRead(backup))
        return true;
    // On a full disk the backup can still be moved.
    return writeFile(resource, contentOf(backup)) ||
           std::rename(QFile::encodeName(backup).constData(),
                       QFile::encodeName(resource).constData()) == 0 ||
           canBeRead(resource);
}

// Keeps a copy of the older file beside the new one. If there is no room, the older file stays in
// use and the next start tries again.
void upgrade(const QString &shipped, const QString &resource)
{
    const QDomDocument &user = *GetXmlDocument(resource.toStdWString().c_str(), false);
    const int version = user.documentElement().attribute(u"ver"_s).toInt();
    const QByteArray before = contentOf(resource);
    const auto named = [version](int number) {
        const QString again = number > 1 ? u"-%1"_s.arg(number) : QString();
        return userDataFolder() + u"SnapWorkbench.%1%2.xml"_s.arg(version).arg(again);
    };
    int number = 1;
    while (QFileInfo::exists(named(number)) && contentOf(named(number)) != before)
        ++number;
    if (writeFile(named(number), before))
        writeFile(resource, upgraded(user, *GetXmlDocument(shipped.toStdWString().c_str(), false)));
}

int readNumber(const QString &file, const QString &element, const QString &attribute)
{
    std::array<wchar_t, WideTextCapacity> text;
    GetTextFromXML_W(file.toStdWString().c_str(), element.toStdWString().c_str(),
                     attribute.toStdWString().c_str(), text.data(), int(text.size()));
    return QString::fromWCharArray(text.data()).toInt();
}

// The same of the top element, without the rest of the file: parsing a shipped file that is not
// needed costs a start its time and the program its memory. Returns nothing if the file begins with
// something else.
std::optional<int> readTopNumber(const QString &path, const QString &element,
                                 const QString &attribute)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QXmlStreamReader reader(&file);
    if (!reader.readNextStartElement() || reader.name() != element)
        return {};
    return reader.attributes().value(attribute).toInt();
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
    s_problem = {};

    const bool lastStartFailed = isFile(markerPath());
    CreateExceptionFile();
    if (lastStartFailed || !isFile(resource) || QFileInfo(resource).size() <= 0) {
        if (!restore(backup, resource))
            return false;
    }

    if (!isFile(resource) || QFileInfo(resource).size() <= 0) {
        if (!canBeRead(shipped))
            s_problem = {shipped, {}};
        else
            writeFile(resource, contentOf(shipped));
        if (!s_problem.path.isEmpty())
            return false;
    } else if (XmlIsOld(shipped, resource, u"Galeway"_s, u"ver"_s)) {
        upgrade(shipped, resource);
        // The store still holds the old file.
        FreeAllXmlDocument();
    }
    try {
        // The key does not matter: any read makes the store parse the installed file.
        GetConfigString(u"test"_s);
        writeFile(backup, contentOf(resource));
        DeleteExceptionFile();
        return true;
    } catch (...) {
        s_problem = {resource, qt_error_string(ENOMEM)};
        restore(backup, resource);
        return false;
    }
}

ResourceFileProblem resourceFileProblem() { return s_problem; }

QString SaveResourceFile()
{
    const std::wstring name = g_ResourceFileName.toStdWString();
    if (SaveXmlDocument(name.c_str()))
        writeFile(backupPath(g_ResourceFileName), contentOf(g_ResourceFileName));
    const TXmlDocItem *item = g_XmlDocSet.Find(name.c_str());
    return item ? item->SaveError : QString();
}

bool XmlIsOld(const QString &shippedXml, const QString &userXml, const QString &element,
              const QString &attribute)
{
    if (!isFile(userXml))
        return true;
    const auto top = readTopNumber(shippedXml, element, attribute);
    const int shippedNumber = top ? *top : readNumber(shippedXml, element, attribute);
    return readNumber(userXml, element, attribute) < shippedNumber;
}

void CreateExceptionFile()
{
    moveFolderAside(markerPath());
    QFile marker(markerPath());
    marker.open(QIODevice::WriteOnly);
}

void DeleteExceptionFile() { QFile::remove(markerPath()); }
