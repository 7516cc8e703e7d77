#pragma once

#include "editing/shapes.h"

#include <QColor>
#include <QImage>
#include <QPainter>

#include <functional>

class QPainterPath;
class QPolygonF;

/// Draws an arrow; nothing if it has fewer than three points.
void DrawArrow(QPainter &painter, const QColor &color, int width, const QPolygon &arrow);
/// Draws the outline of a rectangle of five points; nothing if it has fewer.
void DrawRect(QPainter &painter, const QColor &color, int width, const QPolygon &rect);

/// Draws one shape. The painter must have antialiasing on and no brush; its pen and font are
/// changed.
void drawShape(QPainter &painter, const Geometry &geometry, const EditMsg &style);

/// The rectangle of a text in the picture, with the painter's font.
QRect textBounds(QPainter &painter, QPoint position, const QString &text);

/// Sets each pixel of `target` to `color` if the pixel of `base` is fully transparent black, so
/// that shapes stay inside the outline of an ellipse or polygon grab. Pixels with alpha 0 and
/// another colour are kept. Both pictures have the same size.
QImage &cleanPixmap(const QImage &base, QImage &target, const QColor &color);
/// The same with a transparent colour for a part of two pictures in a pixmap's format.
void clearOutside(const QImage &base, QImage &target, const QRect &part);

/// Makes text on `image` use the screen's resolution instead of the resolution stored in a scanned
/// picture. Returns the image's previous dots per metre.
QPoint useScreenDots(QImage &image);

/// Draws all shapes over `picture`, oldest first, and cuts the result to the picture's own outline.
/// All rendering of a history uses this function.
QImage replayed(const QImage &picture, const EditHistory &history, const QColor &background);

/// The same in bands from top to bottom, so that the result need not be in memory as a whole. Each
/// band has the pixels of `replayed` with a transparent background, in a pixmap's format, and is
/// valid only during the call of `take`. Returns false if `take` did or if there was too little
/// memory. The picture's device pixel ratio must be 1.
bool replayedInBands(const QImage &picture, const EditHistory &history,
                     const std::function<bool(const QImage &band, int top)> &take);
/// The format of these bands.
QImage::Format pixmapFormat(const QImage &picture);
