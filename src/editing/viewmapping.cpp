#include "editing/viewmapping.h"

namespace {

int margin(int widget, int picture, float scale)
{
    const float shown = static_cast<float>(picture) * scale;
    const float space = static_cast<float>(widget) - shown;
    return space > 0 ? static_cast<int>(static_cast<double>(space) * 0.5) : 0;
}

int scaled(int length, float scale) { return static_cast<int>(static_cast<float>(length) * scale); }

}  // namespace

QPoint ViewMapping::margins() const
{
    return {margin(widget.width(), picture.width(), scale),
            margin(widget.height(), picture.height(), scale)};
}

QSize ViewMapping::shownSize() const
{
    return {scaled(picture.width(), scale), scaled(picture.height(), scale)};
}

QSize drawingSize(QSize viewport, QSize picture, float scale)
{
    return viewport.expandedTo(ViewMapping{.picture = picture, .scale = scale}.shownSize());
}
