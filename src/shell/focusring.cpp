#include "shell/focusring.h"

#include "base/palette.h"

#include <QFocusEvent>
#include <QPainter>

namespace {

constexpr int s_width = 2;

}  // namespace

FocusRing::FocusRing(QWidget *target) : QWidget(target->parentWidget()), m_target(target)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
    target->installEventFilter(this);
    connect(target, &QObject::destroyed, this, &QObject::deleteLater);
}

bool FocusRing::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn) {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) {
            fit();
            show();
        }
    } else if (event->type() == QEvent::FocusOut) {
        // A window that loses the front or opens a menu gets the focus back for another reason.
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
            hide();
    } else if (event->type() == QEvent::Resize || event->type() == QEvent::Move) {
        fit();
    }
    return QWidget::eventFilter(watched, event);
}

// No more than the ring: what changes inside it must not be painted twice.
void FocusRing::fit()
{
    setGeometry(m_target->geometry());
    setMask(QRegion(rect()) - rect().adjusted(s_width, s_width, -s_width, -s_width));
    raise();
}

void FocusRing::paintEvent(QPaintEvent * /*event*/)
{
    QPainter(this).fillRect(rect(), Palette::accentDown);
}
