#include "shell/skinbutton.h"

#include <QPainter>

namespace {

// Seen on the dark frame and on the bright strip alike.
constexpr QColor s_nameColor(120, 134, 146);
constexpr qreal s_radius = 5;

}  // namespace

void SkinButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    if (!icon().isNull()) {
        icon().paint(&painter, rect(), Qt::AlignCenter,
                     isEnabled() ? QIcon::Normal : QIcon::Disabled);
        return;
    }
    // A skin without its picture must not lose the command: a frame with the name's beginning.
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(s_nameColor);
    const QRectF frame = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    painter.drawRoundedRect(frame, s_radius, s_radius);
    QFont small = font();
    small.setPixelSize(height() / 3);
    painter.setFont(small);
    const int room = static_cast<int>(frame.width()) - 4;
    QString name = accessibleName();
    while (painter.fontMetrics().horizontalAdvance(name) > room)
        name.chop(1);
    painter.drawText(frame, Qt::AlignCenter, name);
}
