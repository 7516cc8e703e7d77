// Another program on the desktop: an undecorated window whose every pixel is told by its position.
// It takes the keyboard when it is activated, and prints the keys that it receives.
//
// patternwindow X Y WIDTH HEIGHT [NAME [framed]], in device pixels, on Wayland in logical ones.
// NAME is the application's, and a framed window has its place from the window manager.

#include <QBackingStore>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRasterWindow>

#include "pattern.h"

#include <cstdio>

class PatternWindow : public QRasterWindow
{
protected:
    void paintEvent(QPaintEvent *) override
    {
        QImage image = pattern(size() * devicePixelRatio());
        image.setDevicePixelRatio(devicePixelRatio());
        QPainter(this).drawImage(0, 0, image);
    }
    void mousePressEvent(QMouseEvent *event) override
    {
        const QPoint at = event->position().toPoint();
        std::printf("press %d,%d\n", at.x(), at.y());
        std::fflush(stdout);
    }
    void mouseDoubleClickEvent(QMouseEvent *event) override { mousePressEvent(event); }
    void keyPressEvent(QKeyEvent *event) override
    {
        std::printf("key %d\n", event->key());
        std::fflush(stdout);
    }
};

int main(int argc, char **argv)
{
    // It counts device pixels whatever the scale of the program under test.
    qunsetenv("QT_SCALE_FACTOR");
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    if (argc > 5)
        QCoreApplication::setApplicationName(QString::fromLocal8Bit(argv[5]));
    const QGuiApplication application(argc, argv);
    if (argc < 5)
        return 1;
    PatternWindow window;
    window.setTitle(QStringLiteral("pattern"));
    const bool framed = argc > 6;
    window.setFlag(Qt::FramelessWindowHint, !framed);
    const QRect place(atoi(argv[1]), atoi(argv[2]), atoi(argv[3]), atoi(argv[4]));
    window.setGeometry(place);
    window.show();
    // Some window managers keep a new window on one monitor; one that is moved goes where it likes.
    QObject::connect(&window, &QWindow::xChanged, &window, [&window, place, framed](int x) {
        if (x != place.x() && !framed)
            window.setPosition(place.topLeft());
    });
    // The next one may have another scale.
    QObject::connect(&window, &QWindow::screenChanged, &window, [&window] { window.update(); });
    return QGuiApplication::exec();
}
