#pragma once

#include "editing/tools/tooltable.h"

#include <memory>

/// Names a shape for as long as the program runs: all states of one shape have the same, and no
/// other shape has it.
using ShapeId = quint64;
/// May be called on any thread.
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

/// Shared by histories and everything that shows them; the last of them frees the entry.
using EntryPtr = std::shared_ptr<const EditEntry>;
