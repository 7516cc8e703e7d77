#pragma once

#include "helper/landmarks.h"
#include "helper/plane.h"

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QRegion>
#include <QSize>

#include <array>
#include <memory>
#include <optional>
#include <vector>

/// Composes views of content that is moved vertically and horizontally by the user. Parts that stay
/// in place, such as headers and scroll bars, are recognised. They are painted once at the edge if
/// they are as long as the content beside them, and left out otherwise.
///
/// A view is painted only if known pixels prove its position: those of the last view, or, if that
/// has too little in common with it, any pixels painted before.
class Mosaic
{
public:
    enum class Sight {
        Still,  ///< at the position of the last view
        Moved,
        Unclear  ///< its position can't be determined
    };

    /// `sideLimit` applies to each side in pixels, `areaLimit` to the number of pixels.
    Mosaic(int sideLimit, qint64 areaLimit);

    /// Adds the part `area` of a picture. `area` must have the same size each time.
    Sight add(const QImage &picture, const QRect &area);

    /// Whether something was left out because of the limits or too little memory.
    bool isFull() const { return m_isFull; }
    /// Whether anything has moved.
    bool hasMoved() const { return !m_extent.isEmpty(); }
    /// The size of the result of finish(), without the parts that stay in place.
    QSize size() const;
    /// The last view whose position is known.
    const QImage &lastView() const { return m_last; }
    /// The part of that view that is content, as far as known.
    QRect lastPart() const { return hasMoved() ? usualPart() : m_last.rect(); }
    /// The rectangle of that part in the result of finish().
    QRect lastPlace() const;
    /// The last movement, by which that view was reached.
    QPoint lastMovement() const { return m_lastMovement; }
    /// A preview of the result, no larger than `box`; parts that no view has shown are chequered.
    QImage overview(QSize box) const;

    /// Moves the picture out. Parts that no view has shown are transparent.
    QImage finish();

private:
    enum Side { Top, Bottom, Left, Right };
    /// A part at one side that stays in place, extended along that side.
    struct Strip {
        Plane plane{};
        QRect extent{};
        bool follows = true;  ///< it scrolls along the side with the content
    };

    std::optional<QPoint> movementOf(const QImage &view,
                                     const std::vector<Landmark> &landmarks) const;
    std::optional<QPoint> movementAmong(const QImage &view, const std::vector<Landmark> &known,
                                        const std::vector<Landmark> &landmarks) const;
    std::optional<QPoint> placeOf(const QImage &view, const std::vector<Landmark> &landmarks) const;
    bool isInPlace(const QImage &view, const std::vector<Landmark> &landmarks) const;
    enum class Share { Little, Some, Most };
    Share shareOf(const QRect &part) const;
    QRect usualPart() const;
    void learn(QPoint movement, const QRect &part, const QRegion &stayed);
    void forgetChanged(const QImage &view);
    void paint(const QImage &view, const std::vector<Landmark> &landmarks, const QRect &part);
    QRect withinLimits(const QRect &area);
    static QRect beside(Side side, QSize view, const QRect &part);
    void paintStrip(Side side, const QImage &view, const QRect &part);
    int thicknessOf(Side side) const;
    using Thickness = std::array<int, 4>;  ///< by side
    void moveStrips(QImage &result, const QRect &inside, const Thickness &thickness);
    void paintCorners(QImage &result, const Thickness &thickness) const;

    int m_sideLimit;
    qint64 m_areaLimit;
    QImage m_last{};
    std::vector<Landmark> m_lastLandmarks{};
    QPoint m_at{};  ///< the last view's position on the plane
    QPoint m_lastMovement{};
    /// The parts that moved in the last few views, for horizontal and vertical movements: a heading
    /// may move in one direction only.
    std::array<std::vector<QRect>, 2> m_parts{};
    std::vector<QRegion> m_stayed{};  // regions over the content that stayed in these views
    Plane m_plane{};
    QRect m_extent{};  ///< the painted part of the plane
    LandmarkIndex m_index{};
    std::array<std::unique_ptr<Strip>, 4> m_strips{};
    bool m_isFull = false;
};
