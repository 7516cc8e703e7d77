#pragma once

#include "editing/shapes.h"

#include <QRegion>

/// The tiles that drawing a shape may change, limited to a picture of `picture` pixels. The result
/// is tight: a thin line covers only the tiles along it, which are smaller if it is to be fine.
/// Picture coordinates.
QRegion coverage(const Geometry &geometry, const EditMsg &style, QSize picture,
                 bool isFine = false);

/// The tiles that may differ if one state of a shape is drawn instead of another.
QRegion changeOf(const EditEntry &before, const EditEntry &after, QSize picture);

/// Whether drawing the shape in its style changes no pixel of a picture of `picture` pixels.
/// A rectangle around the picture is outside, too; a shape without points is not.
bool liesOutside(const Geometry &geometry, const EditMsg &style, QSize picture);
