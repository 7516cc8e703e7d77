#pragma once

#include <QSize>

// Zooms are device pixels per pixel of the picture. `width` is the picture's, above 0.

/// How far wheel and box enlarge.
inline constexpr float s_largestZoom = 8;

/// One step up or down, as the two buttons go. Only the width counts for both limits, so that a
/// step down may enlarge a tiny picture, on purpose. A step up never makes a picture smaller.
float zoomedIn(float scale, int width);
float zoomedOut(float scale, int width);
/// By so many notches of the wheel, which need not be whole; some of them lead exactly from 1 to 2,
/// and none goes past the picture's own size without a stop there.
float zoomedBy(float scale, double notches, int width);
/// The zoom nearest to what is wanted that wheel and box reach.
float zoomWithin(float wanted, int width);
/// The largest one at which all of the picture is seen in a room, in device pixels.
float zoomToFit(QSize picture, QSize room);
