#include "editing/rendering.h"

#include <algorithm>

namespace {

constexpr QSize s_textBox(1000, 1000);  // picture pixels

void draw(QPainter &, const EmptyShape &, const EditMsg &) {}

void draw(QPainter &painter, const RectShape &shape, const EditMsg &style)
{
    DrawRect(painter, style.color, style.width, shape.outline);
}

void draw(QPainter &painter, const EllipseShape &shape, const EditMsg &)
{
    painter.drawEllipse(shape.bounds);
}

void draw(QPainter &painter, const ArrowShape &shape, const EditMsg &style)
{
    DrawArrow(painter, style.color, style.width, shape.points);
}

void draw(QPainter &painter, const PolylineShape &shape, const EditMsg &)
{
    painter.drawPolyline(shape.points);
}

struct TextLayout {
    QRect box{};
    int flags = 0;
};

// Lines that run from right to left have a common right side. It lies where the longest of them
// begins at `position`: there they stood in the field in which they were typed.
TextLayout layoutOf(QPainter &painter, QPoint position, const QString &text)
{
    const TextLayout leftToRight{QRect(position, s_textBox), Qt::AlignLeft | Qt::AlignTop};
    if (!text.isRightToLeft())
        return leftToRight;
    const int width = painter.boundingRect(leftToRight.box, leftToRight.flags, text).width();
    return {leftToRight.box.translated(std::min(width, s_textBox.width()) - s_textBox.width(), 0),
            Qt::AlignRight | Qt::AlignTop};
}

void draw(QPainter &painter, const TextShape &shape, const EditMsg &style)
{
    painter.setFont(style.font);
    const TextLayout layout = layoutOf(painter, shape.position, style.text);
    painter.drawText(layout.box, layout.flags, style.text);
}

}  // namespace

void DrawArrow(QPainter &painter, const QColor &color, int width, const QPolygon &arrow)
{
    if (arrow.size() < 3)
        return;
    painter.setPen(QPen(color, 1));
    painter.setBrush(color);
    painter.drawPolygon(arrow.first(arrow.size() - 2));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, width));
    painter.drawLine(arrow.last(), arrow.at(arrow.size() - 2));
}

void DrawRect(QPainter &painter, const QColor &color, int width, const QPolygon &rect)
{
    if (rect.size() < 5)
        return;
    painter.setPen(QPen(color, width));
    // Four lines and not one outline: the corners are those of lines that meet.
    for (qsizetype i = 0; i < 4; ++i)
        painter.drawLine(rect.at(i), rect.at(i + 1));
}

void drawShape(QPainter &painter, const Geometry &geometry, const EditMsg &style)
{
    painter.setPen(QPen(style.color, style.width));
    std::visit([&](const auto &shape) { draw(painter, shape, style); }, geometry);
}

QRect textBounds(QPainter &painter, QPoint position, const QString &text)
{
    // What is longer is cut off when it is drawn.
    const TextLayout layout = layoutOf(painter, position, text);
    return painter.boundingRect(layout.box, layout.flags, text) & layout.box;
}

QImage &cleanPixmap(const QImage &base, QImage &target, const QColor &color)
{
    if (!base.hasAlphaChannel())
        return target;
    if (base.format() == QImage::Format_ARGB32_Premultiplied && target.format() == base.format() &&
        color.alpha() == 0) {
        clearOutside(base, target, base.rect());
        return target;
    }
    // The pixel's value, not its stored form, is what counts, and fully transparent black is 0 in
    // both of the formats in use, premultiplied or not.
    const QImage pixels = base.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < pixels.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(pixels.constScanLine(y));
        for (int x = 0; x < pixels.width(); ++x) {
            if (line[x] == 0)
                target.setPixelColor(x, y, color);
        }
    }
    return target;
}

void clearOutside(const QImage &base, QImage &target, const QRect &part)
{
    if (base.format() != QImage::Format_ARGB32_Premultiplied)
        return;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const auto *from = reinterpret_cast<const QRgb *>(base.constScanLine(y));
        auto *to = reinterpret_cast<QRgb *>(target.scanLine(y));
        for (int x = part.left(); x <= part.right(); ++x) {
            if (qAlpha(from[x]) == 0)
                to[x] = 0;
        }
    }
}

QPoint useScreenDots(QImage &image)
{
    const QPoint told(image.dotsPerMeterX(), image.dotsPerMeterY());
    const QImage plain(1, 1, QImage::Format_RGB32);
    image.setDotsPerMeterX(plain.dotsPerMeterX());
    image.setDotsPerMeterY(plain.dotsPerMeterY());
    return told;
}

QImage replayed(const QImage &picture, const EditHistory &history, const QColor &background)
{
    QImage result = picture;
    if (!history.isEmpty() && !result.isNull()) {
        const QPoint dots = useScreenDots(result);
        QPainter painter(&result);
        painter.setRenderHint(QPainter::Antialiasing);
        for (auto entry = history.crbegin(); entry != history.crend(); ++entry)
            drawShape(painter, (*entry)->geometry, (*entry)->style);
        painter.end();
        result.setDotsPerMeterX(dots.x());
        result.setDotsPerMeterY(dots.y());
    }
    return cleanPixmap(picture, result, background);
}
