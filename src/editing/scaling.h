#pragma once

#include <QImage>

/// A part of what `image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)` gives, to
/// the bit, at the cost of that part alone. `part` lies within `size`; `image` is
/// RGB32 or premultiplied ARGB32.
QImage scaledPart(const QImage &image, QSize size, const QRect &part);
