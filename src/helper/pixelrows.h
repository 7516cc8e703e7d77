#pragma once

#include <QImage>
#include <QRect>

#include <algorithm>
#include <utility>

/// Access to rows of 32-bit pixels.

/// The picture itself if it has 32 bits per pixel, else a converted copy.
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

/// The bits of a pixel that are visible: the fourth byte of RGB32 is undefined.
inline QRgb visibleBits(const QImage &picture)
{
    return picture.format() == QImage::Format_RGB32 ? RGB_MASK : 0xffffffff;
}

inline const QRgb *pixelRow(const QImage &picture, int y)
{
    return reinterpret_cast<const QRgb *>(picture.constScanLine(y));
}

/// The first and last column in which a row of two pictures of the same size differs. If it is
/// equal, the last column is less than the first.
inline std::pair<int, int> differingColumns(const QImage &before, const QImage &after, int y)
{
    const QRgb *was = pixelRow(before, y);
    const QRgb *is = pixelRow(after, y);
    const int width = after.width();
    const int first = static_cast<int>(std::mismatch(is, is + width, was).first - is);
    int last = first < width ? width - 1 : first - 1;
    while (last > first && is[last] == was[last])
        --last;
    return {first, last};
}

/// The bounding rectangle of all pixels in which two pictures of the same size differ; empty if
/// they are equal.
inline QRect differingPart(const QImage &before, const QImage &after)
{
    const QImage earlier = withPixels(before);
    const QImage later = withPixels(after);
    QRect part;
    for (int y = 0; y < later.height(); ++y) {
        const auto [first, last] = differingColumns(earlier, later, y);
        if (first <= last)
            part |= QRect(QPoint(first, y), QPoint(last, y));
    }
    return part;
}
