#include "platform/xdg/autostart.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

QString Autostart::entryPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/autostart/snapworkbench.desktop"_s;
}

// The quoting of the desktop entry format: a quoted argument, the whole of it escaped once more as
// a string, and "%" doubled because it begins a field code.
QByteArray Autostart::execLine()
{
    QString path = QCoreApplication::applicationFilePath();
    for (const QChar special : u"\\\"`$"_s)
        path.replace(special, u'\\' + QString(special));
    path.replace(u'\\', u"\\\\"_s);
    path.replace(u'%', u"%%"_s);
    return "Exec=\"" + path.toUtf8() + '"';
}

bool Autostart::contains() const
{
    QFile entry(entryPath());
    return entry.open(QIODevice::ReadOnly) && entry.readAll().split('\n').contains(execLine());
}

void Autostart::insert()
{
    const QString path = entryPath();
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile entry(path);
    if (!entry.open(QIODevice::WriteOnly))
        return;
    entry.write("[Desktop Entry]\nType=Application\nName=Snap Workbench\n" + execLine() +
                "\nIcon=snapworkbench\nX-GNOME-Autostart-enabled=true\n");
    entry.commit();
}

void Autostart::remove() { QFile::remove(entryPath()); }
