#include "editing/tools/solid.h"

#include <QPainter>

std::optional<SolidShape> SolidShape::from(const Drag &drag)
{
    const std::optional<QRect> area = areaOf(drag);
    return area ? std::optional(SolidShape{{*area}}) : std::nullopt;
}

// A colour that lets something through would not cover.
void SolidShape::draw(QPainter &painter, const EditMsg &style) const
{
    painter.fillRect(bounds, QColor::fromRgb(style.color.rgb()));
}
