#pragma once

#include "base/regionpolicy.h"

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <Qt>

#include <optional>

/// What the pointer and the keys mark on the desktop while a region is being chosen.
///
/// It stands apart from the overlay because its tables (eight handles, the square rule, the key
/// steps) are what users notice, and here they need no window, screen or setting.
///
/// Everything is in device pixels. Positions are overlay coordinates, from the overlay's top left
/// corner, except where "global" is said. A region's far edge is its position plus its size;
/// QRect::right() and bottom() are one less and are not used. Keys can make a region's size
/// negative.
class RegionSelection
{
public:
    struct Extent {
        QSize surface{0, 0};     ///< what is drawn on: bounds the pointer and the key steps
        QSize overlay{0, 0};     ///< the desktop's box: bounds squares, moves and the caption
        QSize frame{0, 0};       ///< the caption's frame
        QList<QRect> screens{};  ///< overlay coordinates; none: the overlay is one screen
    };

    /// Where the pointer is at an event, told in two ways: three of the rules compare the global
    /// position with overlay coordinates as it stands, which is meant, and the same thing on a
    /// desktop whose box begins at (0, 0).
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
        bool onFrame = false;  ///< for the caption's frame; the drawing surface keeps what it has
    };

    /// What a key asks of the overlay, beyond what the key did to the region.
    enum class Request { None, ChangeViewMode, Accept, Close, Clear };

    static constexpr int s_nothing = 0;
    static constexpr int s_handleCount = 8;  ///< zones 1 to 8, clockwise from the top left corner
    static constexpr int s_inside = 9;

    explicit RegionSelection(const RegionPolicy &policy = s_rectanglePolicy) : m_policy(policy) {}

    void setExtent(const Extent &extent) { m_extent = extent; }

    /// `buttons` are all that are down; only a press of the left one alone changes anything.
    void press(const Input &input, Qt::MouseButtons buttons);
    /// The caption to be shown, if there is a drag, and its band has an area where that is asked
    /// for.
    std::optional<Caption> move(const Input &input);
    /// A button went up, whichever it was.
    void release(const Input &input);
    Request key(int key, Qt::KeyboardModifiers modifiers);
    void clear();

    /// The rectangles to be drawn now, in this order.
    QList<QRect> shapes() const;
    /// To be called when shapes() have been drawn: a band counts only once it has been seen.
    void painted();

    Caption bandCaption() const;    ///< for a drag
    Caption regionCaption() const;  ///< for a key

    /// `frame` is where the caption's frame is, shown or not, in overlay coordinates.
    Cursor cursor(const Input &input, const QRect &frame) const;

    QRect region() const { return {m_regionPos, QSize(m_regionSize.x(), m_regionSize.y())}; }
    QRect band() const;  ///< normalised
    QPoint startPoint() const { return m_startPoint; }
    QPoint endPoint() const { return m_endPoint; }
    int hitZone() const { return m_hitZone; }
    bool hasRegion() const { return m_hasRegion; }
    bool isPressed() const { return m_leftDown; }

    /// `zone` is 1 to 8.
    static QPoint handleCentre(const QRect &rect, int zone);
    /// Whether the points are at least as far apart across as they are down.
    static bool distance_XvsY(QPoint a, QPoint b);
    static float distance_PtoP(QPoint a, QPoint b);

private:
    int handleAt(QPoint pos) const;
    bool regionContains(QPoint point) const;
    bool cursorIsInside(QPoint pointer) const;
    int hitTest(const Input &input);
    QPoint clamped(QPoint point) const;
    QPoint edgeEnd(QPoint pos) const;
    QPoint squareEnd(QPoint pointer) const;
    void anchorOnRegion(QPoint pos);
    void dragHandle(QPoint pos);
    void dragRegion(QPoint pos);
    void arrow(int axis, int step, Qt::KeyboardModifiers modifiers);
    QPoint onScreen(QPoint caption, const QRect &marked) const;

    RegionPolicy m_policy;
    Extent m_extent;
    QPoint m_startPoint;  // the band's anchor
    QPoint m_endPoint;    // the band's corner that follows the pointer
    QPoint m_regionPos;
    QPoint m_regionSize;  // x is the width, y the height
    QPoint m_dragOrigin;  // where a move of the region was pressed
    int m_hitZone = s_nothing;
    bool m_rubberBand = false;  // the drag has made a band
    bool m_hasRegion = false;   // a band has been seen: presses are hit tested, releases store
    bool m_leftDown = false;
    bool m_dragging = false;  // the pointer has moved with the button down
};
