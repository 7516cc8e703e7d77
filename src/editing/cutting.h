#pragma once

class QImage;
class QPainterPath;

/// Makes every pixel fully transparent that lies outside the shape. Pixel (x, y) lies inside if
/// QPainterPath::contains() says so of the point (x, y); the outcome is the same for each pixel,
/// and a hundred times sooner there. A picture without an alpha channel is converted to
/// Format_ARGB32_Premultiplied. `shape` is in picture coordinates.
void cutToShape(QImage &picture, const QPainterPath &shape);
