#pragma once

#include "editing/shapes.h"
#include "editing/viewmapping.h"

#include <optional>

/// What the mouse is drawing: the points of one press, drag and release, and the resulting shapes.
/// Positions are widget coordinates in device pixels.
class DrawingGesture
{
public:
    /// Maps the start to the picture, once: it stays there even if the zoom or the widget changes.
    /// A move or release without a press draws nothing.
    void press(QPoint position, const ViewMapping &view);
    /// The pointer moved with a button down. From now on there is a preview.
    void moveTo(QPoint position);
    /// Whether Shift is held, which makes shapes even: squares, circles, eighths of a turn.
    void setEven(bool isEven) { m_isEven = isEven; }
    /// Ends the drag; its end is limited to the widget. Returns the shape to record, if there is
    /// one.
    std::optional<Geometry> release(stateEnum tool, QPoint position, const ViewMapping &view,
                                    int lineWidth);
    /// Ends the drag without a shape. Returns false if there was no drag.
    bool drop();

    /// Whether there was a press and no release yet.
    bool isUnderWay() const { return m_phase != Phase::Idle; }

    /// The rectangle that is being dragged, in picture coordinates, as far as it lies in the
    /// picture; null if there is none.
    QRect area(const ViewMapping &view) const;

    /// Adds a point to the freehand line, in picture coordinates. Ignored without a press.
    void extendLine(QPoint picturePoint);

    /// The shape if the drag ended now.
    std::optional<Geometry> preview(stateEnum tool, const ViewMapping &view, int lineWidth) const;

private:
    enum class Phase { Idle, Pressed, Dragging };

    Phase m_phase = Phase::Idle;
    QPoint m_start;        ///< in picture coordinates
    QPointF m_exactStart;  ///< the same without rounding
    QPoint m_end;
    bool m_isEven = false;
    QPolygon m_line;  ///< the freehand line, in picture coordinates
};
