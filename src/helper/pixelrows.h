#pragma once

#include <QImage>

/// Rows of pixels of 32 bits.

/// A picture whose pixels have 32 bits: itself, or a copy.
inline QImage withPixels(const QImage &picture)
{
    switch (picture.format()) {
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied:
        return picture;
    default:
        return picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }
}

/// The bits of a pixel that can be seen: the fourth byte of RGB32 is anything.
inline QRgb visibleBits(const QImage &picture)
{
    return picture.format() == QImage::Format_RGB32 ? RGB_MASK : 0xffffffff;
}

inline const QRgb *pixelRow(const QImage &picture, int y)
{
    return reinterpret_cast<const QRgb *>(picture.constScanLine(y));
}
