#include "platform/xdg/autostart.h"

#include "base/wholefile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

// The value of a key in a desktop entry with one group. The format allows blanks around "=".
QByteArray valueOf(const QList<QByteArray> &lines, const QByteArray &key)
{
    for (const QByteArray &line : lines) {
        const qsizetype sign = line.indexOf('=');
        if (sign > 0 && line.left(sign).trimmed() == key)
            return line.mid(sign + 1).trimmed();
    }
    return {};
}

}  // namespace

QString Autostart::entryPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/autostart/snapworkbench.desktop"_s;
}

// Quotes the path by the desktop entry format: as a quoted argument, then escaped once more as a
// string, with "%" doubled because it begins a field code.
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
    if (!entry.open(QIODevice::ReadOnly))
        return false;
    const QList<QByteArray> lines = entry.readAll().split('\n');
    // Desktops may disable an entry without removing it.
    return lines.contains(execLine()) && valueOf(lines, "Hidden") != "true" &&
           valueOf(lines, "X-GNOME-Autostart-enabled") != "false";
}

// KWin may take this entry for the one that says what the program may do, so it asks for the same
// as the installed one.
void Autostart::insert()
{
    const QString path = entryPath();
    QDir().mkpath(QFileInfo(path).path());
    WholeFile(path).write("[Desktop Entry]\nType=Application\nName=Snap Workbench\n" + execLine() +
                          "\nIcon=snapworkbench\nX-GNOME-Autostart-enabled=true\n"
                          "X-KDE-DBUS-Restricted-Interfaces=org.kde.KWin.ScreenShot2\n"
                          "X-KDE-Wayland-Interfaces=org_kde_kwin_fake_input\n");
}

void Autostart::remove() { QFile::remove(entryPath()); }
