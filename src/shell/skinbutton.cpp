#include "shell/skinbutton.h"

#include <QPainter>

#include <algorithm>

namespace {

// Seen on the dark frame and on the bright strip alike.
constexpr QColor s_nameColor(120, 134, 146);
constexpr qreal s_radius = 5;
constexpr int s_largestText = 12;  // pixels

}  // namespace

void SkinButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    if (!icon().isNull()) {
        icon().paint(&painter, rect(), Qt::AlignCenter,
                     isEnabled() ? QIcon::Normal : QIcon::Disabled);
        return;
    }
    // A skin without its picture must not lose the command: a frame with the name's last
    // word, which tells one capture from the other.
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(s_nameColor);
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
