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

std::optional<Geometry> shapeFrom(stateEnum tool, const Drag &drag)
{
    return fromAny(static_cast<Geometry *>(nullptr), tool, drag);
}

Geometry moved(const Geometry &geometry, QPoint by)
{
    return std::visit([by](const auto &shape) -> Geometry { return shape.moved(by); }, geometry);
}

bool hit(const Geometry &geometry, const EditMsg &style, QPointF point, qreal grace)
{
    return std::visit([&](const auto &shape) { return shape.hit(point, grace, style); }, geometry);
}
