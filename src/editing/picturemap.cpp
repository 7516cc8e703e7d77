#include "editing/picturemap.h"

#include <algorithm>
#include <cmath>

PictureMap PictureMap::moving(QPoint by)
{
    return PictureMap(QTransform::fromTranslate(by.x(), by.y()));
}

PictureMap PictureMap::turning(int quarters, QSize picture)
{
    const qreal width = picture.width();
    const qreal height = picture.height();
    switch (quarters & 3) {
    case 1:
        return PictureMap({0, 1, -1, 0, height, 0});
    case 2:
        return PictureMap({-1, 0, 0, -1, width, height});
    case 3:
        return PictureMap({0, -1, 1, 0, 0, width});
    default:
        return PictureMap({});
    }
}

PictureMap PictureMap::mirroring(Qt::Orientation axis, QSize picture)
{
    return axis == Qt::Horizontal ? PictureMap({-1, 0, 0, 1, qreal(picture.width()), 0})
                                  : PictureMap({1, 0, 0, -1, 0, qreal(picture.height())});
}

PictureMap PictureMap::resizing(QSize from, QSize to)
{
    PictureMap result = fitting(QRect(QPoint(), from), QRect(QPoint(), to));
    result.m_mixesPixels = from != to;
    return result;
}

PictureMap PictureMap::fitting(const QRect &from, const QRect &to)
{
    const qreal across = qreal(to.width()) / from.width();
    const qreal down = qreal(to.height()) / from.height();
    return PictureMap({across, 0, 0, down, to.x() - from.x() * across, to.y() - from.y() * down});
}

QPolygon PictureMap::operator()(const QPolygon &points) const
{
    QPolygon result(points);
    for (QPoint &point : result)
        point = (*this)(point);
    return result;
}

QRect PictureMap::operator()(const QRect &rect) const
{
    const QPoint a = (*this)(rect.topLeft());
    const QPoint b = (*this)(rect.topLeft() + QPoint(rect.width(), rect.height()));
    return {QPoint(std::min(a.x(), b.x()), std::min(a.y(), b.y())),
            QSize(std::abs(a.x() - b.x()), std::abs(a.y() - b.y()))};
}

// A larger picture has each pixel's colour as far as the middles of those beside it, a smaller one
// in all pixels that lie on it; rounding may add to both.
QRect PictureMap::covering(const QRect &rect) const
{
    if (!m_mixesPixels)
        return (*this)(rect);
    return m_transform.mapRect(QRectF(rect.adjusted(-1, -1, 1, 1))).toAlignedRect();
}

qreal PictureMap::growth() const { return std::sqrt(std::abs(m_transform.determinant())); }

QTransform PictureMap::direction() const
{
    const auto sign = [](qreal value) { return qreal(value > 0) - qreal(value < 0); };
    return {sign(m_transform.m11()),
            sign(m_transform.m12()),
            sign(m_transform.m21()),
            sign(m_transform.m22()),
            0,
            0};
}
