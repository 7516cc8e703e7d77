#pragma once

#include <QImage>
#include <QPoint>
#include <QSize>
#include <QString>

/// A picture on the screen, and how the user has it there.
struct PinnedPicture {
    QString id{};      ///< no other one has it, on the disk either
    QImage picture{};  ///< with its shapes
    QString name{};    ///< for the user; may be empty
    QPoint place{};    ///< of its top left pixel; global device pixels
    double zoom = 1;   ///< device pixels for a pixel of the picture
    double opacity = 1;

    static constexpr double s_leastZoom = 0.1;
    static constexpr double s_mostZoom = 8;
    static constexpr double s_leastOpacity = 0.2;

    /// How large it is on the screen, in device pixels; never empty.
    QSize shownSize() const;
    /// One step of the wheel up or down: its zoom, as far as a picture that is larger than `most`
    /// device pixels on any side does not become larger still.
    double steppedZoom(int steps, QSize most) const;
    /// The same for its opacity.
    double steppedOpacity(int steps) const;
    /// Zooms, and keeps the pixel at `point` of the screen where it is.
    void zoomAt(double newZoom, QPoint point);
};
