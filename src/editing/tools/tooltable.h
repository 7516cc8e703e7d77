#pragma once

#include "editing/tools/arrow.h"
#include "editing/tools/ellipse.h"
#include "editing/tools/freehand.h"
#include "editing/tools/hand.h"
#include "editing/tools/line.h"
#include "editing/tools/rectangle.h"
#include "editing/tools/text.h"

#include <array>
#include <span>
#include <variant>

template<typename... Shapes> struct ToolRows {
    using Geometry = std::variant<Shapes...>;
    static constexpr std::array<const Tool *, sizeof...(Shapes)> s_tools{&Shapes::tool...};
};

/// The table of tools, in the order of the strip: a row a tool, which is the name of its shape.
using ToolTable =
    ToolRows<EmptyShape, RectShape, EllipseShape, ArrowShape, PolylineShape, TextShape, LineShape>;

/// The shape of any tool, in picture coordinates.
using Geometry = ToolTable::Geometry;

/// All tools, in the order of the strip.
inline std::span<const Tool *const> allTools() { return ToolTable::s_tools; }
/// The tool with a number; the hand if there is none.
const Tool &toolOf(int state);
/// The shape that a tool makes of a drag; none if it makes none.
std::optional<Geometry> shapeFrom(stateEnum tool, const Drag &drag);
/// The shape at another place of the picture.
Geometry moved(const Geometry &geometry, QPoint by);
/// Whether a point of the picture lies on what is drawn, or at most `grace` pixels beside it.
bool hit(const Geometry &geometry, const EditMsg &style, QPointF point, qreal grace);
