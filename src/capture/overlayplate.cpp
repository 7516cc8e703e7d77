#include "capture/overlayplate.h"

#include "base/palette.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_margin = 12;  // logical pixels
constexpr int s_font = 12;

}  // namespace

void paintOverlayFrame(QWidget &widget)
{
    QPainter painter(&widget);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Palette::overlayFrame);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(QRectF(widget.rect()).adjusted(2.0, 2.0, -2.0, -2.0), 10.0, 10.0,
                            Qt::AbsoluteSize);
}

OverlayPlate::OverlayPlate(QWidget *parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setStyleSheet(u"color: white; background: transparent;"_s);
    QFont plain = font();
    plain.setPixelSize(s_font);
    setFont(plain);
    setMargin(s_margin);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void OverlayPlate::tell(const QString &text)
{
    setText(text);
    adjustSize();
}

void OverlayPlate::paintEvent(QPaintEvent *event)
{
    paintOverlayFrame(*this);
    QLabel::paintEvent(event);
}
