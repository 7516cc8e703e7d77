#pragma once

#include "editing/history.h"

#include <QColor>
#include <QImage>
#include <QPainter>

#include <functional>

/// Draws one shape. The painter must have antialiasing on; its pen, brush and font are changed.
void drawShape(QPainter &painter, const Geometry &geometry, const EditMsg &style);
/// How far the shape's shadow lies beyond what the shape draws; 0 if it casts none.
int shadowReach(const Geometry &geometry, const EditMsg &style);

/// Sets each pixel of `target` to `color` if the pixel of `base` is fully transparent black, so
/// that shapes stay inside the outline of an ellipse or polygon grab. Pixels with alpha 0 and
/// another colour are kept. Both pictures have the same size.
QImage &cleanPixmap(const QImage &base, QImage &target, const QColor &color);
/// The same with a transparent colour for a part of two pictures in a pixmap's format.
void clearOutside(const QImage &base, QImage &target, const QRect &part);

/// Makes text on `image` use the screen's resolution instead of the resolution stored in a scanned
/// picture. Returns the image's previous dots per metre.
QPoint useScreenDots(QImage &image);

/// What a history makes of `picture`, without its shapes.
QImage changed(const QImage &picture, const Scene &scene);

/// Draws shapes over a changed picture, bottom to top, and cuts the result to the picture's own
/// outline.
QImage drawn(const QImage &picture, const QList<EntryPtr> &shapes,
             const QColor &background = {0, 0, 0, 0});

/// What a history makes of `picture`: its shapes, bottom to top, over what it has become, cut to
/// the picture's own outline. All rendering of a history uses this function.
QImage replayed(const QImage &picture, const EditHistory &history, const QColor &background);

/// The same in bands from top to bottom, so that the result need not be in memory as a whole. Each
/// band has the pixels of `replayed` with a transparent background, in a pixmap's format, and is
/// valid only during the call of `take`. Returns false if `take` did or if there was too little
/// memory. The picture's device pixel ratio must be 1, and it is `changed` already.
bool replayedInBands(const QImage &picture, const QList<EntryPtr> &shapes,
                     const std::function<bool(const QImage &band, int top)> &take);
/// The format of these bands.
QImage::Format pixmapFormat(const QImage &picture);
