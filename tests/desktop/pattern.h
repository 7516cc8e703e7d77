#pragma once

#include <QImage>

/// A picture in which no two pixels within 256 of each other are alike, and that no shift, scale or
/// blend leaves as it was.
inline QImage pattern(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            line[x] =
                qRgb(x & 0xff, y & 0xff, ((x >> 8) * 16 + (y >> 8) * 64 + ((x + y) & 7)) & 0xff);
    }
    return image;
}
