#include "shell/pin.h"

#include "base/palette.h"
#include "capture/overlayplate.h"
#include "platform/applicationwatch.h"
#include "platform/desktoppictures.h"
#include "platform/services.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_frame = 2;         // device pixels around the picture
constexpr int s_wordTime = 1000;   // ms
constexpr int s_wordDistance = 8;  // logical pixels from the corner
constexpr int s_move = 1;          // device pixels, for an arrow key
constexpr int s_farMove = 10;      // with Shift
constexpr int s_stillSeen = 32;    // device pixels of a pin that stay on the desktop
constexpr int s_chequer = 8;       // device pixels

QBrush chequers()
{
    QPixmap tile(2 * s_chequer, 2 * s_chequer);
    tile.fill(Qt::white);
    QPainter painter(&tile);
    painter.fillRect(0, 0, s_chequer, s_chequer, Qt::lightGray);
    painter.fillRect(s_chequer, s_chequer, s_chequer, s_chequer, Qt::lightGray);
    return tile;
}

QString percent(double part)
{
    return QString::number(static_cast<int>(std::lround(part * 100))) + u" %"_s;
}

}  // namespace

Pin::Pin(PinnedPicture pinned)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      m_pinned(std::move(pinned)), m_word(new OverlayPlate(this))
{
    m_pinned.place = held(m_pinned.place);
    setObjectName(u"pin"_s);
    setWindowTitle(m_pinned.name.isEmpty() ? tr("Pinned picture")
                                           : tr("Pinned picture: %1").arg(m_pinned.name));
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::SizeAllCursor);
    services().ownWindows->coverArea(this, area());
    setWindowOpacity(m_pinned.opacity);
    describe();
}

// Its frame is around it.
QRect Pin::area() const
{
    return QRect(m_pinned.place, m_pinned.shownSize())
        .adjusted(-s_frame, -s_frame, s_frame, s_frame);
}

void Pin::describe()
{
    setAccessibleName(windowTitle());
    setAccessibleDescription(tr("%1 x %2 pixels, zoom %3, opacity %4")
                                 .arg(m_pinned.picture.width())
                                 .arg(m_pinned.picture.height())
                                 .arg(percent(m_pinned.zoom), percent(m_pinned.opacity)));
}

void Pin::appear()
{
    QWidget::show();
    SetWindowNoShadown(this);
    raise();
}

void Pin::focus()
{
    raise();
    if (QWidget *before = QApplication::activeWindow(); before && !qobject_cast<Pin *>(before))
        m_before = before;
    else if (!before)
        m_before.clear();
    activateWindow();
    setFocus(Qt::OtherFocusReason);
}

void Pin::setOnScreen(bool onScreen)
{
    services().ownWindows->setOnScreen(this, onScreen);
    if (onScreen)
        refit();
}

bool Pin::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        update();
        break;
    // A Tab that leads nowhere else would be lost.
    case QEvent::KeyPress: {
        const auto &key = static_cast<const QKeyEvent &>(*event);
        if (key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab) {
            emit nextWanted();
            return true;
        }
        break;
    }
    case QEvent::ScreenChangeInternal:
        refit();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void Pin::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    refit();
}

// Whoever had the keyboard before gets it back.
void Pin::closeEvent(QCloseEvent *event)
{
    const bool hadKeyboard = isActiveWindow();
    QWidget::closeEvent(event);
    emit closed();
    if (hadKeyboard && m_before && m_before->isVisible())
        m_before->activateWindow();
    else if (hadKeyboard)
        SetPreAppActive();
}

// The toolkit's sizes are whole logical pixels, and what is over stays empty.
void Pin::refit()
{
    const QSizeF size = QSizeF(area().size()) / devicePixelRatioF();
    resize(static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height())));
    services().ownWindows->moveWindow(this, area().topLeft());
    update();
}

// It is scaled once, and not for each time that it is painted.
const QPixmap &Pin::shown()
{
    const QSize size = m_pinned.shownSize();
    if (m_shown.size() != size) {
        const QImage &picture = m_pinned.picture;
        // Enlarged pixels stay sharp, as the magnifier has them.
        const bool isSharp = size.width() >= 2 * picture.width();
        m_shown = QPixmap::fromImage(
            size == picture.size()
                ? picture
                : picture.scaled(size, Qt::IgnoreAspectRatio,
                                 isSharp ? Qt::FastTransformation : Qt::SmoothTransformation));
        m_shown.setDevicePixelRatio(1);
    }
    return m_shown;
}

void Pin::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.scale(1 / devicePixelRatioF(), 1 / devicePixelRatioF());
    const QRect picture(QPoint(s_frame, s_frame), m_pinned.shownSize());
    // A dark and a light line can be seen on any ground; with the keyboard the light one is blue.
    painter.setPen(Qt::NoPen);
    const auto frame = [&](int distance, const QColor &color) {
        const QRect outer = picture.adjusted(-distance, -distance, distance, distance);
        const QRect inner = outer.adjusted(1, 1, -1, -1);
        for (const QRect &side : QRegion(outer).subtracted(inner))
            painter.fillRect(side, color);
    };
    frame(2, QColor(0x30, 0x30, 0x30));
    frame(1, isActiveWindow() ? QColor(0x4d, 0xa3, 0xff) : QColor(0xe0, 0xe0, 0xe0));
    if (m_pinned.picture.hasAlphaChannel() && !services().ownWindows->isComposited())
        painter.fillRect(picture, chequers());
    painter.drawPixmap(picture.topLeft(), shown());
}

// As near as some of it stays on the desktop: a screen may be gone.
QPoint Pin::held(QPoint place) const
{
    const QRect desktop = desktopBox();
    const QSize size = m_pinned.shownSize();
    const auto one = [](int at, int length, int from, int room) {
        const int least = from + s_stillSeen - length;
        return std::clamp(at, least, std::max(least, from + room - s_stillSeen));
    };
    return {one(place.x(), size.width(), desktop.x(), desktop.width()),
            one(place.y(), size.height(), desktop.y(), desktop.height())};
}

void Pin::moveTo(QPoint place)
{
    m_pinned.place = held(place);
    services().ownWindows->moveWindow(this, area().topLeft());
    emit changed();
}

void Pin::zoomTo(double zoom, QPoint point)
{
    m_pinned.zoomAt(zoom, point);
    refit();
    show(percent(m_pinned.zoom));
    describe();
    moveTo(m_pinned.place);
}

void Pin::stepZoom(int steps, QPoint point)
{
    zoomTo(m_pinned.steppedZoom(steps, desktopBox().size()), point);
}

void Pin::stepOpacity(int steps)
{
    if (!services().ownWindows->isComposited()) {
        show(tr("This desktop shows no translucent windows"));
        return;
    }
    m_pinned.opacity = m_pinned.steppedOpacity(steps);
    setWindowOpacity(m_pinned.opacity);
    show(tr("Opacity %1").arg(percent(m_pinned.opacity)));
    describe();
    emit changed();
}

void Pin::show(const QString &word)
{
    m_word->tell(word);
    m_word->move(s_wordDistance, s_wordDistance);
    m_word->show();
    const int number = ++m_words;
    services().clock->after(s_wordTime, m_word, [this, number] {
        if (number == m_words)
            m_word->hide();
    });
}

bool Pin::hearsKey(int key, Qt::KeyboardModifiers modifiers)
{
    const QPoint middle = QRect(m_pinned.place, m_pinned.shownSize()).center();
    const int distance = modifiers.testFlag(Qt::ShiftModifier) ? s_farMove : s_move;
    const bool hasCtrl = modifiers.testFlag(Qt::ControlModifier);
    switch (key) {
    case Qt::Key_Escape:
        close();
        return true;
    case Qt::Key_Left:
        moveTo(m_pinned.place - QPoint(distance, 0));
        return true;
    case Qt::Key_Right:
        moveTo(m_pinned.place + QPoint(distance, 0));
        return true;
    case Qt::Key_Up:
        moveTo(m_pinned.place - QPoint(0, distance));
        return true;
    case Qt::Key_Down:
        moveTo(m_pinned.place + QPoint(0, distance));
        return true;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        hasCtrl ? stepOpacity(1) : stepZoom(1, middle);
        return true;
    case Qt::Key_Minus:
        hasCtrl ? stepOpacity(-1) : stepZoom(-1, middle);
        return true;
    case Qt::Key_0:
        zoomTo(1, middle);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        emit editWanted();
        return true;
    case Qt::Key_C:
        if (hasCtrl)
            emit copyWanted();
        return hasCtrl;
    case Qt::Key_S:
        if (hasCtrl)
            emit saveWanted();
        return hasCtrl;
    default:
        return false;
    }
}

void Pin::keyPressEvent(QKeyEvent *event)
{
    if (!hearsKey(event->key(), event->modifiers()))
        QWidget::keyPressEvent(event);
}

void Pin::mousePressEvent(QMouseEvent *event)
{
    focus();
    if (event->button() != Qt::LeftButton)
        return;
    m_isDragged = true;
    m_grip = services().hands->pointer() - m_pinned.place;
}

void Pin::mouseMoveEvent(QMouseEvent * /*event*/)
{
    if (m_isDragged)
        moveTo(services().hands->pointer() - m_grip);
}

void Pin::mouseReleaseEvent(QMouseEvent * /*event*/) { m_isDragged = false; }

void Pin::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        close();
}

void Pin::wheelEvent(QWheelEvent *event)
{
    m_turned += event->angleDelta().y();
    const int steps = m_turned / QWheelEvent::DefaultDeltasPerStep;
    m_turned -= steps * QWheelEvent::DefaultDeltasPerStep;
    event->accept();
    if (steps == 0)
        return;
    if (event->modifiers().testFlag(Qt::ControlModifier))
        stepOpacity(steps);
    else
        stepZoom(steps, services().hands->pointer());
}

void Pin::contextMenuEvent(QContextMenuEvent *event)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const QString &text, const QKeySequence &keys, auto run) {
        QAction *action = menu->addAction(text);
        action->setShortcut(keys);
        action->setShortcutVisibleInContextMenu(true);
        connect(action, &QAction::triggered, this, run);
        return action;
    };
    const QPoint middle = QRect(m_pinned.place, m_pinned.shownSize()).center();
    add(tr("&Copy"), Qt::CTRL | Qt::Key_C, [this] { emit copyWanted(); });
    add(tr("&Save"), Qt::CTRL | Qt::Key_S, [this] { emit saveWanted(); });
    add(tr("&Mark Up in a Tab"), Qt::Key_Return, [this] { emit editWanted(); });
    menu->addSeparator();
    add(tr("Zoom &In"), Qt::Key_Plus, [this, middle] { stepZoom(1, middle); });
    add(tr("Zoom &Out"), Qt::Key_Minus, [this, middle] { stepZoom(-1, middle); });
    add(tr("&Real Size"), Qt::Key_0, [this, middle] { zoomTo(1, middle); });
    const bool canBlend = services().ownWindows->isComposited();
    add(tr("More &Translucent"), Qt::CTRL | Qt::Key_Minus, [this] {
        stepOpacity(-1);
    })->setEnabled(canBlend && m_pinned.opacity > PinnedPicture::s_leastOpacity);
    add(tr("&Less Translucent"), Qt::CTRL | Qt::Key_Plus, [this] {
        stepOpacity(1);
    })->setEnabled(canBlend && m_pinned.opacity < 1);
    menu->addSeparator();
    add(tr("Close"), Qt::Key_Escape, [this] { close(); });
    add(tr("Close &All Pins"), {}, [this] { emit closeAllWanted(); });
    menu->popup(event->reason() == QContextMenuEvent::Keyboard ? mapToGlobal(rect().center())
                                                               : event->globalPos());
}
