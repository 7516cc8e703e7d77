// Keeps what was copied in the program after that has ended: until another program copies
// something, or the session ends. Where the desktop has a clipboard manager, that gets it and this
// ends at once. It has no window, asks nothing, and is nobody's to find. What it keeps comes over
// standard input; the arguments are its MIME type, and "keep" or "hand-over".

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
    const QStringList arguments = QCoreApplication::arguments();
    auto *content = new QMimeData;
    content->setData(arguments.value(1), input.readAll());
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setMimeData(content);
    // The toolkit does so at the end of a program, which takes as long as the manager does.
    if (arguments.value(2) == u"hand-over")
        return 0;
    QObject::connect(clipboard, &QClipboard::dataChanged, &application, [clipboard] {
        if (!clipboard->ownsClipboard())
            QCoreApplication::quit();
    });
    return QGuiApplication::exec();
}
