#include "editing/viewmapping.h"

#include <cmath>

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

QSize ViewMapping::scaledSize() const
{
    const QSize room = shownSize();
    return room.isEmpty() || picture.isEmpty()
               ? QSize()
               : picture.scaled(room, Qt::KeepAspectRatio).expandedTo({1, 1});
}

QRect ViewMapping::shown() const
{
    const QSize size = scaledSize();
    return size.isEmpty() ? QRect() : QRect(margins(), size);
}

QPoint ViewMapping::toPicture(QPoint position) const
{
    const QPoint inside = position - margins();
    return {static_cast<int>(static_cast<float>(inside.x()) / scale),
            static_cast<int>(static_cast<float>(inside.y()) / scale)};
}

QPointF ViewMapping::toPictureExactly(QPoint position) const
{
    return QPointF(position - margins()) / scale;
}

QPointF ViewMapping::toWidget(QPointF picturePoint) const
{
    return picturePoint * scale + margins();
}

QRect ViewMapping::toScaled(const QRect &part) const
{
    const QSize size = scaledSize();
    if (size == picture)
        return part;
    const auto span = [](int start, int length, int from, int to, int &first, int &end) {
        const double step = static_cast<double>(to) / from;
        const int reach = static_cast<int>(std::ceil(step)) + 2;
        first = static_cast<int>(std::floor(start * step)) - reach;
        end = static_cast<int>(std::ceil((start + length) * step)) + reach;
    };
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;
    span(part.x(), part.width(), picture.width(), size.width(), left, right);
    span(part.y(), part.height(), picture.height(), size.height(), top, bottom);
    return QRect(left, top, right - left, bottom - top) & QRect(QPoint(), size);
}

QSize drawingSize(QSize viewport, QSize picture, float scale)
{
    return viewport.expandedTo(ViewMapping{.picture = picture, .scale = scale}.shownSize());
}
