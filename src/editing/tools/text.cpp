#include "editing/tools/text.h"

#include "editing/shapeparts.h"
#include "editing/tiles.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize s_box(1000, 1000);  // picture pixels
constexpr int s_stackedLines = 12;
constexpr int s_leastLean = 8;  // as far as the plate reaches around the smallest text
constexpr int s_widestOutline = 8;
constexpr qreal s_roundest = 12;  // the radius of a plate's corners, picture pixels

struct Layout {
    QRect box{};
    int flags = 0;
};

// Right-to-left lines share their right edge. It is where the longest line begins at `position`,
// because the lines stood there in the field in which they were typed.
Layout layoutOf(QPainter &painter, QPoint position, const QString &text)
{
    const Layout leftToRight{QRect(position, s_box), Qt::AlignLeft | Qt::AlignTop};
    if (!text.isRightToLeft())
        return leftToRight;
    const int width = painter.boundingRect(leftToRight.box, leftToRight.flags, text).width();
    return {leftToRight.box.translated(std::min(width, s_box.width()) - s_box.width(), 0),
            Qt::AlignRight | Qt::AlignTop};
}

struct Measured {
    QRect bounds{};
    int lineHeight = 0;
};

// Where the letters are if the text begins at (0, 0) and runs as it was typed.
Measured measure(const EditMsg &style)
{
    QImage image(1, 1, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setFont(style.font);
    // A longer text is clipped when it is drawn.
    const Layout layout = layoutOf(painter, {}, style.text);
    return {painter.boundingRect(layout.box, layout.flags, style.text) & layout.box,
            painter.fontMetrics().height()};
}

// The plate behind a text, which has room for it.
QRect plateOf(const Measured &text)
{
    const int room = std::max(2, text.lineHeight / 6);
    return text.bounds.adjusted(-2 * room, -room, 2 * room, room);
}

int outlineOf(int lineHeight) { return std::clamp(qRound(lineHeight / 16.), 1, s_widestOutline); }

void drawPlate(QPainter &painter, const Measured &text, const QColor &color)
{
    if (text.bounds.isEmpty())
        return;
    const qreal radius = std::min(s_roundest, text.lineHeight / 4.);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(plateOf(text), radius, radius);
}

// The letters in the colour of their outline, at many places around their own. Those outlines that
// fonts tell depend slightly on what was drawn with a font before, and so would the pixels.
void drawOutline(QPainter &painter, const Layout &layout, const QString &text, int width)
{
    // Thin letters would leave gaps within a wide outline.
    for (int radius = width; radius > 0; radius -= 2) {
        const int copies = 4 + 4 * radius;
        for (int i = 0; i < copies; ++i) {
            const double angle = 2 * M_PI * i / copies;
            const QPointF by(radius * std::cos(angle), radius * std::sin(angle));
            painter.drawText(layout.box.translated(by.toPoint()), layout.flags, text);
        }
    }
}

// What a text takes with what is drawn around it.
QRect roomOf(const Measured &text, const EditMsg &style)
{
    const int outline = outlineOf(text.lineHeight);
    switch (style.ground) {
    case TextGround::Filled:
        return plateOf(text);
    case TextGround::Outlined:
        return text.bounds.adjusted(-outline, -outline, outline, outline);
    default:
        return text.bounds;
    }
}

// From the text as it was typed to the picture.
QTransform placed(const TextShape &text)
{
    return text.direction * QTransform::fromTranslate(text.position.x(), text.position.y());
}

}  // namespace

void TextShape::draw(QPainter &painter, const EditMsg &style) const
{
    painter.setFont(style.font);
    const QTransform before = painter.transform();
    painter.setTransform(placed(*this), true);
    const Layout layout = layoutOf(painter, {}, style.text);
    const QPen pen = painter.pen();
    const QColor ground = groundFor(style.color);
    if (style.ground == TextGround::Filled) {
        drawPlate(painter, measure(style), ground);
    } else if (style.ground == TextGround::Outlined) {
        painter.setPen(ground);
        drawOutline(painter, layout, style.text, outlineOf(painter.fontMetrics().height()));
    }
    painter.setPen(pen);
    painter.drawText(layout.box, layout.flags, style.text);
    painter.setTransform(before);
}

// What is drawn around the letters casts it.
void TextShape::drawShadow(QPainter &painter, const EditMsg &style) const
{
    painter.setFont(style.font);
    const QTransform before = painter.transform();
    if (style.ground == TextGround::Outlined) {
        const int outline = outlineOf(painter.fontMetrics().height());
        painter.setTransform(QTransform::fromTranslate(outline, outline), true);
    }
    painter.setTransform(placed(*this), true);
    const Layout layout = layoutOf(painter, {}, style.text);
    if (style.ground == TextGround::Filled)
        drawPlate(painter, measure(style), style.color);
    else
        painter.drawText(layout.box, layout.flags, style.text);
    painter.setTransform(before);
}

// Letters may extend beyond their bounding rectangle, and any number of combining marks may be
// stacked on a letter.
void TextShape::cover(Tiles &tiles, const EditMsg &style) const
{
    if (style.text.isEmpty())
        return;
    const bool hasMarks = std::any_of(style.text.begin(), style.text.end(),
                                      [](QChar character) { return character.isMark(); });
    const auto [bounds, lineHeight] = measure(style);
    const double lean = std::max(lineHeight, s_leastLean) * (hasMarks ? s_stackedLines : 1);
    tiles.addRect(placed(*this).mapRect(QRectF(bounds).adjusted(-lean, -lean, lean, lean)));
}

// The whole box of the text: nobody aims between its letters.
bool TextShape::hit(QPointF point, qreal grace, const EditMsg &style) const
{
    return !style.text.isEmpty() &&
           QRectF(box(style)).adjusted(-grace, -grace, grace, grace).contains(point);
}

QRect TextShape::box(const EditMsg &style) const
{
    return placed(*this).mapRect(roomOf(measure(style), style));
}

TextShape TextShape::mapped(const PictureMap &map, const EditMsg & /*style*/) const
{
    return {map(position), direction * map.direction()};
}

void TextShape::write(QJsonObject &to) const
{
    to["position"_L1] = QJsonArray{position.x(), position.y()};
    if (!direction.isIdentity()) {
        to["direction"_L1] =
            QJsonArray{direction.m11(), direction.m12(), direction.m21(), direction.m22()};
    }
}

TextShape TextShape::read(ShapeParts &parts)
{
    TextShape text{parts.points("position"_L1, 1, 1).first()};
    if (parts.value("direction"_L1).isArray()) {
        const QPolygon axes = parts.points("direction"_L1, 2, 2);
        const QPoint across = axes.first();
        const QPoint down = axes.last();
        // A whole number of quarters of a turn, mirrored or not.
        parts.require(across.manhattanLength() == 1 && down.manhattanLength() == 1 &&
                      QPoint::dotProduct(across, down) == 0);
        text.direction = QTransform(across.x(), across.y(), down.x(), down.y(), 0, 0);
    }
    return text;
}
