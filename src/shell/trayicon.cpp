#include "shell/trayicon.h"

#include "config/applicationrecord.h"
#include "platform/services.h"
#include "platform/xdg/traywatch.h"

#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QWindow>

namespace {

// Milliseconds.
constexpr int s_pause = 100;
constexpr int s_patience = 3000;

}  // namespace

TrayIcon::TrayIcon(QMenu &menu, const QIcon &icon, QObject *parent) : QObject(parent), m_menu(menu)
{
    qGuiApp->installEventFilter(this);
    const auto appears = [this, icon] { appear(icon); };
    if (services().ownWindows->placesWindows()) {
        QTimer::singleShot(s_pause, this, appears);
        return;
    }
    // Nothing there embeds a window, so the tray is the one on the bus. The toolkit looks for that
    // once, and a session starts it along with this program.
    connect(new TrayWatch(this), &TrayWatch::appeared, this, appears);
    services().clock->after(s_patience, this, [this] {
        if (!m_icon)
            emit missing();
    });
}

TrayIcon::~TrayIcon() = default;

void TrayIcon::appear(const QIcon &icon)
{
    if (m_icon)
        return;
    m_icon = std::make_unique<QSystemTrayIcon>();
    m_icon->setIcon(icon);
    m_icon->setContextMenu(&m_menu);
    m_icon->setToolTip(m_tip);
    // A tray opens the menu itself for the other button only. A menu that a press in no window of
    // this program opens is placed by the desktop as any window is.
    connect(m_icon.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason != QSystemTrayIcon::Trigger)
                    return;
                if (services().ownWindows->placesWindows())
                    m_menu.popup(QCursor::pos());
                else
                    emit pressed();
            });
    m_icon->setVisible(true);
}

void TrayIcon::setTip(const QString &text)
{
    m_tip = text.isEmpty() ? QString() : QString::fromWCharArray(g_AppName) + u'\n' + text;
    if (m_icon)
        m_icon->setToolTip(m_tip);
}

bool TrayIcon::isThere() { return QSystemTrayIcon::isSystemTrayAvailable(); }

bool TrayIcon::tell(const QString &title, const QString &text)
{
    if (!m_icon || !isThere())
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
