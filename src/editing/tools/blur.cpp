#include "editing/tools/blur.h"

std::optional<BlurShape> BlurShape::from(const Drag &drag)
{
    const std::optional<QRect> area = areaOf(drag);
    return area ? std::optional(BlurShape{{{*area}}}) : std::nullopt;
}
