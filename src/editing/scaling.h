#pragma once

#include <QImage>

/// A part of what `image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)` gives, to
/// the bit, at the cost of that part alone. `part` lies within `size`; `image` has 32 bits a pixel.
QImage scaledPart(const QImage &image, QSize size, const QRect &part);
