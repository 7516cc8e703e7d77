// Keeps what was copied in the program after that has ended: until another program copies
// something, or the session ends. A clipboard manager reads it from here. It has no window, asks
// nothing, and is nobody's to find. What it keeps comes over standard input; the argument is its
// MIME type.

#include "datacontrol.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_noContent = 1;
constexpr int s_noClipboard = 2;  // the desktop lets nobody keep one who has no window

}  // namespace

int main(int argc, char **argv)
{
    QFile input;
    if (argc < 2 || !input.open(stdin, QIODevice::ReadOnly))
        return s_noContent;
    const QByteArray content = input.readAll();
    if (keepInCompositor(content, argv[1]))
        return 0;

    // No session manager is to start it again, and no theme to be loaded for it.
    qunsetenv("SESSION_MANAGER");
    qputenv("QT_QPA_PLATFORMTHEME", "none");
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    if (QGuiApplication::platformName() != u"xcb")
        return s_noClipboard;

    auto *data = new QMimeData;
    data->setData(QString::fromLocal8Bit(argv[1]), content);
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setMimeData(data);
    QObject::connect(clipboard, &QClipboard::dataChanged, &application, [clipboard] {
        if (!clipboard->ownsClipboard())
            QCoreApplication::quit();
    });
    return QGuiApplication::exec();
}
