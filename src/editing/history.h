#pragma once

#include "editing/shapes.h"

#include <QList>
#include <QRect>
#include <QSize>

#include <memory>
#include <utility>
#include <variant>

// What the user has done to a picture, as operations. Each is in the coordinates of the picture as
// it was when the operation was recorded, and names shapes by their ids. None is changed once it is
// recorded, so histories share them.

struct Operation;
using OperationPtr = std::shared_ptr<const Operation>;

/// The shape comes to lie on top of all others.
struct AddShape {
    EntryPtr shape{};
};
/// The shape takes the place of the one with the same id.
struct ReplaceShape {
    EntryPtr shape{};
};
struct RemoveShape {
    ShapeId id = 0;
};
/// What lies outside of `frame` is not part of the picture any more, and the frame's corner becomes
/// the origin.
struct CropPicture {
    QRect frame{};
};
/// Several changes, in their order, that are one step for the user.
struct SeveralChanges {
    QList<OperationPtr> changes{};
};

/// One step of the user's. What can't be done (a shape that isn't there, a frame outside of the
/// picture) does nothing.
struct Operation {
    std::variant<AddShape, ReplaceShape, RemoveShape, CropPicture, SeveralChanges> change{};
};

/// Recorded operations, newest first.
using EditHistory = QList<OperationPtr>;

template<typename Change> OperationPtr operation(Change change)
{
    return std::make_shared<const Operation>(Operation{std::move(change)});
}
/// The operation that adds a new shape.
OperationPtr adding(EditEntry shape);
/// The shape that an operation adds or brings to another state; null for operations that do
/// neither.
EntryPtr shapeOf(const Operation &operation);
/// The shape that an operation does nothing but add; null for all others.
EntryPtr addedBy(const Operation &operation);

/// What a history comes to.
struct Scene {
    QRect frame{};             ///< what is left of the picture, in the whole picture's coordinates
    QList<EntryPtr> shapes{};  ///< bottom to top; the frame's corner is their origin
};
Scene sceneOf(const EditHistory &history, QSize picture);
