#pragma once

class QImage;
class QPainterPath;

/// Makes all pixels outside of the shape fully transparent. Pixel (x, y) is inside if
/// QPainterPath::contains() is true for the point (x, y); the result is the same for each pixel but
/// is computed about a hundred times faster. A picture without an alpha channel is converted to
/// Format_ARGB32_Premultiplied. `shape` is in picture coordinates.
void cutToShape(QImage &picture, const QPainterPath &shape);
