#pragma once

#include "platform/windowcatalogue.h"

#include <QWidget>

/// A thin ring beside the pointer that fills while the pointer rests on a menu. It gets no mouse or
/// key events and never covers a menu.
class DwellRing : public QWidget
{
    Q_OBJECT
public:
    DwellRing();

    /// Shows the ring near `pointer`, outside of the menus, in global device pixels. `rest` is the
    /// filled part, 0 to 1.
    void show(QPoint pointer, const QList<WindowCatalogue::Entry> &menus, double rest);

    /// The top left corner for a box of `size` that is beside the pointer, outside of the menus and
    /// on one of the screens; the nearest such position. Global device pixels.
    static QPoint place(QPoint pointer, QSize size, const QList<QRect> &menus,
                        const QList<QRect> &screens);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    double m_rest = 0;
};
