#include "platform/wayland/screenlayout.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace {

constexpr int s_steps = 120;  // of scales, in 1

int rounded(qreal value) { return static_cast<int>(std::lround(value)); }

// Whether a side with so many pixels may have that logical length at that scale, however it is
// rounded.
bool fits(int pixels, int logical, qreal scale) { return std::abs(pixels / scale - logical) < 1; }

}  // namespace

qreal scaleOf(QSize pixels, QSize logical)
{
    if (pixels.isEmpty() || logical.isEmpty())
        return 1;
    const qreal quotient = std::max(qreal(pixels.width()) / logical.width(),
                                    qreal(pixels.height()) / logical.height());
    const qreal stepped = std::round(quotient * s_steps) / s_steps;
    const bool isScale = stepped > 0 && fits(pixels.width(), logical.width(), stepped) &&
                         fits(pixels.height(), logical.height(), stepped);
    return isScale ? stepped : quotient;
}

ScreenLayout::ScreenLayout(QList<Screen> screens) : m_screens(std::move(screens))
{
    m_scale = m_screens.isEmpty() ? 1 : 0;
    for (Screen &screen : m_screens) {
        screen.scale = scaleOf(screen.pixels, screen.logical.size());
        m_scale = std::max(m_scale, screen.scale);
    }
    for (Screen &screen : m_screens) {
        const bool isFinest = screen.scale == m_scale;
        screen.area = {toGlobal(QPointF(screen.logical.topLeft())),
                       isFinest ? screen.pixels
                                : QSize(rounded(screen.logical.width() * m_scale),
                                        rounded(screen.logical.height() * m_scale))};
    }
}

QPoint ScreenLayout::toGlobal(QPointF logical) const
{
    return {rounded(logical.x() * m_scale), rounded(logical.y() * m_scale)};
}

QRect ScreenLayout::toGlobal(const QRectF &logical) const
{
    const QPoint corner = toGlobal(logical.topLeft());
    const QPoint farCorner = toGlobal(logical.bottomRight());
    return {corner, QSize(farCorner.x() - corner.x(), farCorner.y() - corner.y())};
}

QList<qsizetype> ScreenLayout::touched(const QRect &area) const
{
    QList<qsizetype> result;
    for (qsizetype i = 0; i < m_screens.size(); ++i) {
        if (m_screens.at(i).area.intersects(area))
            result.append(i);
    }
    return result;
}

qreal ScreenLayout::ratioOf(const QList<qsizetype> &screens) const
{
    qreal finest = screens.isEmpty() ? m_scale : 0;
    for (const qsizetype i : screens)
        finest = std::max(finest, m_screens.at(i).scale);
    return finest / m_scale;
}

QRect ScreenLayout::within(const QRect &global, QPoint origin, QSizeF ratio)
{
    const QPointF corner((global.x() - origin.x()) * ratio.width(),
                         (global.y() - origin.y()) * ratio.height());
    const QPoint place(rounded(corner.x()), rounded(corner.y()));
    // What is there at all has a pixel at least.
    return {place,
            QSize(std::max(rounded(corner.x() + global.width() * ratio.width()) - place.x(), 1),
                  std::max(rounded(corner.y() + global.height() * ratio.height()) - place.y(), 1))};
}

// Inside one screen the edges fall on that screen's pixels.
QRect ScreenLayout::inScreen(const QRect &area, const Screen &screen)
{
    return within(area, screen.area.topLeft(),
                  {qreal(screen.pixels.width()) / screen.area.width(),
                   qreal(screen.pixels.height()) / screen.area.height()});
}

QSize ScreenLayout::pictureSize(const QRect &area) const
{
    if (area.isEmpty())
        return {};
    const QList<qsizetype> screens = touched(area);
    if (screens.size() == 1)
        return inScreen(area, m_screens.at(screens.constFirst())).size();
    const qreal ratio = ratioOf(screens);
    return within(area, area.topLeft(), {ratio, ratio}).size();
}

QImage ScreenLayout::picture(const QRect &area, const QList<QImage> &pictures) const
{
    const QList<qsizetype> screens = touched(area);
    const bool isInside = screens.size() == 1;
    QRect part;
    if (isInside) {
        part = inScreen(area, m_screens.at(screens.constFirst()));
        const QImage whole = pictures.value(screens.constFirst());
        if (whole.rect().contains(part))
            return part == whole.rect() ? whole : whole.copy(part);
    }
    QImage result(pictureSize(area), QImage::Format_RGB32);
    if (result.isNull())
        return {};
    result.fill(Qt::black);
    QPainter painter(&result);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const qreal ratio = ratioOf(screens);
    for (const qsizetype i : screens) {
        const QImage whole = pictures.value(i);
        const QRect target = within(m_screens.at(i).area, area.topLeft(), {ratio, ratio});
        // A pixel more or less is nothing but the rounding of the logical size.
        const QSize excess = target.size() - whole.size();
        if (isInside)
            painter.drawImage(-part.topLeft(), whole);
        else if (std::abs(excess.width()) <= 1 && std::abs(excess.height()) <= 1)
            painter.drawImage(target.topLeft(), whole);
        else
            painter.drawImage(target, whole);
    }
    return result;
}

QImage fitted(const QImage &picture, QSize pixels)
{
    constexpr int mostLost = 2;  // pixels
    const QSize lost = pixels - picture.size();
    if (lost.isNull() || picture.isNull())
        return picture;
    if (std::abs(lost.width()) > mostLost || std::abs(lost.height()) > mostLost)
        return picture.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QImage result(pixels, picture.format());
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    const int right = std::max(lost.width(), 0);
    const int below = std::max(lost.height(), 0);
    // Each one lies over the one before, so that only the edge of that is left.
    for (const QPoint place :
         {QPoint(right, below), QPoint(right, 0), QPoint(0, below), QPoint(0, 0)})
        painter.drawImage(place, picture);
    return result;
}
