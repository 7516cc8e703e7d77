#pragma once

#include <QImage>

/// A part of the result of `image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)`,
/// with identical pixels, at the cost of this part only. `part` must be inside `size`; `image` must
/// be RGB32 or premultiplied ARGB32.
QImage scaledPart(const QImage &image, QSize size, const QRect &part);

/// The same part with every pixel of the image as a block of one colour, for one that grows.
QImage sharpPart(const QImage &image, QSize size, const QRect &part);
