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

/// Puts views of content together that is moved below them, down, up and across, by whoever moves
/// it. What stays in its place meanwhile, a header or a scroll bar, is told from what moves: it is
/// painted once, at the edge, if it is as long as what it lies beside, and left out otherwise.
///
/// A view is painted only where pixels that are known already say that it belongs: those of the
/// last view, or, where that shares too little with it, any that have been painted.
class Mosaic
{
public:
    enum class Sight {
        Still,  ///< where the last one was
        Moved,
        Unclear  ///< nothing tells where it belongs
    };

    /// `sideLimit` for each way, `areaLimit` for all, in pixels.
    Mosaic(int sideLimit, qint64 areaLimit);

    /// Looks at `area` of a picture, which is of the same size each time.
    Sight add(const QImage &picture, const QRect &area);

    /// Whether there was more than the limits, or the memory, let in.
    bool isFull() const { return m_isFull; }
    /// Whether anything has moved.
    bool hasMoved() const { return !m_extent.isEmpty(); }
    /// That of finish(), but for what stays in its place.
    QSize size() const;
    /// The last view that was not unclear.
    const QImage &lastView() const { return m_last; }
    /// What of it is content, as far as that is known.
    QRect lastPart() const { return hasMoved() ? usualPart() : m_last.rect(); }
    /// Where that lies in the picture that finish() gives.
    QRect lastPlace() const;
    /// How it came there: the last movement.
    QPoint lastMovement() const { return m_lastMovement; }
    /// What there is so far, no larger than a box, for a look; chequered where no view has been.
    QImage overview(QSize box) const;

    /// Moves the picture out. What no view has shown is transparent.
    QImage finish();

private:
    enum Side { Top, Bottom, Left, Right };
    /// What stays in its place beside the content, drawn out along the side.
    struct Strip {
        Plane plane{};
        QRect extent{};
        bool follows = true;  ///< along the side
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
    QPoint m_at{};  ///< the last view's, on the plane
    QPoint m_lastMovement{};
    /// What of the last few views moved, across and upright: a heading may go along with one.
    std::array<std::vector<QRect>, 2> m_parts{};
    std::vector<QRegion> m_stayed{};  // what lay over the content in them
    Plane m_plane{};
    QRect m_extent{};  ///< what of the plane has been painted
    LandmarkIndex m_index{};
    std::array<std::unique_ptr<Strip>, 4> m_strips{};
    bool m_isFull = false;
};
