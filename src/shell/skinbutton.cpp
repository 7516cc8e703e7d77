#include "shell/skinbutton.h"

#include <QPainter>

void SkinButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    icon().paint(&painter, rect(), Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
}
