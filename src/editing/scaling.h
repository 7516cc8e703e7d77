#pragma once

#include <QImage>

/// A part of the result of `image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)`,
/// with identical pixels, at the cost of this part only. `part` must be inside `size`; `image` must
/// be RGB32 or premultiplied ARGB32.
QImage scaledPart(const QImage &image, QSize size, const QRect &part);
