#pragma once

#include "editing/shapes.h"

#include <QRegion>

/// An area, in whole tiles and within a picture of `picture` pixels, outside of which drawing the
/// shape changes nothing. It is close: a thin line takes the tiles along it.
QRegion coverage(const Geometry &geometry, const EditMsg &style, QSize picture);
