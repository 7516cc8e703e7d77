#pragma once

#include "editing/shapes.h"
#include "editing/viewmapping.h"

#include <optional>

/// The five points of an arrow, for a line width: wing, tip, wing, the base's centre, the shaft's
/// start. Picture coordinates. One shorter than its head has the wings behind its start.
QPolygon CreateArrowPolygon(const QPoint &start, const QPoint &end, int width);

/// What the mouse is drawing: the points of one press, drag and release, and the shapes that come
/// of them. Positions are in the widget, in device pixels.
class DrawingGesture
{
public:
    /// The one moment in which the start is mapped to the picture: it stays there, whatever becomes
    /// of the zoom and the widget. What moves or is released without a press draws nothing.
    void press(QPoint position, const ViewMapping &view);
    /// The pointer moved with a button down. From here on there is a preview.
    void moveTo(QPoint position);
    /// Ends the drag, held within the widget at its end. The shape to record, if there is one.
    std::optional<Geometry> release(stateEnum tool, QPoint position, const ViewMapping &view,
                                    int lineWidth);
    /// Ends the drag with nothing to show for it. False when none was under way.
    bool drop();

    void extendLine(QPoint picturePoint);

    /// The shape as it would be now.
    std::optional<Geometry> preview(stateEnum tool, const ViewMapping &view, int lineWidth) const;

private:
    enum class Phase { Idle, Pressed, Dragging };

    Phase m_phase = Phase::Idle;
    QPoint m_start;        ///< in picture coordinates
    QPointF m_exactStart;  ///< the same, not cut to whole pixels
    QPoint m_end;
    QPolygon m_line;  ///< of the freehand line, in picture coordinates
};
