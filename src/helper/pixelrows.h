#pragma once

#include <QImage>
#include <QRect>

#include <algorithm>

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

/// The smallest rectangle that holds all pixels in which two pictures of one size differ; empty
/// where they are equal.
inline QRect differingPart(const QImage &before, const QImage &after)
{
    const QImage earlier = withPixels(before);
    const QImage later = withPixels(after);
    int left = later.width();
    int right = -1;
    int top = later.height();
    int bottom = -1;
    for (int y = 0; y < later.height(); ++y) {
        const QRgb *was = pixelRow(earlier, y);
        const QRgb *is = pixelRow(later, y);
        const auto first = std::mismatch(is, is + later.width(), was).first;
        if (first == is + later.width())
            continue;
        int last = later.width() - 1;
        while (is[last] == was[last])
            --last;
        left = std::min(left, static_cast<int>(first - is));
        right = std::max(right, last);
        top = std::min(top, y);
        bottom = y;
    }
    return {QPoint(left, top), QPoint(right, bottom)};
}
