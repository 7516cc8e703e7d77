#pragma once

#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRegion>
#include <QSize>

/// Maps between the picture and the widget that shows it zoomed. All values are device pixels; the
/// widget's logical pixels are not used.
struct ViewMapping {
    QSize widget{};  ///< size of the drawing widget
    QSize picture{};
    float scale = 1.0F;  ///< device pixels per picture pixel; not 0

    /// The picture's top left corner in the widget: centred if the widget is larger, otherwise 0.
    QPoint margins() const;
    /// The size that the zoomed picture needs.
    QSize shownSize() const;
    /// The size to which the picture is scaled with its proportions kept; one side may be a pixel
    /// less than in shownSize(). Empty if the zoom leaves nothing of the picture.
    QSize scaledSize() const;
    /// The picture's rectangle in the widget; null if the zoom leaves nothing of it.
    QRect shown() const;
    /// The picture pixel at a position in the widget. It is truncated toward zero, so up to one
    /// zoomed pixel to the left of or above the picture maps to 0; positions further out are
    /// negative.
    QPoint toPicture(QPoint position) const;
    /// The same without rounding, and its inverse.
    QPointF toPictureExactly(QPoint position) const;
    QPointF toWidget(QPointF picturePoint) const;
    /// The rectangle of a part of the picture, in pixels of the scaled picture. It is rounded
    /// outward and includes neighbouring pixels that are affected by the scaling.
    QRect toScaled(const QRect &part) const;
    /// The part of the picture that is needed for a part of the scaled picture. It may reach beyond
    /// the picture.
    QRegion fromScaled(const QRegion &part) const;
};

/// The device pixel at which a widget begins that lies at this position, in device pixels.
QPoint wholePixel(QPointF position);

/// The drawing widget's size for a picture of `picture` pixels: it fills the viewport, and is
/// larger if the zoomed picture is. Device pixels.
QSize drawingSize(QSize viewport, QSize picture, float scale);
