#include "editing/tools/tooltable.h"

#include <algorithm>

namespace {

template<typename... Shapes>
std::optional<Geometry> fromAny(std::variant<Shapes...> * /*type*/, stateEnum tool,
                                const Drag &drag)
{
    std::optional<Geometry> result;
    const auto tryOne = [&]<typename Shape>(const Shape *) {
        if (Shape::tool.state == tool)
            result = Shape::from(drag);
    };
    (tryOne(static_cast<const Shapes *>(nullptr)), ...);
    return result;
}

}  // namespace

const Tool &toolOf(int state)
{
    const auto tools = allTools();
    const auto found = std::find_if(tools.begin(), tools.end(),
                                    [state](auto *tool) { return tool->state == state; });
    return found == tools.end() ? EmptyShape::tool : **found;
}

const Tool &toolOf(const Geometry &geometry)
{
    return std::visit([]<typename Shape>(const Shape &) -> const Tool & { return Shape::tool; },
                      geometry);
}

std::optional<Geometry> shapeFrom(stateEnum tool, const Drag &drag)
{
    return fromAny(static_cast<Geometry *>(nullptr), tool, drag);
}

Geometry mapped(const Geometry &geometry, const EditMsg &style, const PictureMap &map)
{
    return std::visit([&](const auto &shape) -> Geometry { return shape.mapped(map, style); },
                      geometry);
}

QRect boxOf(const Geometry &geometry, const EditMsg &style)
{
    return std::visit([&](const auto &shape) { return shape.box(style); }, geometry);
}

QPolygon endsOf(const Geometry &geometry)
{
    const auto ends = [](const auto &shape) {
        if constexpr (requires { shape.ends(); })
            return shape.ends();
        return QPolygon();
    };
    return std::visit(ends, geometry);
}

Geometry withEnd(const Geometry &geometry, const EditMsg &style, qsizetype end, QPoint at)
{
    const auto changed = [&](const auto &shape) -> Geometry {
        if constexpr (requires { shape.ends(); })
            return shape.withEnd(end, at, style);
        return shape;
    };
    return std::visit(changed, geometry);
}

bool hit(const Geometry &geometry, const EditMsg &style, QPointF point, qreal grace)
{
    return std::visit([&](const auto &shape) { return shape.hit(point, grace, style); }, geometry);
}
