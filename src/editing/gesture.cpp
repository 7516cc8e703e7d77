#include "editing/gesture.h"

#include "base/planegeometry.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

QPoint upperLeft(QPoint a, QPoint b) { return {std::min(a.x(), b.x()), std::min(a.y(), b.y())}; }

QSize extent(QPoint a, QPoint b) { return {std::abs(a.x() - b.x()), std::abs(a.y() - b.y())}; }

RectShape rectangle(const QRect &rect) { return {QPolygon(rect, true)}; }

QPolygon reversed(const QPolygon &points)
{
    return {QList<QPoint>(points.rbegin(), points.rend())};
}

}  // namespace

QPolygon CreateArrowPolygon(const QPoint &start, const QPoint &end, int width)
{
    const auto angle = static_cast<float>(CalAngle_Deg(start, end));
    const int half = static_cast<int>(width * 0.5);
    const int wing = 3 * half + 5;
    const double length = DistanceTo(start, end) - static_cast<float>(6 * half + 10);
    const auto at = [&](double along, double across) {
        return (QPointF(start) + RotateByDeg(angle, {along, across}, {})).toPoint();
    };
    return QPolygon({at(length, wing), end, at(length, -wing), at(length, 0), at(half, 0)});
}

void DrawingGesture::press(QPoint position, const ViewMapping &view)
{
    m_phase = Phase::Pressed;
    m_line.clear();
    m_start = view.toPicture(position);
    m_exactStart = view.toPictureExactly(position);
}

void DrawingGesture::moveTo(QPoint position)
{
    if (m_phase == Phase::Idle)
        return;
    m_phase = Phase::Dragging;
    m_end = position;
}

void DrawingGesture::extendLine(QPoint picturePoint)
{
    if (m_phase != Phase::Idle)
        m_line.append(picturePoint);
}

bool DrawingGesture::drop()
{
    m_line.clear();
    return std::exchange(m_phase, Phase::Idle) != Phase::Idle;
}

std::optional<Geometry> DrawingGesture::release(stateEnum tool, QPoint position,
                                                const ViewMapping &view, int lineWidth)
{
    if (std::exchange(m_phase, Phase::Idle) == Phase::Idle)
        return {};
    const QPoint end = view.toPicture({std::clamp(position.x(), 0, view.widget.width()),
                                       std::clamp(position.y(), 0, view.widget.height())});
    // A reader would expect the picture's corner (0, 0) to be a valid point, but it draws nothing,
    // on purpose, and neither does a drag that ends at its start, however long it was.
    if (m_start.isNull() || end.isNull() || m_start == end)
        return {};
    const QRect rect(upperLeft(m_start, end), extent(m_start, end));
    switch (tool) {
    case stateRect:
        return rectangle(rect);
    case stateEllipse:
        return EllipseShape{rect};
    case stateArrow:
        return ArrowShape{CreateArrowPolygon(m_start, end, lineWidth)};
    case statePoly:
        return PolylineShape{m_line};
    case stateMove:
    case stateText:
        break;
    }
    return {};
}

std::optional<Geometry> DrawingGesture::preview(stateEnum tool, const ViewMapping &view,
                                                int lineWidth) const
{
    if (m_phase != Phase::Dragging)
        return {};
    const QPoint start = view.toWidget(m_exactStart).toPoint();
    // A reader would expect both corners to be truncated to whole pixels, as in release(), but here
    // one corner and the size are, on purpose.
    const auto rect = [&] {
        const QPoint corner = view.toPicture(upperLeft(start, m_end));
        const QSize size = extent(start, m_end);
        const auto length = [&](int pixels) {
            return static_cast<int>(static_cast<float>(pixels) / view.scale);
        };
        return QRect(corner, QSize(length(size.width()), length(size.height())));
    };
    const bool hasCorners = !start.isNull() && !m_end.isNull();
    switch (tool) {
    case stateRect:
        if (hasCorners)
            return rectangle(rect());
        break;
    case stateEllipse:
        if (hasCorners)
            return EllipseShape{rect()};
        break;
    case stateArrow:
        return ArrowShape{CreateArrowPolygon(m_start, view.toPicture(m_end), lineWidth)};
    case statePoly:
        return PolylineShape{reversed(m_line)};
    case stateMove:
    case stateText:
        break;
    }
    return {};
}
