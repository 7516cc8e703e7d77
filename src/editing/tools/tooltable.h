#pragma once

#include "editing/tools/arrow.h"
#include "editing/tools/blur.h"
#include "editing/tools/crop.h"
#include "editing/tools/ellipse.h"
#include "editing/tools/freehand.h"
#include "editing/tools/hand.h"
#include "editing/tools/highlighter.h"
#include "editing/tools/line.h"
#include "editing/tools/marker.h"
#include "editing/tools/measure.h"
#include "editing/tools/pipette.h"
#include "editing/tools/pixelate.h"
#include "editing/tools/readtext.h"
#include "editing/tools/rectangle.h"
#include "editing/tools/select.h"
#include "editing/tools/solid.h"
#include "editing/tools/spotlight.h"
#include "editing/tools/text.h"

#include <array>
#include <span>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>

/// A tool that draws has a shape.
template<typename T>
concept DrawingTool = requires(T shape)
{
    shape.drawnPoints();
};

template<typename... Tools> struct ToolRows {
    static constexpr std::array<const Tool *, sizeof...(Tools)> s_tools{&Tools::tool...};

    template<typename T>
    using Row = std::conditional_t<DrawingTool<T>, std::tuple<T>, std::tuple<>>;
    template<typename... Shapes> static std::variant<Shapes...> anyOf(std::tuple<Shapes...>);
    using Geometry = decltype(anyOf(std::tuple_cat(std::declval<Row<Tools>>()...)));
};

/// The table of tools, in the order of the strip: a row a tool, which is the name of its struct.
using ToolTable =
    ToolRows<EmptyShape, RectShape, EllipseShape, ArrowShape, PolylineShape, TextShape, LineShape,
             SelectTool, HighlighterShape, MarkerShape, SpotlightShape, BlurShape, PixelateShape,
             SolidShape, MeasureShape, CropTool, PipetteTool, ReadTextTool>;

/// The shape of any tool, in picture coordinates.
using Geometry = ToolTable::Geometry;

/// All tools, in the order of the strip.
inline std::span<const Tool *const> allTools() { return ToolTable::s_tools; }
/// The tool with a number; the hand if there is none.
const Tool &toolOf(int state);
/// The tool whose shape it is.
const Tool &toolOf(const Geometry &geometry);
/// The shape that a tool makes of a drag; none if it makes none.
std::optional<Geometry> shapeFrom(stateEnum tool, const Drag &drag);
/// The shape where a change of the picture brings it; `style` has been mapped already.
Geometry mapped(const Geometry &geometry, const EditMsg &style, const PictureMap &map);
/// What a shape lies in, without the width of its lines; the far edge is not included.
QRect boxOf(const Geometry &geometry, const EditMsg &style);
/// The points by which the user takes hold of it; none if it is resized by its box.
QPolygon endsOf(const Geometry &geometry);
/// The shape with one of these points elsewhere.
Geometry withEnd(const Geometry &geometry, const EditMsg &style, qsizetype end, QPoint at);
/// Whether a point of the picture lies on what is drawn, or at most `grace` pixels beside it.
bool hit(const Geometry &geometry, const EditMsg &style, QPointF point, qreal grace);
