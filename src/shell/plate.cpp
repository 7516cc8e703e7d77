#include "shell/plate.h"

#include "base/palette.h"

#include <QPainter>

namespace {

constexpr qreal s_radius = 8;
constexpr qreal s_buttonRadius = 5;
constexpr qreal s_stroke = 1.75;
constexpr int s_padding = 12;
constexpr int s_room = 8;

}  // namespace

void paintPlate(QWidget &widget)
{
    QPainter painter(&widget);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Palette::darkEdge);
    painter.setBrush(Palette::dark);
    painter.drawRoundedRect(QRectF(widget.rect()).adjusted(0.5, 0.5, -0.5, -0.5), s_radius,
                            s_radius);
}

PlateButton::PlateButton(const QString &text) : QPushButton(text)
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize PlateButton::sizeHint() const
{
    const int height = fontMetrics().height() + s_room;
    const int width = fontMetrics().size(Qt::TextShowMnemonic, text()).width();
    return {text().isEmpty() ? height : width + 2 * s_padding, height};
}

// The pointer leaves a button that goes away under it without a word.
void PlateButton::hideEvent(QHideEvent *event)
{
    setAttribute(Qt::WA_UnderMouse, false);
    QPushButton::hideEvent(event);
}

void PlateButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF plate = QRectF(rect()).adjusted(1, 1, -1, -1);
    const bool hasPlate = !text().isEmpty() || underMouse() || isDown();
    painter.setPen(hasFocus()         ? QPen(Palette::accent, 2)
                   : text().isEmpty() ? QPen(Qt::NoPen)
                                      : QPen(Palette::darkEdge));
    if (hasPlate)
        painter.setBrush(isDown()       ? Palette::accentDown
                         : underMouse() ? Palette::darkEdge
                                        : Palette::darkRaised);
    painter.drawRoundedRect(plate, s_buttonRadius, s_buttonRadius);
    painter.setPen(QPen(Palette::textOnDark, s_stroke, Qt::SolidLine, Qt::RoundCap));
    if (!text().isEmpty()) {
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextShowMnemonic, text());
        return;
    }
    const qreal arm = height() / 5.0;
    const QPointF middle = plate.center();
    painter.drawLine(middle - QPointF(arm, arm), middle + QPointF(arm, arm));
    painter.drawLine(middle - QPointF(arm, -arm), middle + QPointF(arm, -arm));
}
