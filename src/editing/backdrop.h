#pragma once

#include <QColor>
#include <QImage>
#include <QList>
#include <QRect>
#include <QSize>
#include <QTransform>

/// The ground on which a picture lies: what shows it off in a page or a talk. A value; lengths are
/// picture pixels.
struct Backdrop {
    enum class Ground { Color, Gradient, Blurred };

    static constexpr int s_widestPadding = 1000;
    static constexpr int s_roundest = 200;
    /// How many colours a blurred ground has across and down.
    static constexpr QSize s_blots{10, 10};
    static constexpr qsizetype s_mostBlots = 100;  ///< all of them

    Ground ground = Ground::Gradient;
    QColor first{0x2b, 0x6f, 0x8f};   ///< of a plain ground, and of a gradient's top left corner
    QColor second{0x8f, 0xc7, 0xd6};  ///< of its bottom right corner
    /// Those of the picture as it was seen, row by row: of a blurred ground.
    QList<QRgb> blots{};
    int padding = 48;  ///< at every side
    int radius = 12;   ///< of the picture's corners
    bool hasShadow = true;
    QSize ratio{};  ///< of width and height of the whole, which grows for it; null for any

    bool operator==(const Backdrop &) const = default;

    /// The size of the whole.
    QSize sizeFor(QSize picture) const;
    /// Where the picture lies in it.
    QRect placeOf(QSize picture) const;
    /// The whole, opaque. With a `scale` the picture is a small one, and so is all around it.
    QImage under(const QImage &picture, qreal scale = 1) const;
    /// The ground for the picture after it was turned by quarters, or mirrored.
    Backdrop turned(const QTransform &turn) const;
    /// What `blots` takes from a picture; nothing from none.
    static QList<QRgb> blotsOf(const QImage &picture);
};
