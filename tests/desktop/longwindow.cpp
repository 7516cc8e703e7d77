// Another program on the desktop: a window with a long picture that scrolls.
//
// longwindow X Y WIDTH HEIGHT ROWS, in device pixels.
//
// It prints where the viewport lies, as "viewport X Y WIDTH HEIGHT", and each new position of the
// scroll bar, as "at ROW". The wheel with Ctrl would zoom, and prints "zoomed".

#include <QApplication>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QWheelEvent>

#include "longpicture.h"

#include <cstdio>

namespace {

constexpr int s_wheelStep = 51;  // no multiple of the lines' height

class Area : public QScrollArea
{
public:
    Area()
    {
        setFrameShape(QFrame::NoFrame);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    }

protected:
    void wheelEvent(QWheelEvent *event) override
    {
        if (event->modifiers() & Qt::ControlModifier) {
            std::printf("zoomed\n");
            std::fflush(stdout);
            return;
        }
        verticalScrollBar()->setValue(verticalScrollBar()->value() -
                                      event->angleDelta().y() * s_wheelStep / 120);
    }
};

}  // namespace

int main(int argc, char **argv)
{
    // It counts device pixels whatever the scale of the program under test.
    qunsetenv("QT_SCALE_FACTOR");
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    QCoreApplication::setApplicationName(QStringLiteral("longwindow"));
    const QApplication application(argc, argv);
    if (argc < 6)
        return 1;

    Area window;
    window.setWindowFlag(Qt::FramelessWindowHint);
    window.setWindowTitle(QStringLiteral("long"));
    window.setGeometry(atoi(argv[1]), atoi(argv[2]), atoi(argv[3]), atoi(argv[4]));
    window.show();
    auto *content = new QLabel;
    content->setPixmap(
        QPixmap::fromImage(longPicture({window.viewport()->width(), atoi(argv[5])})));
    window.setWidget(content);
    const auto print = [&] {
        const QRect view(window.viewport()->mapToGlobal(QPoint()), window.viewport()->size());
        std::printf("viewport %d %d %d %d\n", view.x(), view.y(), view.width(), view.height());
        std::fflush(stdout);
    };
    QTimer::singleShot(0, &window, print);
    QObject::connect(window.verticalScrollBar(), &QScrollBar::valueChanged, [](int value) {
        std::printf("at %d\n", value);
        std::fflush(stdout);
    });
    return QApplication::exec();
}
