#include "editing/tools/pixelate.h"

std::optional<PixelateShape> PixelateShape::from(const Drag &drag)
{
    const std::optional<QRect> area = areaOf(drag);
    return area ? std::optional(PixelateShape{{{*area}}}) : std::nullopt;
}
