#include "capture/polygonoverlay.h"

#include "platform/desktoppictures.h"
#include "platform/services.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QGridLayout>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr qreal s_sheetOpacity = 0.4;
constexpr int s_closeMarkSize = 10;
constexpr qsizetype s_manySegments = 200;
constexpr int s_buttonGap = 15;  // between the buttons, the screen's edge and the polygon

// Slightly more than one pixel: the toolkit draws one-pixel lines by a faster method whose pixels
// depend on the clipping, so parts that are painted at different times would not match.
constexpr qreal s_lineWidth = 1.001;
constexpr qreal s_darkWidth = 3;  // below it, where what is marked is as bright as the line

// A long line is repainted in pieces of this length, because the bounding box of a diagonal line
// across the desktop would cover all of it.
constexpr double s_pieceLength = 128;
// The antialiased line touches one more pixel on each side.
constexpr int s_lineReach = 2;

QRect around(QPointF from, QPointF to)
{
    return QRectF(from, to).normalized().toAlignedRect().adjusted(-s_lineReach, -s_lineReach,
                                                                  s_lineReach, s_lineReach);
}

QRegion pixelsOf(QPointF from, QPointF to)
{
    const QPointF whole = to - from;
    const double length = std::max(std::abs(whole.x()), std::abs(whole.y()));
    const int pieces = 1 + static_cast<int>(length / s_pieceLength);
    QRegion result;
    for (int piece = 0; piece < pieces; ++piece)
        result += around(from + whole * piece / pieces, from + whole * (piece + 1) / pieces);
    return result;
}

// The pixels of `line`, except for its last `common` points.
QRegion pixelsOf(const QPolygonF &line, qsizetype common)
{
    const qsizetype segments = std::min(line.size() - 1, line.size() - common);
    // Beyond this number the pieces cost more than repainting the bounding box.
    if (segments > s_manySegments) {
        const QRectF box = line.boundingRect();
        return around(box.topLeft(), box.bottomRight());
    }
    QRegion result;
    for (qsizetype i = 0; i < segments; ++i)
        result += pixelsOf(line.at(i), line.at(i + 1));
    return result;
}

// Draws the segments that touch `visible`: a freehand line has thousands, and most repaints affect
// only the newest ones. Each segment is drawn separately, because a polyline is antialiased
// differently where it crosses itself.
void drawLine(QPainter &painter, const QPolygonF &line, const QRect &visible)
{
    for (qsizetype i = 0; i + 1 < line.size(); ++i) {
        if (around(line.at(i), line.at(i + 1)).intersects(visible))
            painter.drawLine(line.at(i), line.at(i + 1));
    }
}

}  // namespace

dlgFreeHand::dlgFreeHand(QWidget *parent, const MarkingHabits &habits)
    : MarkingOverlay(parent, s_sheetOpacity, habits, u"Polygon"_s)
{
    m_selection.setSurface(area().size());
    auto *surface = new QWidget(this);
    surface->setObjectName(u"widget"_s);
    surface->setFocusPolicy(Qt::WheelFocus);
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(surface);
    setSurface(surface);
}

QPixmap dlgFreeHand::getPixmap()
{
    const QRect box = m_selection.box().translated(area().topLeft());
    if (!box.isEmpty())
        m_grabbed = desktopPicture(box);
    return m_grabbed;
}

QPolygonF *dlgFreeHand::getPolygon() const
{
    if (m_selection.points().isEmpty())
        return nullptr;
    return std::make_unique<QPolygonF>(m_selection.polygonInBox()).release();
}

Grab dlgFreeHand::take()
{
    Grab grab{.picture = getPixmap(), .place = area().topLeft() + m_selection.box().topLeft()};
    if (const std::unique_ptr<QPolygonF> polygon(getPolygon()); polygon)
        grab.outline = toPicture(grab.picture, m_selection.box().size()).map(*polygon);
    return grab;
}

bool dlgFreeHand::canBeTaken() const { return !m_selection.box().isEmpty(); }

void dlgFreeHand::deletelastpoint()
{
    m_selection.deletelastpoint();
    refresh();
    follow();
}

void dlgFreeHand::dialog_clear()
{
    m_selection.clear();
    refresh();
    follow();
}

void dlgFreeHand::slots_freehandAccept()
{
    if (m_selection.finish())
        accept();
}

bool dlgFreeHand::paneEvent(const Pane &pane, QEvent *event)
{
    if (hears(pane, *event))
        return true;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease: {
        const auto &mouse = *static_cast<QMouseEvent *>(event);
        return isVisible() && mouseEvent(placeOf(pane, mouse), mouse);
    }
    case QEvent::KeyPress:
        if (isVisible())
            key(*static_cast<QKeyEvent *>(event));
        return false;
    case QEvent::Paint:
        paintSurface(pane, static_cast<QPaintEvent *>(event)->region());
        return true;
    default:
        return false;
    }
}

// Returns true if the event must not be processed further.
bool dlgFreeHand::mouseEvent(QPoint pos, const QMouseEvent &event)
{
    const Qt::KeyboardModifiers modifiers = QApplication::keyboardModifiers();
    const bool leftAlone = event.buttons() == Qt::LeftButton;
    switch (event.type()) {
    case QEvent::MouseMove:
        move(pos, modifiers);
        return true;
    case QEvent::MouseButtonRelease:
        m_selection.release(pos, modifiers);
        break;
    case QEvent::MouseButtonPress:
        if (leftAlone && m_selection.press(pos, pointerInOverlay(), modifiers))
            accept();
        break;
    default:
        if (leftAlone)
            slots_freehandAccept();
    }
    refresh();
    follow();
    return false;
}

void dlgFreeHand::move(QPoint pos, Qt::KeyboardModifiers modifiers)
{
    ShowDetailWindow(eMagUpdate, area().x() + pos.x(), area().y() + pos.y());
    m_selection.move(pos, modifiers);
    refresh();
    follow();
}

void dlgFreeHand::key(const QKeyEvent &event)
{
    const PolygonSelection::KeyResult result = m_selection.key(event.key(), event.modifiers());
    if (result.changeViewMode)
        changeviewmode();
    // The resulting move event updates magnifier and line.
    if (result.pointer)
        services().hands->movePointer(area().topLeft() + *result.pointer);
    if (result.finished)
        accept();
    refresh();
    follow();
}

// While a button is down, a resting pointer must not add vertices, so the tick does nothing.
void dlgFreeHand::tick()
{
    if (m_selection.isPressed())
        return;
    // Asks for the present modifiers, because the toolkit notices a change only with the next
    // event.
    const Qt::KeyboardModifiers modifiers = QGuiApplication::queryKeyboardModifiers();
    move(m_selection.AdjustPoint(pointerInOverlay(), modifiers), modifiers);
}

void dlgFreeHand::contextMenu(const Pane &pane, const QContextMenuEvent &event)
{
    // The menu opens at the press and gets the release that would end a drag.
    if (m_selection.isPressed())
        m_selection.release(pointerInOverlay(), QApplication::keyboardModifiers());
    const bool hasPoints = m_selection.points().size() >= 2;
    runMenu(pane, event,
            {tr("Finish(Enter)"), Qt::Key_Return, m_selection.canFinish(),
             [this] { slots_freehandAccept(); }},
            {{tr("Delete last point"), u"Backspace"_s, true, [this] { deletelastpoint(); }},
             {tr("Clear all points"), u"Shift+Backspace"_s, hasPoints, [this] { dialog_clear(); }}},
            takeEntries());
}

// Repaints only what has changed on the surface. New points are at the front, so two lines are
// compared from their ends.
void dlgFreeHand::refresh()
{
    if (!isVisible())
        return;
    const Look now{m_selection.line(), m_selection.closeMark(pointerInOverlay())};
    const auto [before, after] = std::mismatch(
        m_shown.line.crbegin(), m_shown.line.crend(), now.line.crbegin(), now.line.crend(),
        [](const QPointF &a, const QPointF &b) { return a.x() == b.x() && a.y() == b.y(); });
    const qsizetype common = std::distance(m_shown.line.crbegin(), before);
    QRegion damage = pixelsOf(m_shown.line, common) + pixelsOf(now.line, common);
    for (const std::optional<QPoint> &mark : {m_shown.closeMark, now.closeMark}) {
        if (mark && m_shown.closeMark != now.closeMark)
            damage += around(*mark, *mark + QPointF(s_closeMarkSize, s_closeMarkSize));
    }
    // What is marked reaches to the first vertex, and changes with its ends.
    if (habits().clearSelection) {
        QPolygonF changed;
        for (const QPolygonF &line : {m_shown.line, now.line}) {
            if (line.size() > common)
                changed += line.first(line.size() - common);
        }
        if (!changed.isEmpty()) {
            for (const QPolygonF &line : {m_shown.line, now.line}) {
                if (!line.isEmpty())
                    changed += {line.value(line.size() - common), line.constLast()};
            }
            const QRectF box = changed.boundingRect();
            damage += around(box.topLeft(), box.bottomRight());
        }
    }
    m_shown = now;
    if (!damage.isEmpty())
        updatePixels(damage);
}

void dlgFreeHand::paintSurface(const Pane &pane, const QRegion &exposed)
{
    const QRect exposedPixels = pane.pixelsAround(exposed.boundingRect());
    const QRectF line = m_shown.line.boundingRect();
    QRegion drawn = m_shown.line.isEmpty() ? QRect() : around(line.topLeft(), line.bottomRight());
    if (m_shown.closeMark)
        drawn += around(*m_shown.closeMark,
                        *m_shown.closeMark + QPointF(s_closeMarkSize, s_closeMarkSize));
    paintSheet(pane, exposed, drawn.boundingRect(), [this, &exposedPixels](QPainter &painter) {
        const QTransform toPixels = painter.worldTransform().inverted();
        const QRect device = toPixels.mapRect(QRectF(painter.viewport())).toAlignedRect();
        if (habits().clearSelection) {
            painter.setPen(QPen(Qt::black, s_darkWidth));
            drawLine(painter, m_shown.line, device & exposedPixels);
        }
        painter.setPen(QPen(Qt::white, s_lineWidth));
        drawLine(painter, m_shown.line, device & exposedPixels);
        if (m_shown.closeMark) {
            painter.setPen(Qt::red);
            painter.drawEllipse(QRect(*m_shown.closeMark, QSize(s_closeMarkSize, s_closeMarkSize)));
        }
    });
}

QPainterPath dlgFreeHand::marked() const
{
    QPainterPath path;
    path.addPolygon(m_shown.line);
    path.closeSubpath();
    return path;
}

// In the order in which they were set.
QPolygonF dlgFreeHand::markedPoints() const
{
    const QPolygonF &points = m_selection.points();
    return QPolygonF(QList<QPointF>(points.crbegin(), points.crend()));
}

void dlgFreeHand::markPoints(const QPolygonF &points)
{
    m_selection.mark(points);
    refresh();
}

// Of the vertices that are set: the end that follows the pointer does not count.
QRect dlgFreeHand::vertexBox() const
{
    return QPolygonF(m_selection.points().mid(1)).boundingRect().toAlignedRect();
}

QPoint dlgFreeHand::nearButtons() const { return vertexBox().center(); }

// At the foot of the screen, or at its head: beside the polygon they would be in the way of its
// next vertex. If there is no room, they are off the first one, on which a click closes the
// polygon.
QPoint dlgFreeHand::placeButtons(QSize size) const
{
    const QRect home = homeOf(nearButtons());
    QRect box(QPoint(home.x() + std::max(0, (home.width() - size.width()) / 2),
                     home.y() + home.height() - size.height() - s_buttonGap),
              size);
    const QPoint foot = box.topLeft();
    const QPoint head(foot.x(), home.y() + s_buttonGap);
    const auto covers = [&box](QPoint corner, const QRect &other) {
        box.moveTopLeft(corner);
        return box.adjusted(-s_buttonGap, -s_buttonGap, s_buttonGap, s_buttonGap).intersects(other);
    };
    const QRect first(m_selection.points().constLast().toPoint(), QSize(1, 1));
    const auto isBetterAtHead = [&](const QRect &other) {
        return covers(foot, other) && !covers(head, other);
    };
    const bool isAtHead =
        covers(foot, first) || isBetterAtHead(vertexBox()) || isBetterAtHead(magnifier());
    return isAtHead ? head : foot;
}

QString dlgFreeHand::hint() const
{
    return tr("Click: set a corner     Drag: draw freehand\n"
              "Return, a double click: close it and take it\n"
              "Ctrl+C: copy it     Ctrl+S: save it     T: read its text\n"
              "R: the last area again     C: copy the colour at the pointer\n"
              "Esc: give up");
}
