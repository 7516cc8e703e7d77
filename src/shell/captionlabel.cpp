#include "shell/captionlabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

QSize CaptionLabel::minimumSizeHint() const { return {0, QLabel::minimumSizeHint().height()}; }

// Both ends matter: the picture's name, with its mark of changes, and the program's.
QString CaptionLabel::shownText() const
{
    return fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width());
}

void CaptionLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(contentsRect(), static_cast<int>(alignment()) | Qt::TextSingleLine,
                     shownText());
}

bool CaptionLabel::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    // Plain text: a file's name may look like mark-up.
    const bool isCut = shownText() != text();
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(),
                       isCut ? text().toHtmlEscaped() : QString(), this);
    return true;
}
