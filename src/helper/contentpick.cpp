#include "helper/contentpick.h"

#include "base/palette.h"
#include "helper/hintplate.h"
#include "platform/services.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

constexpr qreal s_outlineWidth = 2;  // logical pixels
constexpr int s_fromEdge = 48;
// The minimum distance between hint and pointer.
constexpr int s_hintDistance = 60;
// The pointer must move this far, in device pixels, before another program is asked again.
constexpr int s_askDistance = 12;
// The smallest side of a marked area in device pixels; in less no movement can be recognised.
constexpr int s_smallestMark = 24;
constexpr int s_handLimit = 60000;  // ms

}  // namespace

ContentPick::ContentPick()
    : mouseShot(nullptr), m_hint(new HintPlate(this)),
      m_knowsWindows(services().abilities.lackOf(Ability::WindowList).isEmpty()),
      m_asks(m_knowsWindows && services().accessibility->isEnabled())
{
    tellKeys();
    placeHint();
    m_hint->show();
    ContentPick::looked();
}

ContentPick::~ContentPick() { services().accessibility->dropQuestion(); }

std::optional<ContentPick::Choice> ContentPick::choice() const
{
    Choice choice = m_chosen;
    if (choice.marked && m_markedWindow) {
        choice.window = *m_markedWindow;
        choice.area = m_marked;
        if (!m_marked.contains(choice.pointer))
            choice.pointer = m_marked.center();
        return choice;
    }
    const auto window = picked();
    if (!window)
        return std::nullopt;
    choice.window = *window;
    choice.marked = false;
    if (m_askedWindow == window->number && m_scrollingArea.contains(choice.pointer))
        choice.area = m_scrollingArea;
    return choice;
}

bool ContentPick::canBeTaken() const
{
    return (m_chosen.marked && m_markedWindow) || mouseShot::canBeTaken();
}

void ContentPick::tellKeys()
{
    m_hint->clearLines();
    if (m_markedWindow)
        tellMark();
    if (m_isDragged) {
        m_hint->addLine(tr("Release"), tr("marks this part: Return or H takes what scrolls in it"));
    } else if (m_knowsWindows) {
        tellKeysOfWindows();
    } else {
        tellKeysOfScreens();
    }
    m_hint->addLine(tr("Esc"), tr("gives up"));
    m_hint->adjustSize();
}

void ContentPick::tellKeysOfWindows()
{
    if (!m_markedWindow) {
        m_hint->setHeadline(tr("Point at a window"));
        m_hint->addLine(tr("Tab"), tr("goes to the next window"));
    }
    m_hint->addLine(tr("Click, Space"), tr("takes the window"));
    m_hint->addLine(tr("Ctrl+click, Return"),
                    m_markedWindow ? tr("takes all that scrolls there, by the wheel")
                                   : tr("takes all that scrolls in it, by the wheel"));
    m_hint->addLine(tr("Shift held"), tr("also what lies beside the view"));
    m_hint->addLine(tr("H"), tr("takes what you scroll with your own hands"));
    m_hint->addLine(tr("Drag"), m_markedWindow ? tr("marks another part of a window")
                                               : tr("marks the part of a window that scrolls"));
}

void ContentPick::tellKeysOfScreens()
{
    if (!m_markedWindow)
        m_hint->setHeadline(tr("Mark the part of the screen that scrolls"));
    m_hint->addLine(tr("Drag"), m_markedWindow ? tr("marks another part") : tr("marks it"));
    m_hint->addLine(tr("Return, H"), tr("takes what you scroll with your own hands"));
    m_hint->addLine(tr("Then"),
                    tr("this grab again, or a start of this program, keeps what there is"));
}

void ContentPick::tellMark()
{
    m_hint->setHeadline(tr("Marked: %1 × %2 pixels").arg(m_marked.width()).arg(m_marked.height()));
}

void ContentPick::choose(Way way, Qt::KeyboardModifiers modifiers)
{
    // A key applies to the displayed window, a click to the window under the pointer.
    if (m_markedWindow && !m_isPressed)
        pick(m_markedWindow->number);
    m_chosen.way = way;
    m_chosen.across = way == Way::Content && modifiers.testFlag(Qt::ShiftModifier);
    m_chosen.pointer = pointer();
    // A click applies to what is under the pointer, a key to the marked area.
    m_chosen.marked =
        m_markedWindow && way != Way::Window && (!m_isPressed || m_marked.contains(m_pressedAt));
    // Elsewhere the capture itself waits for free hands; here only this overlay sees them.
    if (!services().pictures->isLive() && way != Way::Window)
        waitUntil(*services().clock, s_handLimit,
                  [this] { return !isVisible() || !services().hands->isHandBusy(); });
    if (isVisible())
        accept();
}

bool ContentPick::paneEvent(const Pane &pane, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::KeyPress)
        followWindows();
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        if (pressed(pane, *static_cast<QMouseEvent *>(event)))
            return true;
        break;
    case QEvent::MouseMove:
        dragged(pane, *static_cast<QMouseEvent *>(event));
        break;
    case QEvent::MouseButtonRelease:
        released(pane, *static_cast<QMouseEvent *>(event));
        break;
    case QEvent::KeyPress: {
        const auto &key = *static_cast<QKeyEvent *>(event);
        const bool isReturn = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
        const bool isSpace = key.key() == Qt::Key_Space;
        if (!isReturn && !isSpace && key.key() != Qt::Key_H)
            break;
        const Way way = isReturn ? Way::Content : isSpace ? Way::Window : Way::Hands;
        if (!m_isPressed && m_knowsWindows)
            choose(way, key.modifiers());
        else if (!m_isPressed && !isSpace)
            choose(Way::Hands, key.modifiers());
        return true;
    }
    default:
        break;
    }
    return mouseShot::paneEvent(pane, event);
}

// A click of the left button takes something, a drag marks an area.
bool ContentPick::pressed(const Pane &pane, const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton)
        return false;
    m_isPressed = true;
    m_isDragged = false;
    // The pointer may have moved since, so the event's position is used.
    m_pressedAt = placeOf(pane, event) + area().topLeft();
    m_pressedKeys = event.modifiers();
    m_pressedWindow = picked();
    return true;
}

void ContentPick::dragged(const Pane &pane, const QMouseEvent &event)
{
    if (!m_isPressed || !m_pressedWindow)
        return;
    const QPoint way = placeOf(pane, event) + area().topLeft() - m_pressedAt;
    const qreal started = QApplication::startDragDistance() * pane.scale();
    const bool wasDragged =
        std::exchange(m_isDragged, m_isDragged || way.manhattanLength() >= started);
    if (!m_isDragged)
        return;
    const QRect drawn = QRect(QPoint(std::min(way.x(), 0), std::min(way.y(), 0)),
                              QSize(std::abs(way.x()), std::abs(way.y())))
                            .translated(m_pressedAt);
    m_markedWindow = m_pressedWindow;
    m_marked = drawn & m_pressedWindow->bounds.toRect() & area();
    if (wasDragged)
        tellMark();
    else
        tellKeys();
    placeHint();
    updateAll();
}

void ContentPick::released(const Pane &pane, const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton || !m_isPressed)
        return;
    // The release may report the last part of the movement.
    dragged(pane, event);
    const bool wasDragged = std::exchange(m_isDragged, false);
    if (!wasDragged && m_knowsWindows) {
        // accept() refuses what can't be taken.
        const bool isContent = m_pressedKeys & Qt::ControlModifier;
        choose(isContent ? Way::Content : Way::Window, m_pressedKeys);
    } else if (m_marked.width() < s_smallestMark || m_marked.height() < s_smallestMark) {
        unmark();
    } else {
        tellKeys();
        placeHint();
    }
    m_isPressed = false;
}

void ContentPick::unmark()
{
    m_markedWindow.reset();
    m_marked = {};
    tellKeys();
    placeHint();
    updateAll();
}

// Handles windows that have gone, or whose frame is left for a moment: they can't be taken any
// more.
void ContentPick::followWindows()
{
    const auto window = picked();
    const auto windows = services().windows->windows(WindowCatalogue::List::OnScreen, 0);
    const auto isGone = [&windows](const std::optional<WindowCatalogue::Entry> &sought) {
        return sought && std::none_of(windows.begin(), windows.end(), [&](const auto &entry) {
                   return entry.number == sought->number;
               });
    };
    if (isGone(m_markedWindow)) {
        m_isPressed = m_isDragged = false;
        unmark();
    }
    if (isGone(window))
        readAgain();
}

void ContentPick::looked()
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
    // Asks also inside the known area, because it may contain another one.
    if (isOther || (at - m_askedAt).manhattanLength() >= s_askDistance)
        ask(*window, at);
}

void ContentPick::ask(const WindowCatalogue::Entry &window, QPoint at)
{
    m_askedWindow = window.number;
    m_askedAt = at;
    const QRect bounds = window.bounds.toRect();
    services().accessibility->findScrollingArea(
        {.point = at, .window = bounds, .process = window.process, .title = window.name},
        [this, bounds](const QRect &found) { setScrollingArea(found & bounds); });
}

void ContentPick::setScrollingArea(const QRect &global)
{
    if (global == m_scrollingArea)
        return;
    m_scrollingArea = global;
    updateAll();
}

std::optional<WindowCatalogue::Entry> ContentPick::shown() const
{
    return m_markedWindow ? m_markedWindow : picked();
}

// Places the hint at the bottom of the pointer's screen, or at another edge if the pointer or the
// mark is there.
void ContentPick::placeHint()
{
    m_hint->adjustSize();
    const QPoint at = pointer();
    const Pane &pane = paneAt(pointerInOverlay());
    if (m_hint->parentWidget() != &pane.window()) {
        m_hint->setParent(&pane.window());
        m_hint->show();
    }
    const auto toLogical = [this, &pane](QPoint global) {
        return pane.toLogical(global - area().topLeft());
    };
    QRect screen = area();
    for (const QRect &candidate : services().screens->areas()) {
        if (candidate.contains(at))
            screen = candidate;
    }
    const QPoint farCorner = screen.topLeft() + QPoint(screen.width(), screen.height());
    const QRect logical(toLogical(screen.topLeft()), toLogical(farCorner) - QPoint(1, 1));
    const QRect room = logical.adjusted(s_fromEdge, s_fromEdge, -s_fromEdge, -s_fromEdge);
    const QPoint pointed = toLogical(at);
    const QRect marked(toLogical(m_marked.topLeft()), toLogical(m_marked.bottomRight()));
    std::optional<QRect> chosen;
    for (const Qt::Alignment side : {Qt::AlignHCenter, Qt::AlignLeft, Qt::AlignRight}) {
        for (const Qt::Alignment end : {Qt::AlignBottom, Qt::AlignTop}) {
            const QRect box =
                QStyle::alignedRect(Qt::LeftToRight, side | end, m_hint->size(), room);
            const QRect around =
                box.adjusted(-s_hintDistance, -s_hintDistance, s_hintDistance, s_hintDistance);
            if (around.contains(pointed))
                continue;
            // If every position is covered by the mark, the hint avoids only the pointer.
            if (!chosen)
                chosen = box;
            if (m_marked.isEmpty() || !box.intersects(marked)) {
                m_hint->move(box.topLeft());
                return;
            }
        }
    }
    m_hint->move(chosen.value_or(room).topLeft());
}

void ContentPick::draw(QPainter &painter, const Pane &pane)
{
    mouseShot::draw(painter, pane);
    const auto window = picked();
    const bool isTold = window && window->number == m_askedWindow;
    const QRect outlined = m_markedWindow ? m_marked : isTold ? m_scrollingArea : QRect();
    if (outlined.isEmpty())
        return;
    const qreal width = s_outlineWidth * pane.scale();
    painter.setPen(QPen(Palette::accent, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(Palette::translucent(Palette::accent, 40));
    const QRectF inside = QRectF(outlined.translated(-area().topLeft()));
    painter.drawRect(inside.adjusted(width / 2, width / 2, -width / 2, -width / 2));
}
