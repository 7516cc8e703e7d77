#include "editing/backdrop.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

// The shadow is soft, so that it may be drawn in a quarter of its size.
constexpr int s_shrink = 4;
constexpr int s_shadowSteps = 24;
constexpr qreal s_shadowDepth = 0.35;  // how dark it is at its middle
constexpr qreal s_shadowDrop = 0.25;   // how far below the picture, of its reach
constexpr int s_leastShadow = 8;
constexpr int s_mostShadow = 64;

// Each step draws it again, a bit smaller, so that it is darkest in the middle.
void drawShadow(QPainter &painter, const QRect &picture, int radius, qreal reach, QSize whole)
{
    QImage soft((whole + QSize(s_shrink - 1, s_shrink - 1)) / s_shrink,
                QImage::Format_ARGB32_Premultiplied);
    soft.fill(Qt::transparent);
    QPainter on(&soft);
    on.setRenderHint(QPainter::Antialiasing);
    on.scale(1. / s_shrink, 1. / s_shrink);
    on.setPen(Qt::NoPen);
    const qreal each = 1 - std::pow(1 - s_shadowDepth, 1. / s_shadowSteps);
    on.setBrush(QColor::fromRgbF(0, 0, 0, static_cast<float>(each)));
    const QRectF below = QRectF(picture).translated(0, reach * s_shadowDrop);
    for (int i = 0; i < s_shadowSteps; ++i) {
        const qreal grown = reach * (s_shadowSteps - 2. * i) / s_shadowSteps;
        const qreal round = std::max(radius + grown, 0.);
        on.drawRoundedRect(below.adjusted(-grown, -grown, grown, grown), round, round);
    }
    on.end();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(QPointF(), QSizeF(soft.size() * s_shrink)), soft);
}

QImage imageOf(const QList<QRgb> &blots)
{
    const QSize few = Backdrop::s_blots;
    QImage image(few, QImage::Format_RGB32);
    for (int i = 0; i < few.width() * few.height(); ++i)
        image.setPixel(i % few.width(), i / few.width(), blots.value(i, qRgb(128, 128, 128)));
    return image;
}

QList<QRgb> blotsIn(const QImage &image)
{
    QList<QRgb> result;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            result.append(image.pixel(x, y) | 0xff000000);
    }
    return result;
}

// Twice the size again and again, since one step alone would leave edges between the blots.
QImage blurred(const QList<QRgb> &blots, QSize size)
{
    QImage image = imageOf(blots);
    while (image.width() * 2 < size.width() && image.height() * 2 < size.height())
        image = image.scaled(image.size() * 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

}  // namespace

QSize Backdrop::sizeFor(QSize picture) const
{
    const QSize least = picture + 2 * QSize(padding, padding);
    if (ratio.isEmpty())
        return least;
    // A whole multiple, which is exact.
    const auto fitting = [](int length, int part) { return (length + part - 1) / part; };
    return ratio *
           std::max(fitting(least.width(), ratio.width()), fitting(least.height(), ratio.height()));
}

QRect Backdrop::placeOf(QSize picture) const
{
    const QSize room = sizeFor(picture) - picture;
    return {QPoint(room.width() / 2, room.height() / 2), picture};
}

QImage Backdrop::under(const QImage &picture, qreal scale) const
{
    Backdrop sized = *this;
    sized.padding = qRound(padding * scale);
    const QSize whole = sized.sizeFor(picture.size());
    const QRect place = sized.placeOf(picture.size());
    QImage result(whole, QImage::Format_RGB32);
    if (result.isNull())
        return result;
    if (ground == Ground::Blurred)
        result = blurred(blots, whole);
    QPainter painter(&result);
    if (ground == Ground::Color) {
        painter.fillRect(result.rect(), QColor::fromRgb(first.rgb()));
    } else if (ground == Ground::Gradient) {
        QLinearGradient gradient(QPointF(), QPointF(whole.width(), whole.height()));
        gradient.setColorAt(0, QColor::fromRgb(first.rgb()));
        gradient.setColorAt(1, QColor::fromRgb(second.rgb()));
        painter.fillRect(result.rect(), gradient);
    }
    const int round = std::min({qRound(radius * scale), place.width() / 2, place.height() / 2});
    if (hasShadow) {
        const int reach = std::clamp(padding * 2 / 3, s_leastShadow, s_mostShadow);
        drawShadow(painter, place, round, reach * scale, whole);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(place.topLeft());
    if (round == 0) {
        painter.drawImage(0, 0, picture);
    } else {
        QBrush brush(picture);
        painter.setBrush(brush);
        painter.setPen(Qt::NoPen);
        painter.drawRoundedRect(QRect(QPoint(), place.size()), round, round);
    }
    painter.end();
    result.setDotsPerMeterX(picture.dotsPerMeterX());
    result.setDotsPerMeterY(picture.dotsPerMeterY());
    return result;
}

Backdrop Backdrop::turned(const QTransform &turn) const
{
    Backdrop result = *this;
    if (!blots.isEmpty())
        result.blots = blotsIn(imageOf(blots).transformed(turn));
    if (turn.m12() != 0)
        result.ratio.transpose();
    return result;
}

QList<QRgb> Backdrop::blotsOf(const QImage &picture)
{
    if (picture.isNull())
        return {};
    return blotsIn(picture.convertToFormat(QImage::Format_ARGB32_Premultiplied)
                       .scaled(s_blots, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}
