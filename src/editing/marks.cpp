#include "editing/marks.h"

#include "base/palette.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainterPath>

#include <algorithm>

namespace {

// Logical pixels.
constexpr qreal s_handle = 4;  // half of a side
constexpr qreal s_cross = 9;
constexpr qreal s_plateGap = 12;
constexpr qreal s_platePadding = 5;
constexpr int s_plateText = 12;
constexpr qreal s_outlineGap = 4;
constexpr int s_veil = 130;  // of 255
constexpr int s_tint = 60;   // the same

constexpr QColor s_light(255, 255, 255);

QPen pen(const QColor &color, qreal width, Qt::PenStyle style = Qt::SolidLine)
{
    QPen result(color, width, style, Qt::FlatCap);
    result.setJoinStyle(Qt::MiterJoin);
    return result;
}

}  // namespace

namespace Marks {

void frame(QPainter &painter, const QRectF &rect, qreal ratio)
{
    painter.setBrush(Qt::NoBrush);
    painter.setPen(pen(s_light, ratio));
    painter.drawRect(rect);
    QPen dashes = pen(Palette::accentDown, ratio, Qt::CustomDashLine);
    dashes.setDashPattern({4, 3});
    painter.setPen(dashes);
    painter.drawRect(rect);
}

void handle(QPainter &painter, QPointF centre, bool isRound, qreal ratio)
{
    const qreal half = s_handle * ratio;
    const QRectF place(centre.x() - half, centre.y() - half, 2 * half, 2 * half);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen(Palette::accentDown, 1.5 * ratio));
    painter.setBrush(s_light);
    if (isRound)
        painter.drawEllipse(place);
    else
        painter.drawRoundedRect(place, ratio, ratio);
    painter.restore();
}

qreal reach(qreal ratio) { return (s_handle + 3) * ratio; }

void cropFrame(QPainter &painter, const QRectF &picture, const QRectF &frame, qreal ratio)
{
    QPainterPath veil;
    veil.addRect(picture);
    veil.addRect(frame);
    painter.fillPath(veil, Palette::translucent(Qt::black, s_veil));
    if (frame.isEmpty())
        return;
    for (const auto &[color, shift] :
         {std::pair(QColor(0, 0, 0, 90), ratio), {QColor(255, 255, 255, 150), 0.}}) {
        painter.setPen(pen(color, ratio));
        for (const int third : {1, 2}) {
            const qreal x = frame.x() + frame.width() * third / 3 + shift;
            const qreal y = frame.y() + frame.height() * third / 3 + shift;
            painter.drawLine(QPointF(x, frame.top()), QPointF(x, frame.bottom()));
            painter.drawLine(QPointF(frame.left(), y), QPointF(frame.right(), y));
        }
    }
    Marks::frame(painter, frame, ratio);
    for (const int column : {0, 1, 2}) {
        for (const int row : {0, 1, 2}) {
            if (column != 1 || row != 1) {
                handle(
                    painter,
                    {frame.x() + frame.width() * column / 2, frame.y() + frame.height() * row / 2},
                    false, ratio);
            }
        }
    }
}

void proposal(QPainter &painter, const QRectF &rect, bool isTaken, qreal ratio)
{
    if (isTaken)
        painter.fillRect(rect, Palette::translucent(Palette::accent, s_tint));
    frame(painter, rect, ratio);
}

void outline(QPainter &painter, const QRectF &rect, qreal ratio)
{
    painter.setBrush(Qt::NoBrush);
    const qreal gap = s_outlineGap * ratio;
    for (const auto &[color, width] :
         {std::pair(s_light, 4 * ratio), {Palette::accentDown, 2 * ratio}}) {
        painter.setPen(pen(color, width));
        painter.drawRect(rect.adjusted(-gap, -gap, gap, gap));
    }
}

void crosshair(QPainter &painter, QPointF centre, qreal ratio)
{
    const QPointF across(s_cross * ratio, 0);
    const QPointF down(0, s_cross * ratio);
    for (const auto &[color, width] : {std::pair(s_light, 3 * ratio), {Palette::dark, ratio}}) {
        painter.setPen(pen(color, width));
        painter.drawLine(centre - across, centre + across);
        painter.drawLine(centre - down, centre + down);
    }
}

QRectF plate(QPainter &painter, QPointF beside, const QString &text, const QColor &color,
             const QRectF &room, qreal ratio)
{
    painter.save();
    QFont font = QGuiApplication::font();
    font.setPixelSize(qRound(s_plateText * ratio));
    painter.setFont(font);
    const QFontMetricsF metrics(font);
    const qreal padding = s_platePadding * ratio;
    const qreal swatch = color.isValid() ? metrics.height() + padding : 0;
    QRectF place(beside + QPointF(s_plateGap, s_plateGap) * ratio,
                 QSizeF(metrics.horizontalAdvance(text) + swatch + 2 * padding,
                        metrics.height() + 2 * padding));
    place.moveLeft(std::max(room.left(), std::min(place.left(), room.right() - place.width())));
    if (place.bottom() > room.bottom())
        place.moveBottom(std::max(room.top() + place.height(), beside.y() - s_plateGap * ratio));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen(Palette::darkEdge, ratio));
    painter.setBrush(Palette::dark);
    painter.drawRoundedRect(place, 4 * ratio, 4 * ratio);
    const QRectF inside = place.adjusted(padding, padding, -padding, -padding);
    if (color.isValid()) {
        painter.setPen(pen(s_light, ratio));
        painter.setBrush(color);
        painter.drawRect(QRectF(inside.topLeft(), QSizeF(inside.height(), inside.height())));
    }
    painter.setPen(Palette::textOnDark);
    painter.drawText(inside.adjusted(swatch, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, text);
    painter.restore();
    return place.adjusted(-ratio, -ratio, ratio, ratio);
}

}  // namespace Marks
