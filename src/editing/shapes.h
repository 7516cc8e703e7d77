#pragma once

#include <QColor>
#include <QFont>
#include <QList>
#include <QPolygon>
#include <QRect>
#include <QString>

#include <memory>
#include <variant>

/// The editor's tools. The same numbers mark the kind of a recorded shape.
enum stateEnum { stateMove, stateRect, stateEllipse, stateArrow, stateText, statePoly };

// The geometry of recorded shapes, in picture coordinates.

/// A record that takes a place in the history and draws nothing.
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
/// Wing, tip and wing of the head, then the shaft's end in the head and its start.
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

/// What a shape was drawn with.
struct EditMsg {
    int type = stateMove;  ///< a number of stateEnum
    int width = 1;         ///< line width in picture pixels; of no meaning for text
    QColor color{};
    QString text{};
    QFont font{};  ///< of a text, not scaled by the zoom
};

/// One recorded shape; never changed once it is in a history.
struct EditEntry {
    Geometry geometry{};
    EditMsg style{};
};

/// Shared by the editor's histories and those of every copy of a document, and freed with the last.
using EntryPtr = std::shared_ptr<const EditEntry>;

/// Recorded shapes, newest first.
using EditHistory = QList<EntryPtr>;
