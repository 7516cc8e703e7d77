#include "editing/tools/text.h"

#include "editing/shapeparts.h"
#include "editing/tiles.h"

#include <QImage>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize s_box(1000, 1000);  // picture pixels
constexpr int s_stackedLines = 12;

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

Measured measure(QPoint position, const EditMsg &style)
{
    QImage image(1, 1, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setFont(style.font);
    // A longer text is clipped when it is drawn.
    const Layout layout = layoutOf(painter, position, style.text);
    return {painter.boundingRect(layout.box, layout.flags, style.text) & layout.box,
            painter.fontMetrics().height()};
}

}  // namespace

void TextShape::draw(QPainter &painter, const EditMsg &style) const
{
    painter.setFont(style.font);
    const Layout layout = layoutOf(painter, position, style.text);
    painter.drawText(layout.box, layout.flags, style.text);
}

// Letters may extend beyond their bounding rectangle, and any number of combining marks may be
// stacked on a letter.
void TextShape::cover(Tiles &tiles, const EditMsg &style) const
{
    if (style.text.isEmpty())
        return;
    const bool hasMarks = std::any_of(style.text.begin(), style.text.end(),
                                      [](QChar character) { return character.isMark(); });
    const auto [bounds, lineHeight] = measure(position, style);
    const double lean = lineHeight * (hasMarks ? s_stackedLines : 1);
    tiles.addRect(QRectF(bounds).adjusted(-lean, -lean, lean, lean));
}

// The whole box of the text: nobody aims between its letters.
bool TextShape::hit(QPointF point, qreal grace, const EditMsg &style) const
{
    return !style.text.isEmpty() && QRectF(measure(position, style).bounds)
                                        .adjusted(-grace, -grace, grace, grace)
                                        .contains(point);
}

void TextShape::write(QJsonObject &to) const
{
    to["position"_L1] = QJsonArray{position.x(), position.y()};
}

TextShape TextShape::read(ShapeParts &parts) { return {parts.points("position"_L1, 1, 1).first()}; }
