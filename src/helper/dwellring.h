#pragma once

#include "platform/windowserver.h"

#include <QWidget>

/// A thin ring beside the pointer that fills while the pointer rests on a menu. It takes no click
/// and no key, and never covers a menu.
class DwellRing : public QWidget
{
    Q_OBJECT
public:
    DwellRing();

    /// Places it near `pointer`, outside of the menus, and shows how much of the rest is over, 0 to
    /// 1. Global device pixels.
    void show(QPoint pointer, const QList<WindowServer::Entry> &menus, double rest);

    /// The place for a box of `size`: beside the pointer, clear of the menus and on one of the
    /// screens; the nearest such place. Global device pixels.
    static QPoint place(QPoint pointer, QSize size, const QList<QRect> &menus,
                        const QList<QRect> &screens);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    double m_rest = 0;
};
