#include "editing/viewmapping.h"

#include <cmath>
#include <utility>

namespace {

int margin(int widget, int picture, float scale)
{
    const float shown = static_cast<float>(picture) * scale;
    const float space = static_cast<float>(widget) - shown;
    return space > 0 ? static_cast<int>(static_cast<double>(space) * 0.5) : 0;
}

int scaled(int length, float scale) { return static_cast<int>(static_cast<float>(length) * scale); }

// A part of a picture of `from` pixels in one that is scaled to `to`, with the neighbours that the
// scaling mixes in.
QRect widened(const QRect &part, QSize from, QSize to)
{
    const auto span = [](int start, int length, int whole, int scaledWhole) {
        const double step = static_cast<double>(scaledWhole) / whole;
        const int reach = static_cast<int>(std::ceil(step)) + 2;
        return std::pair(static_cast<int>(std::floor(start * step)) - reach,
                         static_cast<int>(std::ceil((start + length) * step)) + reach);
    };
    const auto [left, right] = span(part.x(), part.width(), from.width(), to.width());
    const auto [top, bottom] = span(part.y(), part.height(), from.height(), to.height());
    return {left, top, right - left, bottom - top};
}

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
    return size == picture ? part : widened(part, picture, size) & QRect(QPoint(), size);
}

QRegion ViewMapping::fromScaled(const QRegion &part) const
{
    const QSize size = scaledSize();
    if (size == picture)
        return part;
    QRegion result;
    for (const QRect &rect : part)
        result += widened(rect, size, picture);
    return result;
}

// Halves are rounded up also for negative values:
// scrolling moves existing pixels by whole pixels, so the origin must not be off by one.
QPoint wholePixel(QPointF position)
{
    return {static_cast<int>(std::floor(position.x() + 0.5)),
            static_cast<int>(std::floor(position.y() + 0.5))};
}

QSize drawingSize(QSize viewport, QSize picture, float scale)
{
    return viewport.expandedTo(ViewMapping{.picture = picture, .scale = scale}.shownSize());
}
