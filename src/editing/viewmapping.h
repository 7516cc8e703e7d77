#pragma once

#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QSize>

/// How a zoomed picture lies in the widget that shows it. Everything here counts device pixels; the
/// widget's own logical pixels have no part in it.
struct ViewMapping {
    QSize widget{};  ///< the drawing widget
    QSize picture{};
    float scale = 1.0F;  ///< device pixels per picture pixel; not 0

    /// Top left corner of the picture: centred where the widget is larger, else 0.
    QPoint margins() const;
    /// The room that the zoomed picture asks for.
    QSize shownSize() const;
    /// The size that the picture is scaled to, its proportions kept: up to a pixel less than the
    /// room on one side. Empty where nothing of it is left.
    QSize scaledSize() const;
    /// Where the picture shows in the widget; null where nothing of it is left.
    QRect shown() const;
    /// The picture pixel at a position in the widget. Cut toward zero, so up to a whole zoomed
    /// pixel outside of the picture's left or top edge counts as 0; beyond that it is negative.
    QPoint toPicture(QPoint position) const;
    /// The same without rounding, and the way back from there.
    QPointF toPictureExactly(QPoint position) const;
    QPointF toWidget(QPointF picturePoint) const;
    /// Where a part of the picture shows, in pixels of the scaled picture. Rounded outward, and
    /// with what the scaling mixes into the pixels around it.
    QRect toScaled(const QRect &part) const;
};

/// The size of the drawing widget for a picture of `picture` pixels: it fills the viewport, and
/// outgrows it where the zoomed picture does. Device pixels.
QSize drawingSize(QSize viewport, QSize picture, float scale);
