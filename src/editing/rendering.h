#pragma once

#include "editing/shapes.h"

#include <QColor>
#include <QImage>
#include <QPainter>

#include <functional>

class QPainterPath;
class QPolygonF;

/// Draws an arrow; fewer than three points draw nothing.
void DrawArrow(QPainter &painter, const QColor &color, int width, const QPolygon &arrow);
/// Strokes a rectangle of five points; fewer draw nothing.
void DrawRect(QPainter &painter, const QColor &color, int width, const QPolygon &rect);

/// Draws one shape on a painter that smooths edges and has no brush. Its pen and font are changed.
void drawShape(QPainter &painter, const Geometry &geometry, const EditMsg &style);

/// The place that a text takes in the picture, with the painter's font.
QRect textBounds(QPainter &painter, QPoint position, const QString &text);

/// Sets each pixel of `target` to `color` where `base`, of the same size, is fully transparent
/// black: no shape leaves the outline of an ellipse or polygon grab. Pixels with alpha 0 and a
/// colour in them stay.
QImage &cleanPixmap(const QImage &base, QImage &target, const QColor &color);
/// The same with no colour, and in a part only, for two pictures in a pixmap's format.
void clearOutside(const QImage &base, QImage &target, const QRect &part);

/// Lets text on `image` count in the screen's dots, and not in those that a scanned picture tells
/// of. Gives back what the image told.
QPoint useScreenDots(QImage &image);

/// The one way from a history to pixels: `picture` with all shapes over it, the oldest first, cut
/// to the picture's own outline.
QImage replayed(const QImage &picture, const EditHistory &history, const QColor &background);

/// The same from top to bottom in bands, so that it need not lie in memory whole. Each has the
/// pixels that `replayed` gives for the picture as a pixmap holds it, with nothing where the
/// picture ends, and is gone when `take` returns. False when `take` was false or there was too
/// little memory. The picture's pixel ratio is 1.
bool replayedInBands(const QImage &picture, const EditHistory &history,
                     const std::function<bool(const QImage &band, int top)> &take);
/// The format of such bands.
QImage::Format pixmapFormat(const QImage &picture);
