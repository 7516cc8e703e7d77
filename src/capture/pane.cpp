#include "capture/pane.h"

#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace {

// Scales that differ by less are one: the logical size of a screen is a whole number.
constexpr qreal s_same = 0.005;

// The far end is beyond, by a little: where two panes meet, it is the other one's beginning.
qreal beyond(qreal from, qreal to, qreal value)
{
    constexpr qreal s_little = 1e-6;
    return value < from ? from - value : value < to ? 0 : value - to + s_little;
}

qreal distance(const QRectF &box, QPointF point)
{
    return beyond(box.left(), box.right(), point.x()) + beyond(box.top(), box.bottom(), point.y());
}

}  // namespace

Pane::Pane(QWidget &window, QWidget &surface, const PanePlace &place, QPoint origin)
    : m_window(&window), m_surface(&surface), m_pixels(place.area.translated(-origin)),
      m_scale(place.scale), m_corner(place.corner)
{
}

QPoint Pane::toPixels(QPointF position) const
{
    return m_pixels.topLeft() + (position * m_scale).toPoint();
}

QSize Pane::toPixels(QSize size) const { return (QSizeF(size) * m_scale).toSize(); }

QPoint Pane::toLogical(QPoint pixel) const
{
    return (QPointF(pixel - m_pixels.topLeft()) / m_scale).toPoint();
}

// With a fractional scale logical rectangles begin and end between device pixels, and the toolkit
// rounds them. One more pixel on each side covers the requested part in any case.
QRect Pane::pixelsAround(const QRect &logical) const
{
    const QRectF exact(QPointF(logical.topLeft()) * m_scale, QSizeF(logical.size()) * m_scale);
    return exact.toAlignedRect().adjusted(-1, -1, 1, 1).translated(m_pixels.topLeft());
}

void Pane::update(const QRegion &pixels) const
{
    QRegion logical;
    for (const QRect &rect : pixels) {
        const QRect around = rect.adjusted(-1, -1, 1, 1).translated(-m_pixels.topLeft());
        logical += QRectF(QPointF(around.topLeft()) / m_scale, QSizeF(around.size()) / m_scale)
                       .toAlignedRect();
    }
    m_surface->update(logical);
}

// Where the compositor scales what the window shows, a pixel is not one of the window's.
void Pane::begin(QPainter &painter) const
{
    painter.begin(m_surface);
    painter.setRenderHint(QPainter::SmoothPixmapTransform,
                          m_scale != m_surface->devicePixelRatioF());
    painter.scale(1 / m_scale, 1 / m_scale);
    painter.translate(-m_pixels.topLeft());
}

qreal Pane::ratio() const
{
    return m_picture.isNull() ? 1 : qreal(m_picture.width()) / m_pixels.width();
}

QRect Pane::inPicture(const QRect &pixels) const
{
    const QRectF exact(QPointF(pixels.topLeft() - m_pixels.topLeft()) * ratio(),
                       QSizeF(pixels.size()) * ratio());
    return exact.toAlignedRect() & m_picture.rect();
}

// A window that has the screen's own pixels shows them one by one.
void Pane::usePicture(QPainter &painter) const
{
    painter.resetTransform();
    painter.scale(1 / (m_scale * ratio()), 1 / (m_scale * ratio()));
    painter.setRenderHint(QPainter::SmoothPixmapTransform,
                          std::abs(m_scale * ratio() - m_surface->devicePixelRatioF()) > s_same);
}

const Pane &paneAt(const QList<Pane> &panes, QPoint pixel)
{
    const QPointF middle = QPointF(pixel) + QPointF(0.5, 0.5);
    return *std::min_element(panes.begin(), panes.end(), [&](const Pane &a, const Pane &b) {
        return distance(a.pixels(), middle) < distance(b.pixels(), middle);
    });
}

QPoint pixelAt(const QList<Pane> &panes, const Pane &pane, QPointF position)
{
    const QPointF there = pane.onDesktop().topLeft() + position;
    const Pane *nearest = &pane;
    for (const Pane &other : panes) {
        if (distance(other.onDesktop(), there) < distance(nearest->onDesktop(), there))
            nearest = &other;
    }
    return nearest == &pane ? pane.toPixels(position)
                            : nearest->toPixels(there - nearest->onDesktop().topLeft());
}
