#pragma once

#include <QPoint>
#include <QSize>

/// How a zoomed picture lies in the widget that shows it. Everything here counts device pixels; the
/// widget's own logical pixels have no part in it.
struct ViewMapping {
    QSize widget{};  ///< the drawing widget
    QSize picture{};
    float scale = 1.0F;  ///< device pixels per picture pixel

    /// Top left corner of the picture: centred where the widget is larger, else 0.
    QPoint margins() const;
    /// Size of the picture as shown.
    QSize shownSize() const;
};

/// The size of the drawing widget for a picture of `picture` pixels: it fills the viewport, and
/// outgrows it where the zoomed picture does. Device pixels.
QSize drawingSize(QSize viewport, QSize picture, float scale);
