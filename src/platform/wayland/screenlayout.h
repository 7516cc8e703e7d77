#pragma once

#include <QImage>
#include <QList>
#include <QPointF>
#include <QRect>
#include <QString>

#include <functional>

/// Where the screens lie, and how many pixels each has: the compositor counts places in logical
/// units, and each screen has a scale of its own.
///
/// Global device pixels are logical units times the greatest scale of all screens. A screen of a
/// smaller scale has fewer pixels of its own than its area has; pictures that lie inside it come in
/// its own.
class ScreenLayout
{
public:
    struct Screen {
        QString name{};   ///< as the compositor calls it
        QRect logical{};  ///< in logical units
        QSize pixels{};   ///< of its own, as it is seen (turned, if the screen is)
        qreal scale = 1;  ///< its own pixels in a logical unit
        QRect area{};     ///< in global device pixels
        bool operator==(const Screen &) const = default;
    };

    ScreenLayout() = default;
    /// Takes name, logical and pixels, and finds out the rest.
    explicit ScreenLayout(QList<Screen> screens);

    const QList<Screen> &screens() const { return m_screens; }
    /// The greatest scale: global device pixels in a logical unit.
    qreal scale() const { return m_scale; }

    QPoint toGlobal(QPointF logical) const;
    /// The pixels that the compositor draws for a rectangle.
    QRect toGlobal(const QRectF &logical) const;
    QPointF toLogical(QPoint global) const { return QPointF(global) / m_scale; }

    /// The size of the picture of an area: in the own pixels of the screen that it lies in, or, if
    /// it lies across several, in those of the one with the greatest scale among them.
    QSize pictureSize(const QRect &area) const;
    /// That picture, put together from those of the screens, in their order, each in its own
    /// pixels. Black where no screen is. Null if a side of `area` is 0 or less.
    QImage picture(const QRect &area, const QList<QImage> &pictures) const;

    bool operator==(const ScreenLayout &) const = default;

private:
    QList<qsizetype> touched(const QRect &area) const;
    /// The own pixels in a global device pixel of the finest of these screens; 1 if there is none.
    qreal ratioOf(const QList<qsizetype> &screens) const;
    /// Where `global` lies in a picture that begins at `origin` and has that many pixels in one.
    static QRect within(const QRect &global, QPoint origin, QSizeF ratio);
    static QRect inScreen(const QRect &area, const Screen &screen);

    QList<Screen> m_screens{};
    qreal m_scale = 1;
};

/// A picture of a screen that has so many pixels. Desktops may lose or add a row and a column where
/// logical sizes are no whole numbers: then the last ones are repeated or cut off. A picture of
/// another size is scaled.
QImage fitted(const QImage &picture, QSize pixels);

/// The scale of a screen with that many pixels for that many logical units. Compositors cut the
/// logical size off or round it, so that the quotient is not quite the scale by which they draw;
/// that is a multiple of 1/120, if one fits.
qreal scaleOf(QSize pixels, QSize logical);
