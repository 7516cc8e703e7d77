#pragma once

#include <QObject>

class QMenu;

/// Keeps the icon in the tray and its menu within the pointer's reach while a dialog is open. Of a
/// tray that embeds the icon's window the toolkit takes that for one more window that the dialog
/// blocks.
class TrayReach : public QObject
{
    Q_OBJECT

public:
    TrayReach(QMenu *menu, QObject *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QMenu *m_menu;
};
