// The main window's form with plain buttons that show their pictures as icons.

#include "ui_mainwindow.h"

#include <QApplication>
#include <QMainWindow>
#include <QScreen>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QMainWindow window;
    Ui::MainWindow ui;
    ui.setupUi(&window);
    ui.widSysTool->hide();
    for (QPushButton *button : window.findChildren<QPushButton *>()) {
        auto *plain = new QPushButton(button->parentWidget());
        plain->setIcon(
            QIcon(QStringLiteral(BENCH_SKIN "/%1_normal.png").arg(button->objectName())));
        plain->setFixedSize(button->minimumSize());
        plain->setIconSize(plain->size());
        plain->setFocusPolicy(Qt::NoFocus);
        button->parentWidget()->layout()->replaceWidget(button, plain);
        delete button;
    }
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    window.setGeometry((available.width() - 950) / 2, (available.height() - 650) / 2, 950, 650);
    window.show();
    return QApplication::exec();
}
