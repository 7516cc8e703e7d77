#pragma once

#include <QPoint>
#include <QPolygonF>
#include <QRect>
#include <QSize>
#include <Qt>

#include <optional>

/// The polygon that the user marks with the pointer and the keys, point by point or freehand.
///
/// All values are device pixels in overlay coordinates.
class PolygonSelection
{
public:
    /// What the overlay has to do after a key, besides showing the changed points.
    struct KeyResult {
        bool changeViewMode = false;
        bool finished = false;            ///< the polygon is complete
        std::optional<QPoint> pointer{};  ///< the position to which the pointer must be moved
    };

    /// While Command alone is held, moves `p` to the nearest of eight directions from the last
    /// vertex, at the same distance. Otherwise, and exactly between two directions, returns `p`.
    QPoint AdjustPoint(const QPoint &p, Qt::KeyboardModifiers modifiers) const;

    /// The size of the drawing surface. A point on its last row or column is set at the edge
    /// beyond.
    void setSurface(QSize surface) { m_surface = surface; }

    /// The left button alone was pressed. Returns true if this closes the polygon, by a click near
    /// its first vertex. `pos` is the event's position, `pointer` the present one.
    bool press(QPoint pos, QPoint pointer, Qt::KeyboardModifiers modifiers);
    /// Any button was released.
    void release(QPoint pos, Qt::KeyboardModifiers modifiers);
    void move(QPoint pos, Qt::KeyboardModifiers modifiers);
    KeyResult key(int key, Qt::KeyboardModifiers modifiers);
    /// Completes the polygon. Returns false if it has fewer than three vertices or if they lie on a
    /// line.
    bool finish();
    void deletelastpoint();
    void clear() { m_points.clear(); }
    /// Marks a polygon by its vertices, in the order in which they were set.
    void mark(const QPolygonF &vertices);

    /// The points, newest first. The first one is the end of the rubber line and not a vertex yet.
    const QPolygonF &points() const { return m_points; }
    bool canFinish() const { return m_points.size() >= s_fewestPoints && !isFlat(); }
    bool isPressed() const { return m_state == State::Pressed; }

    /// The points to draw as an open line.
    QPolygonF line() const { return m_closing ? QPolygonF() : m_points; }
    /// The top left corner of the circle that indicates that a click would close the polygon.
    std::optional<QPoint> closeMark(QPoint pointer) const;

    /// The bounding box of the points, which is the part to grab; may be empty.
    QRect box() const;
    /// The polygon in the coordinates of that box.
    QPolygonF polygonInBox() const;

    static float distance_PtoP(const QPointF &a, const QPointF &b);

private:
    enum class State { Idle, Pressed, Busy };

    static constexpr qsizetype s_fewestPoints = 4;  // three vertices and the end of the rubber line

    QPoint placed(QPoint pos, Qt::KeyboardModifiers modifiers) const;
    bool isFlat() const;
    bool endIsLastVertex() const;
    bool isNearFirst(QPoint pointer) const;
    void moveEnd(int axis, double to, KeyResult &result);

    QSize m_surface{0, 0};
    QPolygonF m_points;
    State m_state = State::Idle;
    bool m_closing = false;
    bool m_canClose = false;  // a button has been released since the start
};
