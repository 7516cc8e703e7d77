#pragma once

#include "editing/shaperefs.h"
#include "editing/tools/tooltable.h"

/// A new one. May be called on any thread.
ShapeId nextShapeId();

/// A recorded shape; it is never changed once it is in a history.
struct EditEntry {
    Geometry geometry{};
    EditMsg style{};
    ShapeId id = nextShapeId();
};

/// What it lies in, without the width of its lines; the far edge is not included.
inline QRect boxOf(const EditEntry &shape) { return boxOf(shape.geometry, shape.style); }
/// Whether its look depends on other shapes of the picture.
bool isDerived(const EditEntry &shape);
/// The shape where a change of the picture brings it.
EditEntry mapped(const EditEntry &shape, const PictureMap &map);
