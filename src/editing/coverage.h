#pragma once

#include "editing/shapes.h"

#include <QRegion>

/// An area, in whole tiles and within a picture of `picture` pixels, outside of which drawing the
/// shape changes nothing. It is close: a thin line takes the tiles along it.
QRegion coverage(const Geometry &geometry, const EditMsg &style, QSize picture);

/// Whether nothing of what drawing the shape changes, its line width included, lies in a picture of
/// `picture` pixels. A shape around the picture is outside too; one without points is not.
bool liesOutside(const Geometry &geometry, const EditMsg &style, QSize picture);
