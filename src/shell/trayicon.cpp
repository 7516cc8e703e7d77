#include "shell/trayicon.h"

#include "config/applicationrecord.h"

#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QWindow>

namespace {

constexpr int s_pause = 100;  // ms

}  // namespace

TrayIcon::TrayIcon(QMenu &menu, const QIcon &icon, QObject *parent) : QObject(parent), m_menu(menu)
{
    qGuiApp->installEventFilter(this);
    QTimer::singleShot(s_pause, this, [this, icon] { appear(icon); });
}

TrayIcon::~TrayIcon() = default;

void TrayIcon::appear(const QIcon &icon)
{
    m_icon = std::make_unique<QSystemTrayIcon>();
    m_icon->setIcon(icon);
    m_icon->setContextMenu(&m_menu);
    m_icon->setToolTip(m_tip);
    // A tray opens the menu itself for the other button only.
    connect(m_icon.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger)
                    m_menu.popup(QCursor::pos());
            });
    m_icon->setVisible(true);
}

void TrayIcon::setTip(const QString &text)
{
    m_tip = text.isEmpty() ? QString() : QString::fromWCharArray(g_AppName) + u'\n' + text;
    if (m_icon)
        m_icon->setToolTip(m_tip);
}

bool TrayIcon::tell(const QString &title, const QString &text)
{
    if (!m_icon || !QSystemTrayIcon::isSystemTrayAvailable())
        return false;
    m_icon->showMessage(title, text, m_icon->icon());
    return true;
}

// What belongs to a dialog is not blocked by it.
bool TrayIcon::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::WindowBlocked && watched->isWidgetType()) {
        auto *widget = static_cast<QWidget *>(watched);
        if (widget == &m_menu || widget->inherits("QSystemTrayIconSys"))
            widget->windowHandle()->setTransientParent(QGuiApplication::modalWindow());
    }
    return QObject::eventFilter(watched, event);
}
