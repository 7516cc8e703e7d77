#pragma once

#include "editing/history.h"

#include <QLineF>
#include <QList>
#include <QPointF>
#include <QRect>

#include <optional>

/// Which shapes of a picture are chosen, and what a drag with the pointer does to them. It knows no
/// window: positions and lengths are picture coordinates, and what is told of the screen comes
/// along.
class Selection
{
public:
    /// The pointer at a press.
    struct Press {
        QPointF at{};
        EntryPtr under{};   ///< the topmost shape there; null for none
        bool adds = false;  ///< Shift is held: what is chosen stays chosen
        qreal reach = 0;    ///< how far from its middle a handle answers
    };
    enum class Grip {
        None,
        Shape,
        End,
        TopLeft,
        Top,
        TopRight,
        Right,
        BottomRight,
        Bottom,
        BottomLeft,
        Left
    };
    struct Handle {
        QPointF at{};
        Grip grip = Grip::None;
        qsizetype end = 0;  ///< which one, for Grip::End
    };

    bool isEmpty() const { return m_ids.isEmpty(); }
    bool has(ShapeId id) const { return m_ids.contains(id); }
    void set(const QList<ShapeId> &ids) { m_ids = ids; }
    void clear() { set({}); }
    /// The chosen ones of a picture's shapes, bottom to top.
    QList<EntryPtr> of(const QList<EntryPtr> &shapes) const;
    /// Forgets what is not among the shapes any more.
    void keepOnly(const QList<EntryPtr> &shapes);
    /// Chooses the next shape, or the one before. False where there is none, and then nothing is.
    bool walk(const QList<EntryPtr> &shapes, bool isForward);

    /// The handles by which a shape that is chosen alone is resized.
    static QList<Handle> handlesOf(const EditEntry &shape);
    /// The handle at a point, or the shape; `under` is the topmost one there.
    Handle handleAt(QPointF at, qreal reach, const EntryPtr &under,
                    const QList<EntryPtr> &shapes) const;

    void press(const Press &press, const QList<EntryPtr> &shapes);
    /// `isEven`: Shift is held, for proportions kept and eighths of a turn.
    void move(QPointF to, bool isEven);
    /// Ends the drag. Gives the step to record; null where nothing changes.
    OperationPtr release();
    /// Gives the drag up. False if there was none.
    bool drop();
    bool isDragged() const { return m_isDragged; }
    /// The step if the drag ended now.
    OperationPtr step() const;
    /// The rectangle in which shapes are being chosen.
    std::optional<QRectF> band() const;

private:
    EntryPtr changed(const EditEntry &shape) const;

    QList<ShapeId> m_ids{};
    // The drag.
    Handle m_handle{};
    QPointF m_from{};
    QPointF m_to{};
    bool m_isPressed = false;
    bool m_isDragged = false;
    bool m_isEven = false;
    bool m_adds = false;
    ShapeId m_under = 0;         ///< the shape below the press
    QList<EntryPtr> m_shapes{};  ///< all of the picture, as they were at the press
};

/// The steps that change shapes. Null where nothing is left to do.

/// All of them as one step.
OperationPtr asOne(QList<OperationPtr> changes);
/// Brings each shape where `map` says; sizes in its style stay.
OperationPtr moving(const QList<EntryPtr> &shapes, const PictureMap &map);
/// A number that was set stays with the series: the next marker of the scene takes it over.
OperationPtr removing(const QList<EntryPtr> &shapes, const Scene &scene);
/// The shapes one place up, past the next shape that is not among them, or down.
OperationPtr ordering(const QList<EntryPtr> &chosen, const QList<EntryPtr> &all, bool isUp);
/// The shapes in another style; those whose style would stay the same are left alone.
template<typename Change> OperationPtr restyling(const QList<EntryPtr> &shapes, Change change);
/// The shape in another style, at the same ends.
EntryPtr inStyle(const EditEntry &shape, EditMsg style);

template<typename Change> OperationPtr restyling(const QList<EntryPtr> &shapes, Change change)
{
    QList<OperationPtr> steps;
    for (const EntryPtr &shape : shapes) {
        EditMsg style = shape->style;
        change(style);
        if (!(style == shape->style))
            steps.append(operation(ReplaceShape{inStyle(*shape, std::move(style))}));
    }
    return asOne(std::move(steps));
}
