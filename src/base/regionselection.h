#pragma once

#include "base/regionpolicy.h"

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <Qt>

#include <functional>
#include <optional>

/// The region that the user marks on the desktop with the pointer and the keys.
///
/// This class is separate from the overlay so that its rules (eight handles, squares, key steps)
/// can be tested without a window, a screen or a setting.
///
/// All values are in device pixels. Positions are overlay coordinates, relative to the overlay's
/// top left corner, unless they are called global. A region's far edge is its position plus its
/// size; QRect::right() and bottom() are one less and are not used. Keys can make a region's size
/// negative.
class RegionSelection
{
public:
    struct Extent {
        QSize surface{0, 0};  ///< the size that is drawn on; limits the pointer and the key steps
        QSize overlay{0, 0};  ///< the size of the desktop; limits squares, moves and the caption
        QSize frame{0, 0};    ///< the size of the caption's frame
        QList<QRect> screens{};  ///< in overlay coordinates; empty if the overlay is one screen
        /// The size that the picture of a rectangle will have; null where it is the rectangle's.
        std::function<QSize(const QRect &)> sizeOf{};
        float reach = 5.0F;  ///< how far from its centre a handle answers
    };

    /// The pointer at an event, in both coordinate systems. A reader would expect overlay
    /// coordinates everywhere, but some rules compare the global position with them, on purpose.
    /// Both are equal if the desktop begins at (0, 0).
    struct Input {
        QPoint pos{};      ///< overlay coordinates
        QPoint pointer{};  ///< global
        Qt::KeyboardModifiers modifiers{};
    };

    struct Caption {
        QPoint place{};  ///< top left corner of the frame
        QString width{};
        QString height{};
    };

    struct Cursor {
        Qt::CursorShape shape = Qt::CrossCursor;
        /// Sets the cursor of the caption's frame and leaves that of the drawing surface alone.
        bool onFrame = false;
    };

    /// What the overlay has to do after a key, besides showing the region that the key may have
    /// changed.
    enum class Request { None, ChangeViewMode, Accept, Close, Clear };

    static constexpr int s_nothing = 0;
    static constexpr int s_handleCount = 8;  ///< zones 1 to 8, clockwise from the top left corner
    static constexpr int s_inside = 9;

    explicit RegionSelection(const RegionPolicy &policy = s_rectanglePolicy) : m_policy(policy) {}

    void setExtent(const Extent &extent) { m_extent = extent; }

    /// `buttons` are all buttons that are down. Only a press of the left button alone changes
    /// anything.
    void press(const Input &input, Qt::MouseButtons buttons);
    /// Returns the caption to show, or none if no drag is under way. A drag whose band has no area
    /// has a caption only if the policy says so.
    std::optional<Caption> move(const Input &input);
    /// Any button was released. True if that ends a drag that has stored a region.
    bool release(const Input &input);
    Request key(int key, Qt::KeyboardModifiers modifiers);
    void clear();
    /// Marks a rectangle as a drag would have that has ended.
    void mark(const QRect &region);

    /// The rectangles to draw now, in this order.
    QList<QRect> shapes() const;
    /// Tells that shapes() have been drawn: a band becomes a region only if it has been visible.
    void painted();

    Caption bandCaption() const;    ///< the caption during a drag
    Caption regionCaption() const;  ///< the caption after a key

    /// `frame` is the rectangle of the caption's frame in overlay coordinates, whether it is shown
    /// or not.
    Cursor cursor(const Input &input, const QRect &frame) const;

    QRect region() const { return {m_regionPos, QSize(m_regionSize.x(), m_regionSize.y())}; }
    QRect band() const;  ///< the rubber band, normalised
    QPoint startPoint() const { return m_startPoint; }
    QPoint endPoint() const { return m_endPoint; }
    int hitZone() const { return m_hitZone; }
    bool hasRegion() const { return m_hasRegion; }
    bool isPressed() const { return m_leftDown; }

    /// The centre of a handle of `rect`. `zone` is 1 to 8.
    static QPoint handleCentre(const QRect &rect, int zone);
    /// Whether the horizontal distance of the points is at least their vertical one.
    static bool distance_XvsY(QPoint a, QPoint b);
    static float distance_PtoP(QPoint a, QPoint b);

private:
    int handleAt(QPoint pos) const;
    bool regionContains(QPoint point) const;
    bool cursorIsInside(QPoint pointer) const;
    int hitTest(const Input &input);
    QPoint clamped(QPoint point) const;
    QPoint ended(QPoint pos) const;
    QPoint edgeEnd(QPoint pos) const;
    QPoint squareEnd(QPoint pointer) const;
    void anchorOnRegion(QPoint pos);
    void dragHandle(QPoint pos);
    void dragRegion(QPoint pos);
    void arrow(int axis, int step, Qt::KeyboardModifiers modifiers);
    void exactArrow(int axis, int step, Qt::KeyboardModifiers modifiers);
    QPoint onScreen(QPoint caption, const QRect &marked) const;
    QSize toldSize(const QRect &marked) const;

    RegionPolicy m_policy;
    Extent m_extent;
    QPoint m_startPoint;  // the corner of the band where the drag began
    QPoint m_endPoint;    // the corner of the band that follows the pointer
    QPoint m_regionPos;
    QPoint m_regionSize;  // x is the width, y the height
    QPoint m_dragOrigin;  // where the pointer was when it took hold of the region
    int m_hitZone = s_nothing;
    bool m_rubberBand = false;  // the current drag has made a band
    bool m_hasRegion = false;   // a band was visible: presses are hit tested, releases store
    bool m_leftDown = false;
    bool m_dragging = false;  // the pointer has moved with the button down
};
