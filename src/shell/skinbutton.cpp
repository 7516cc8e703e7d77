#include "shell/skinbutton.h"

#include "base/palette.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr qreal s_radius = 5;
constexpr qreal s_focusWidth = 2;
constexpr int s_largestText = 12;  // pixels

}  // namespace

SkinButton::SkinButton(QWidget *parent) : QPushButton(parent)
{
    setFocusPolicy(Qt::TabFocus);
    setFlat(true);
}

// The space bar alone does so by itself, outside of dialogs.
void SkinButton::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QPushButton::keyPressEvent(event);
}

void SkinButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    if (icon().isNull())
        paintName(painter);
    else
        icon().paint(&painter, rect(), Qt::AlignCenter,
                     isEnabled() ? QIcon::Normal : QIcon::Disabled);
    if (!hasFocus())
        return;
    // Two rings: the inner one is seen on dark and on the plate of a chosen tool, the outer one on
    // the bright strip.
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Palette::accentDown, s_focusWidth));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), s_radius, s_radius);
    painter.setPen(QPen(Qt::white, 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5), s_radius - 1.5,
                            s_radius - 1.5);
}

// A skin without its picture must not lose the command: a frame with the name's last word, which
// tells one capture from the other.
void SkinButton::paintName(QPainter &painter)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Palette::nameOnBoth);
    const QRectF frame = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    painter.drawRoundedRect(frame, s_radius, s_radius);
    QFont small = font();
    small.setPixelSize(std::min(height() / 3, s_largestText));
    painter.setFont(small);
    const int room = static_cast<int>(frame.width()) - 4;
    QString name = accessibleName().section(u' ', -1);
    while (painter.fontMetrics().horizontalAdvance(name) > room)
        name.chop(1);
    painter.drawText(frame, Qt::AlignCenter, name);
}
