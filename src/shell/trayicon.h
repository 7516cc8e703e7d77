#pragma once

#include <QIcon>
#include <QObject>

#include <memory>

class QMenu;
class QSystemTrayIcon;

/// The program's icon in the desktop's tray, with its menu. Both stay within the pointer's reach
/// while a dialog is open: of a tray that embeds the icon's window the toolkit takes that for one
/// more window that the dialog blocks.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    /// The icon comes a moment later: the desktop's tray answers late, and the window is painted
    /// first. `menu` outlives this object.
    TrayIcon(QMenu &menu, const QIcon &icon, QObject *parent);
    ~TrayIcon() override;

    /// What the icon says of itself beside the program's name; empty for nothing.
    void setTip(const QString &text);
    static bool isThere();
    /// Shows a message beside the icon. False where there is no tray.
    bool tell(const QString &title, const QString &text);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// The icon was pressed where its menu can't be shown beside it.
    void pressed();
    /// The desktop has no tray, or one that comes late. Only where the icon can't be embedded as a
    /// window.
    void missing();

private:
    void appear(const QIcon &icon);

    QMenu &m_menu;
    std::unique_ptr<QSystemTrayIcon> m_icon;
    QString m_tip;
};
