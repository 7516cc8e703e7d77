// The window pick by itself: lets one window be picked, saves its picture, and prints its
// application, or "rejected".
//
// pickwindow FILE

#include "capture/mouseshot.h"
#include "platform/applicationwatch.h"
#include "platform/services.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    if (argc != 2)
        return 1;
    installServices(createServices());
    StartWatchAppActive();
    {
        mouseShot overlay;
        QString name = QStringLiteral("rejected");
        if (overlay.exec() == QDialog::Accepted)
            overlay.getPixmap(&name).save(QString::fromLocal8Bit(argv[1]));
        std::puts(qUtf8Printable(name));
    }
    StopWatchAppActive();
    installServices({});
    return 0;
}
