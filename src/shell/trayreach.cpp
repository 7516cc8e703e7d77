#include "shell/trayreach.h"

#include <QApplication>
#include <QEvent>
#include <QMenu>
#include <QWindow>

TrayReach::TrayReach(QMenu *menu, QObject *parent) : QObject(parent), m_menu(menu)
{
    qGuiApp->installEventFilter(this);
}

// What belongs to a dialog is not blocked by it.
bool TrayReach::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::WindowBlocked && watched->isWidgetType()) {
        auto *widget = static_cast<QWidget *>(watched);
        if (widget == m_menu || widget->inherits("QSystemTrayIconSys"))
            widget->windowHandle()->setTransientParent(QGuiApplication::modalWindow());
    }
    return QObject::eventFilter(watched, event);
}
