#pragma once

#include <QPixmap>

/// A picture of one colour.
inline QPixmap solid(QSize size, const QColor &color = Qt::blue)
{
    QPixmap pixmap(size);
    pixmap.fill(color);
    return pixmap;
}
