#include "editing/gesture.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

QPoint upperLeft(QPoint a, QPoint b) { return {std::min(a.x(), b.x()), std::min(a.y(), b.y())}; }

QSize extent(QPoint a, QPoint b) { return {std::abs(a.x() - b.x()), std::abs(a.y() - b.y())}; }

// The point nearest to `end` that lies above, beside or diagonally from `start`.
QPoint eighth(QPoint start, QPoint end)
{
    const QPoint way = end - start;
    const QPoint size(std::abs(way.x()), std::abs(way.y()));
    // The tangent of half of an eighth of a turn.
    constexpr double s_half = 0.41421356;
    if (size.y() < s_half * size.x())
        return {end.x(), start.y()};
    if (size.x() < s_half * size.y())
        return {start.x(), end.y()};
    const int side = (size.x() + size.y()) / 2;
    return start + QPoint(way.x() < 0 ? -side : side, way.y() < 0 ? -side : side);
}

// The corner opposite `start` of a square that reaches as far as `end` along its longer way.
QPoint square(QPoint start, QPoint end)
{
    const QPoint way = end - start;
    const int side = std::max(std::abs(way.x()), std::abs(way.y()));
    return start + QPoint(way.x() < 0 ? -side : side, way.y() < 0 ? -side : side);
}

Drag evened(Drag drag)
{
    if (!drag.isEven)
        return drag;
    if (drag.box) {
        const QPoint corner = square(drag.start, drag.end);
        drag.box = QRect(upperLeft(drag.start, corner), extent(drag.start, corner));
    }
    drag.end = eighth(drag.start, drag.end);
    drag.pointer = eighth(drag.start, drag.pointer);
    return drag;
}

QPolygon reversed(const QPolygon &points)
{
    return {QList<QPoint>(points.rbegin(), points.rend())};
}

}  // namespace

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
    const QPoint pointer = view.toPicture(position);
    // A reader would expect the picture's corner (0, 0) to be a valid point, but the first six
    // tools draw nothing from or to there, on purpose. Neither do they where a drag ends at its
    // start, however long it was.
    const bool isOfTheFirst = tool <= statePoly;
    const bool isNothing =
        isOfTheFirst ? m_start.isNull() || end.isNull() || m_start == end : m_start == pointer;
    if (isNothing && !toolOf(tool).isPlaced)
        return {};
    return shapeFrom(tool, evened({.start = m_start,
                                   .end = end,
                                   .pointer = pointer,
                                   .box = QRect(upperLeft(m_start, end), extent(m_start, end)),
                                   .line = m_line,
                                   .width = lineWidth,
                                   .isEven = m_isEven}));
}

QRect DrawingGesture::area(const ViewMapping &view) const
{
    if (m_phase != Phase::Dragging)
        return {};
    const QPoint end = view.toPicture(m_end);
    return QRect(upperLeft(m_start, end), extent(m_start, end)) & QRect(QPoint(), view.picture);
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
    // A freehand line is drawn from its last point, while a highlighter begins where it was
    // pressed.
    const bool isBackward = tool == statePoly;
    const bool hasCorners = !start.isNull() && !m_end.isNull();
    return shapeFrom(tool, evened({.start = m_start,
                                   .end = view.toPicture(m_end),
                                   .pointer = view.toPicture(m_end),
                                   .box = hasCorners ? std::optional(rect()) : std::nullopt,
                                   .line = isBackward ? reversed(m_line) : m_line,
                                   .width = lineWidth,
                                   .isEven = m_isEven}));
}
