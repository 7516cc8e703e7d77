#pragma once

#include <QPoint>
#include <QPolygonF>
#include <QRect>
#include <QSize>
#include <Qt>

#include <optional>

/// The polygon that the pointer and the keys mark on the desktop, point by point or freehand.
///
/// Everything is in device pixels, in overlay coordinates.
class PolygonSelection
{
public:
    /// What a key asks of the overlay, beyond what it did to the points.
    struct KeyResult {
        bool changeViewMode = false;
        bool finished = false;            ///< the polygon is complete
        std::optional<QPoint> pointer{};  ///< where the pointer has to be put
    };

    /// The point in the nearest of eight directions from the vertex set last, at the distance that
    /// `p` has, while Command alone is held; otherwise `p`, and half way between two directions,
    /// too.
    QPoint AdjustPoint(const QPoint &p, Qt::KeyboardModifiers modifiers) const;

    /// The left button alone went down. True when that closed the polygon, by a click near its
    /// first vertex. `pointer` is where the pointer is now, and `pos` where it was at the event.
    bool press(QPoint pos, QPoint pointer, Qt::KeyboardModifiers modifiers);
    /// A button went up, whichever it was.
    void release(QPoint pos, Qt::KeyboardModifiers modifiers);
    void move(QPoint pos, Qt::KeyboardModifiers modifiers);
    /// `surface` is the size of what is drawn on.
    KeyResult key(int key, Qt::KeyboardModifiers modifiers, QSize surface);
    /// Completes the polygon with the vertices set so far; false when they are fewer than three, or
    /// lie on a line.
    bool finish();
    void deletelastpoint();
    void clear() { m_points.clear(); }

    /// The newest first. The first one is the end of the rubber segment, and no vertex yet.
    const QPolygonF &points() const { return m_points; }
    bool canFinish() const { return m_points.size() >= s_fewestPoints && !isFlat(); }
    bool isPressed() const { return m_state == State::Pressed; }

    /// What is to be drawn as an open line.
    QPolygonF line() const { return m_closing ? QPolygonF() : m_points; }
    /// The corner of the circle that tells that a click would close the polygon.
    std::optional<QPoint> closeMark(QPoint pointer) const;

    /// The picture to be taken: the box around the points, which may be empty.
    QRect box() const;
    /// The polygon in that picture's coordinates.
    QPolygonF polygonInBox() const;

    static float distance_PtoP(const QPointF &a, const QPointF &b);

private:
    enum class State { Idle, Pressed, Busy };

    static constexpr qsizetype s_fewestPoints = 4;  // three vertices and the rubber end

    bool isFlat() const;
    bool endIsLastVertex() const;
    bool isNearFirst(QPoint pointer) const;
    void moveEnd(int axis, double to, KeyResult &result);

    QPolygonF m_points;
    State m_state = State::Idle;
    bool m_closing = false;
    bool m_canClose = false;  // a button has been released before
};
