// Another program on the desktop: a window with a menu and a long picture that scrolls.
//
// longwindow X Y WIDTH HEIGHT ROWS [OPTION...], in device pixels. The options:
//   sticky  a header that stays, with a caret that blinks in it
//   smooth  scrolls in small steps, as time goes by
//   late    what comes into view is grey at first
// It prints where the viewport lies, as "viewport X Y WIDTH HEIGHT", and each new position of the
// scroll bar, as "at ROW". The wheel with Ctrl would zoom, and prints "zoomed".

#include <QApplication>
#include <QElapsedTimer>
#include <QMainWindow>
#include <QMenuBar>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QWheelEvent>

#include "longpicture.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr int s_headerHeight = 48;
constexpr int s_wheelStep = 51;  // no multiple of the lines' height
constexpr int s_lateness = 300;  // ms

class Header : public QWidget
{
public:
    Header(QWidget *parent, const QImage &picture) : QWidget(parent), m_picture(picture)
    {
        auto *timer = new QTimer(this);
        connect(timer, &QTimer::timeout, this, [this] {
            m_caret = !m_caret;
            update();
        });
        timer->start(300);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.drawImage(0, 0, m_picture);
        painter.fillRect(4, 4, 2, 16, m_caret ? Qt::red : Qt::white);
    }

private:
    QImage m_picture;
    bool m_caret = false;
};

class Content : public QWidget
{
public:
    Content(const QImage &picture, bool late) : m_picture(picture), m_late(late)
    {
        setFixedSize(picture.size());
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QPainter painter(this);
        painter.drawImage(event->rect(), m_picture, event->rect());
        if (!m_late)
            return;
        const int bottom = event->rect().bottom();
        if (bottom <= m_seen)
            return;
        painter.fillRect(QRect(0, m_seen + 1, width(), bottom - m_seen), Qt::lightGray);
        QTimer::singleShot(s_lateness, this, [this, bottom] {
            m_seen = std::max(m_seen, bottom);
            update();
        });
    }

private:
    QImage m_picture;
    bool m_late;
    int m_seen = 0;
};

class Area : public QScrollArea
{
public:
    explicit Area(bool smooth) : m_smooth(smooth)
    {
        setFrameShape(QFrame::NoFrame);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            const int left = m_target - verticalScrollBar()->value();
            verticalScrollBar()->setValue(verticalScrollBar()->value() +
                                          (left > 0 ? (left + 3) / 4 : (left - 3) / 4));
            if (verticalScrollBar()->value() == m_target)
                m_timer.stop();
        });
    }

protected:
    void wheelEvent(QWheelEvent *event) override
    {
        if (event->modifiers() & Qt::ControlModifier) {
            std::printf("zoomed\n");
            std::fflush(stdout);
            return;
        }
        const int step = -event->angleDelta().y() * s_wheelStep / 120;
        const int from = m_timer.isActive() ? m_target : verticalScrollBar()->value();
        m_target = std::clamp(from + step, 0, verticalScrollBar()->maximum());
        if (m_smooth)
            m_timer.start(16);
        else
            verticalScrollBar()->setValue(m_target);
    }

private:
    bool m_smooth;
    int m_target = 0;
    QTimer m_timer;
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
    const QStringList options = QCoreApplication::arguments().mid(6);

    QMainWindow window;
    window.setWindowFlag(Qt::FramelessWindowHint);
    window.setWindowTitle(QStringLiteral("long"));
    QMenu *menu = window.menuBar()->addMenu(QStringLiteral("Extras"));
    menu->addAction(QStringLiteral("First entry"));
    QMenu *more = menu->addMenu(QStringLiteral("More"));
    menu->addAction(QStringLiteral("Last entry"));
    more->addAction(QStringLiteral("Inner entry"));
    more->addAction(QStringLiteral("Another inner entry"));

    auto *area = new Area(options.contains(QStringLiteral("smooth")));
    window.setCentralWidget(area);
    window.setGeometry(atoi(argv[1]), atoi(argv[2]), atoi(argv[3]), atoi(argv[4]));
    window.show();
    const QImage picture = longPicture({area->viewport()->width(), atoi(argv[5])});
    area->setWidget(new Content(picture, options.contains(QStringLiteral("late"))));
    if (options.contains(QStringLiteral("sticky"))) {
        auto *header = new Header(area->viewport(), picture);
        header->setGeometry(0, 0, area->viewport()->width(), s_headerHeight);
        header->show();
    }
    const auto print = [&] {
        const QRect view(area->viewport()->mapToGlobal(QPoint()), area->viewport()->size());
        std::printf("viewport %d %d %d %d\n", view.x(), view.y(), view.width(), view.height());
        std::fflush(stdout);
    };
    QTimer::singleShot(0, &window, print);
    QObject::connect(area->verticalScrollBar(), &QScrollBar::valueChanged, [](int value) {
        std::printf("at %d\n", value);
        std::fflush(stdout);
    });
    return QApplication::exec();
}
