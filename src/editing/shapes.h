#pragma once

#include <QColor>
#include <QFont>
#include <QList>
#include <QPolygon>
#include <QRect>
#include <QString>

#include <memory>
#include <variant>

/// The editor's tools. The same numbers are used for the kinds of recorded shapes.
enum stateEnum { stateMove, stateRect, stateEllipse, stateArrow, stateText, statePoly };

// Geometries of recorded shapes, in picture coordinates.

/// An entry of the history that draws nothing.
struct EmptyShape {
};
/// A closed outline of five points.
struct RectShape {
    QPolygon outline{};
};
/// The ellipse inside `bounds`.
struct EllipseShape {
    QRect bounds{};
};
/// The points of the head: wing, tip and wing; then the shaft's end inside the head and its start.
struct ArrowShape {
    QPolygon points{};
};
struct PolylineShape {
    QPolygon points{};
};
/// Text whose top left corner is at `position`.
struct TextShape {
    QPoint position{};
};

using Geometry =
    std::variant<EmptyShape, RectShape, EllipseShape, ArrowShape, PolylineShape, TextShape>;

/// The style with which a shape was drawn.
struct EditMsg {
    int type = stateMove;  ///< a value of stateEnum
    int width = 1;         ///< line width in picture pixels; not used for text
    QColor color{};
    QString text{};
    QFont font{};  ///< font of a text, without the zoom
};

/// A recorded shape; it is never changed once it is in a history.
struct EditEntry {
    Geometry geometry{};
    EditMsg style{};
};

/// Shared by the editor's histories and all copies of a document; the last of them frees the entry.
using EntryPtr = std::shared_ptr<const EditEntry>;

/// Recorded shapes, newest first.
using EditHistory = QList<EntryPtr>;
