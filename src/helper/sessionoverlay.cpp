#include "helper/sessionoverlay.h"

#include "helper/hintplate.h"
#include "platform/services.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace {

constexpr QColor s_outline(61, 165, 244);
constexpr QColor s_outlineFill(61, 165, 244, 40);
constexpr qreal s_outlineWidth = 2;  // logical pixels
constexpr int s_fromEdge = 48;
// The hint keeps this far from the pointer.
constexpr int s_hintDistance = 60;
// The pointer has to go this far, in device pixels, before another program is asked again.
constexpr int s_askDistance = 12;

}  // namespace

SessionOverlay::SessionOverlay()
    : mouseShot(nullptr), m_hint(new HintPlate(this)), m_asks(services().accessibility->isEnabled())
{
    m_hint->setHeadline(tr("Point at a window"));
    m_hint->addLine(tr("Click"), tr("takes the window"));
    m_hint->addLine(tr("Ctrl+click, Return"), tr("takes all that scrolls in it"));
    m_hint->addLine(tr("Escape"), tr("gives up"));
    placeHint();
    m_hint->show();
    SessionOverlay::looked();
}

SessionOverlay::~SessionOverlay() { services().accessibility->dropQuestion(); }

std::optional<SessionOverlay::Choice> SessionOverlay::choice() const
{
    const auto window = picked();
    if (!window)
        return std::nullopt;
    const bool isKnown = m_askedWindow == window->number && m_scrollingArea.contains(m_chosenAt);
    return Choice{.window = *window,
                  .content = m_content,
                  .area = isKnown ? m_scrollingArea : QRect(),
                  .pointer = m_chosenAt};
}

bool SessionOverlay::eventFilter(QObject *watched, QEvent *event)
{
    if (isHeldEnd(*event))
        return true;
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::KeyPress)
        followWindows();
    // What can't be taken is not accepted.
    const bool isPicked = picked().has_value();
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        if (!isPicked && static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton)
            return true;
        m_content = static_cast<QMouseEvent *>(event)->modifiers() & Qt::ControlModifier;
        m_chosenAt = pointer();
        break;
    case QEvent::KeyPress: {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key != Qt::Key_Return && key != Qt::Key_Enter)
            break;
        m_content = true;
        m_chosenAt = pointer();
        if (isPicked)
            accept();
        return true;
    }
    default:
        break;
    }
    return mouseShot::eventFilter(watched, event);
}

// A window that has gone, or the frame that one has left behind for a moment, can't be taken.
void SessionOverlay::followWindows()
{
    const auto window = picked();
    const auto windows = services().windows->windows(WindowServer::List::OnScreen, 0);
    const bool isGone =
        window && std::none_of(windows.begin(), windows.end(),
                               [&](const auto &entry) { return entry.number == window->number; });
    if (isGone)
        readAgain();
}

void SessionOverlay::looked()
{
    followWindows();
    placeHint();
    const auto window = picked();
    if (!window || !m_asks)
        return;
    const QPoint at = pointer();
    const bool isOther = window->number != m_askedWindow;
    if (isOther)
        setScrollingArea({});
    // Also within the area that is known: there may be another one in it.
    if (isOther || (at - m_askedAt).manhattanLength() >= s_askDistance)
        ask(*window, at);
}

void SessionOverlay::ask(const WindowServer::Entry &window, QPoint at)
{
    m_askedWindow = window.number;
    m_askedAt = at;
    const QRect bounds = window.bounds.toRect();
    services().accessibility->findScrollingArea(
        {.point = at, .window = bounds, .process = window.process, .title = window.name},
        [this, bounds](const QRect &found) { setScrollingArea(found & bounds); });
}

void SessionOverlay::setScrollingArea(const QRect &global)
{
    if (global == m_scrollingArea)
        return;
    m_scrollingArea = global;
    updateAll();
}

// At the foot of the pointer's screen, or at its head while the pointer is at the foot.
void SessionOverlay::placeHint()
{
    m_hint->adjustSize();
    const QPoint at = pointer();
    QRect screen = area();
    for (const QRect &candidate : services().windows->screens()) {
        if (candidate.contains(at))
            screen = candidate;
    }
    const QPoint corner = screen.topLeft() - area().topLeft();
    const QPoint farCorner = corner + QPoint(screen.width(), screen.height());
    const QRect logical(toLogical(corner), toLogical(farCorner) - QPoint(1, 1));
    const int x = logical.x() + (logical.width() - m_hint->width()) / 2;
    const int foot = logical.y() + logical.height() - m_hint->height() - s_fromEdge;
    const QRect atFoot(QPoint(x, foot), m_hint->size());
    const QRect around =
        atFoot.adjusted(-s_hintDistance, -s_hintDistance, s_hintDistance, s_hintDistance);
    const bool isNear = around.contains(toLogical(at - area().topLeft()));
    m_hint->move(isNear ? QPoint(x, logical.y() + s_fromEdge) : atFoot.topLeft());
}

void SessionOverlay::draw(QPainter &painter)
{
    mouseShot::draw(painter);
    const auto window = picked();
    if (m_scrollingArea.isEmpty() || !window || window->number != m_askedWindow)
        return;
    const qreal width = s_outlineWidth * devicePixelRatioF();
    painter.setPen(QPen(s_outline, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(s_outlineFill);
    const QRectF inside = QRectF(m_scrollingArea.translated(-area().topLeft()));
    painter.drawRect(inside.adjusted(width / 2, width / 2, -width / 2, -width / 2));
}
