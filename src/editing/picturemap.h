#pragma once

#include <QPoint>
#include <QPointF>
#include <QPolygon>
#include <QRect>
#include <QSize>
#include <QTransform>

/// Where the points of a picture are after it was cropped, turned, mirrored or resized. Points lie
/// between pixels: (0, 0) is the corner of the first one, so that a picture that is turned takes
/// what is drawn on it along exactly. Picture coordinates.
class PictureMap
{
public:
    static PictureMap moving(QPoint by);
    /// Turns clockwise by quarters of a turn a picture of that size.
    static PictureMap turning(int quarters, QSize picture);
    /// Mirrors left and right for Qt::Horizontal, else top and bottom.
    static PictureMap mirroring(Qt::Orientation axis, QSize picture);
    /// Resizes a picture, whose pixels are mixed with those beside them. Neither size is empty.
    static PictureMap resizing(QSize from, QSize to);
    /// Brings a rectangle to another one. Neither is empty.
    static PictureMap fitting(const QRect &from, const QRect &to);

    QPoint operator()(QPoint point) const { return m_transform.map(QPointF(point)).toPoint(); }
    QPolygon operator()(const QPolygon &points) const;
    QRect operator()(const QRect &rect) const;
    /// The smallest rectangle with all pixels that have something of those of `rect`.
    QRect covering(const QRect &rect) const;
    /// By how much lengths grow; 1 if the picture only moves, turns or is mirrored.
    qreal growth() const;
    bool keepsLengths() const { return growth() == 1; }
    /// How directions change, as a matrix of -1, 0 and 1 without the growth.
    QTransform direction() const;

private:
    explicit PictureMap(const QTransform &transform) : m_transform(transform) {}

    QTransform m_transform;
    bool m_mixesPixels = false;
};
