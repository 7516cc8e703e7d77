#include "platform/wayland/screenlayout.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
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

QRect ScreenLayout::within(const QRect &global, QPoint origin, qreal ratio)
{
    const QPointF corner = QPointF(global.topLeft() - origin) * ratio;
    const QPoint place(rounded(corner.x()), rounded(corner.y()));
    // What is there at all has a pixel at least.
    return {place, QSize(std::max(rounded(corner.x() + global.width() * ratio) - place.x(), 1),
                         std::max(rounded(corner.y() + global.height() * ratio) - place.y(), 1))};
}

QSize ScreenLayout::pictureSize(const QRect &area) const
{
    if (area.isEmpty())
        return {};
    const QList<qsizetype> screens = touched(area);
    // Inside one screen the edges fall on that screen's pixels.
    const QPoint origin =
        screens.isEmpty() ? area.topLeft() : m_screens.at(screens.constFirst()).area.topLeft();
    return within(area, screens.size() == 1 ? origin : area.topLeft(), ratioOf(screens)).size();
}

QImage ScreenLayout::picture(const QRect &area, const QList<QImage> &pictures) const
{
    if (area.isEmpty())
        return {};
    const QList<qsizetype> screens = touched(area);
    const qreal ratio = ratioOf(screens);
    if (screens.size() == 1) {
        const Screen &screen = m_screens.at(screens.constFirst());
        const QImage whole = pictures.value(screens.constFirst());
        const QRect part = within(area, screen.area.topLeft(), ratio);
        if (whole.rect().contains(part))
            return whole.copy(part);
    }
    QImage result(pictureSize(area), QImage::Format_RGB32);
    if (result.isNull())
        return {};
    result.fill(Qt::black);
    QPainter painter(&result);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (const qsizetype i : screens) {
        const QImage whole = pictures.value(i);
        const Screen &screen = m_screens.at(i);
        const QPoint origin = screens.size() == 1 ? screen.area.topLeft() : area.topLeft();
        QRect target = within(screen.area, area.topLeft(), ratio);
        if (screens.size() == 1)
            target = within(screen.area, origin, ratio)
                         .translated(-within(area, origin, ratio).topLeft());
        painter.drawImage(target, whole);
    }
    return result;
}
