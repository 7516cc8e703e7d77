#pragma once

#include "editing/backdrop.h"
#include "editing/shapes.h"

#include <QColor>
#include <QList>
#include <QRect>
#include <QSize>

#include <memory>
#include <optional>
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
/// The shape comes to lie directly above another one; below all others if `above` is 0.
struct OrderShape {
    ShapeId id = 0;
    ShapeId above = 0;
};

// Changes of the picture itself. Its shapes go along.

/// What lies outside of `frame` is not part of the picture any more, and the frame's corner becomes
/// the origin.
struct CropPicture {
    QRect frame{};
};
/// The same, but where the frame reaches beyond the picture, this ground is added to it. It is
/// opaque.
struct ExtendPicture {
    QRect frame{};
    QColor ground{};
};
/// Turned clockwise by quarters of a turn.
struct TurnPicture {
    int quarters = 1;
};
/// Left and right are exchanged for Qt::Horizontal, else top and bottom.
struct MirrorPicture {
    Qt::Orientation axis = Qt::Horizontal;
};
struct ResizePicture {
    QSize size{};
};
/// The picture comes to lie on a ground. One that it lies on already, and that was the last change
/// of the picture, makes room for it; and just goes if there is none.
struct BackdropPicture {
    std::optional<Backdrop> backdrop{};
};
/// The blurred grounds on which the picture was put, whatever became of it since, get other
/// colours.
struct RecolorBackdrop {
    QList<QRgb> blots{};
};

/// Several changes, in their order, that are one step for the user.
struct SeveralChanges {
    QList<OperationPtr> changes{};
};

/// One step of the user's. What can't be done (a shape that isn't there, a frame outside of the
/// picture, a size that no picture may have) does nothing.
struct Operation {
    std::variant<AddShape, ReplaceShape, RemoveShape, OrderShape, CropPicture, ExtendPicture,
                 TurnPicture, MirrorPicture, ResizePicture, BackdropPicture, RecolorBackdrop,
                 SeveralChanges>
        change{};
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
/// Those of all parts of an operation.
QList<EntryPtr> shapesOf(const Operation &operation);
/// The shape that an operation does nothing but add; null for all others.
EntryPtr addedBy(const Operation &operation);
/// How many shapes a history knows, with those that were removed.
qsizetype shapeCount(const EditHistory &history);
/// Whether any of the shapes that a history comes to is a cover.
bool hasCovers(const EditHistory &history);
/// Whether it changes the picture itself.
bool changesPicture(const Operation &operation);

/// Whether a picture may be made as large as that.
bool isPictureSize(QSize size);

/// What a history comes to.
struct Scene {
    QSize size{};                   ///< of the picture as it is now
    QList<OperationPtr> picture{};  ///< what was done to it, oldest first
    QRect onBackdrop{};             ///< where it lies on its ground, if that came last; else null
    /// Where that is now which was put on a blurred ground first; none without such a ground.
    std::optional<QRect> onBlurred{};
    QList<EntryPtr> shapes{};  ///< bottom to top, in its coordinates
    /// Those whose look depends on the others of their kind, in the order in which they were added.
    QList<ShapeId> derived{};
};
Scene sceneOf(const EditHistory &history, QSize picture);
/// What lies around the picture, if that came last; else none.
std::optional<Backdrop> backdropOf(const Scene &scene);

/// Whether the same was done to the picture itself.
bool isSamePicture(const Scene &a, const Scene &b);

/// What becomes of a scene by further operations, oldest first.
Scene applied(Scene scene, const QList<OperationPtr> &steps);
