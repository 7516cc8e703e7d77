#pragma once

#include <QImage>

/// A picture of a screen, every pixel of which tells its place and its screen.
inline QImage numbered(QSize size, int screen = 0)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb(x % 251, y % 251, screen * 50));
    }
    return image;
}
