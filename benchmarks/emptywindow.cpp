// An empty QMainWindow with the size and position of the program's window.

#include <QApplication>
#include <QMainWindow>
#include <QScreen>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QMainWindow window;
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    window.setGeometry((available.width() - 950) / 2, (available.height() - 650) / 2, 950, 650);
    window.show();
    return QApplication::exec();
}
