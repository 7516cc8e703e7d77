#pragma once

#include "platform/paneplace.h"

#include <QList>
#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <QRegion>
#include <QSize>

class QPainter;
class QWidget;

/// One of the windows through which an overlay is seen and hears: a part of the desktop that has a
/// scale of its own. What is called pixels are device pixels in overlay coordinates, which begin at
/// the corner of the box around all screens, whichever pane shows them. The toolkit's logical
/// coordinates begin at the corner of the pane's window.
class Pane
{
public:
    /// `surface` fills `window`, is drawn on and gets the input; it may be the window itself. Both
    /// outlive this object. `origin` is where overlay coordinates begin, global.
    Pane(QWidget &window, QWidget &surface, const PanePlace &place, QPoint origin);

    QWidget &window() const { return *m_window; }
    QWidget &surface() const { return *m_surface; }
    const QRect &pixels() const { return m_pixels; }
    qreal scale() const { return m_scale; }
    /// The pane in the logical coordinates in which a drag goes on from pane to pane.
    QRectF onDesktop() const { return {m_corner, QSizeF(m_pixels.size()) / m_scale}; }

    QPoint toPixels(QPointF position) const;
    QSize toPixels(QSize size) const;
    /// Rounds.
    QPoint toLogical(QPoint pixel) const;
    /// The pixels that a logical rectangle touches, plus one on each side.
    QRect pixelsAround(const QRect &logical) const;
    /// Schedules a repaint of those of the pixels that the pane shows.
    void update(const QRegion &pixels) const;
    /// Begins painting on the surface, in pixels.
    void begin(QPainter &painter) const;

    /// What the pane shows of the desktop; null if that is seen live. A screen with larger pixels
    /// of its own has fewer of them than the pane has.
    const QPixmap &picture() const { return m_picture; }
    void setPicture(const QPixmap &picture) { m_picture = picture; }
    /// The picture's pixels in a pixel.
    qreal ratio() const;
    /// The part of the picture that these pixels touch.
    QRect inPicture(const QRect &pixels) const;
    /// Lets a painter that has begun count the picture's pixels.
    void usePicture(QPainter &painter) const;

private:
    QWidget *m_window;
    QWidget *m_surface;
    QRect m_pixels;
    qreal m_scale;
    QPointF m_corner;
    QPixmap m_picture;
};

/// The pane that shows a pixel, or the nearest one. `panes` is not empty.
const Pane &paneAt(const QList<Pane> &panes, QPoint pixel);
/// The pixel at a position that `pane` reports. A window in which a drag has begun goes on
/// reporting it beyond its edge, in its own logical coordinates. The pixel there is another pane's,
/// which may have another scale.
QPoint pixelAt(const QList<Pane> &panes, const Pane &pane, QPointF position);
