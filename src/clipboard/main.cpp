// Keeps what was copied in the program after that has ended: until another program copies
// something, or the session ends. A clipboard manager reads it from here. It has no window, asks
// nothing, and is nobody's to find. What it keeps comes over standard input; the argument is its
// MIME type.

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>

#include <cstdio>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    // No session manager is to start it again, and no theme to be loaded for it.
    qunsetenv("SESSION_MANAGER");
    qputenv("QT_QPA_PLATFORMTHEME", "none");
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);

    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return 1;
    auto *content = new QMimeData;
    content->setData(QCoreApplication::arguments().value(1), input.readAll());
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setMimeData(content);
    QObject::connect(clipboard, &QClipboard::dataChanged, &application, [clipboard] {
        if (!clipboard->ownsClipboard())
            QCoreApplication::quit();
    });
    return QGuiApplication::exec();
}
