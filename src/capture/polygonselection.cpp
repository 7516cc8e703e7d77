#include "capture/polygonselection.h"

#include "base/arrowkeys.h"
#include "base/planegeometry.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr float s_closeReach = 5.0F;
constexpr double s_same = 1e-12;

constexpr double s_fullTurn = 360.0;
constexpr double s_almostFull = -0.1;
constexpr float s_halfStep = 22.5F;

struct Direction {
    float angle = 0;
    float snapped = 0;
};

// The first direction that is close enough is used.
constexpr std::array<Direction, 9> s_directions{{
    {0, 0},
    {360, 0},
    {90, 90},
    {180, 180},
    {270, 270},
    {45, 45},
    {135, 135},
    {225, 225},
    {315, 315},
}};

double &along(QPointF &point, int axis) { return axis == 0 ? point.rx() : point.ry(); }

QPoint truncated(QPointF point)
{
    return {static_cast<int>(point.x()), static_cast<int>(point.y())};
}

}  // namespace

QPoint PolygonSelection::AdjustPoint(const QPoint &p, Qt::KeyboardModifiers modifiers) const
{
    if (modifiers != Qt::ControlModifier || m_points.size() < 2)
        return p;
    const QPointF reference = m_points.at(1);
    double exact = CalAngle_Deg(reference, p);
    if (exact - s_fullTurn > s_almostFull)
        exact -= s_fullTurn;
    auto angle = static_cast<float>(exact);
    for (const Direction &direction : s_directions) {
        if (EquFloat1(angle, direction.angle, s_halfStep)) {
            angle = direction.snapped;
            break;
        }
    }
    const QPointF end = RotateByDeg(angle, QPointF(DistanceTo(reference, p), 0), {}) + reference;
    return {qRound(end.x()), qRound(end.y())};
}

// The pointer can't get beyond the last row and column, which would never be marked otherwise.
QPoint PolygonSelection::placed(QPoint pos, Qt::KeyboardModifiers modifiers) const
{
    const QPoint adjusted = AdjustPoint(pos, modifiers);
    return adjusted + QPoint(adjusted.x() == m_surface.width() - 1 ? 1 : 0,
                             adjusted.y() == m_surface.height() - 1 ? 1 : 0);
}

bool PolygonSelection::endIsLastVertex() const
{
    if (m_points.size() < 2)
        return false;
    const QPointF offset = m_points.at(0) - m_points.at(1);
    return std::abs(offset.x()) <= s_same && std::abs(offset.y()) <= s_same;
}

// Whether all vertices are less than a pixel away from the line through the first vertex and the
// one furthest from it.
bool PolygonSelection::isFlat() const
{
    const QPointF first = m_points.constLast();
    QPointF along;
    for (auto point = m_points.cbegin() + 1; point != m_points.cend(); ++point) {
        const QPointF offset = *point - first;
        if (QPointF::dotProduct(offset, offset) > QPointF::dotProduct(along, along))
            along = offset;
    }
    const double length = std::hypot(along.x(), along.y());
    return std::all_of(m_points.cbegin() + 1, m_points.cend(), [&](const QPointF &point) {
        const QPointF offset = point - first;
        return std::abs(along.x() * offset.y() - along.y() * offset.x()) < length || length < 1;
    });
}

bool PolygonSelection::isNearFirst(QPoint pointer) const
{
    return m_canClose && canFinish() &&
           distance_PtoP(pointer, m_points.constLast()) <= s_closeReach;
}

bool PolygonSelection::press(QPoint pos, QPoint pointer, Qt::KeyboardModifiers modifiers)
{
    m_state = State::Pressed;
    m_closing = false;
    const QPoint adjusted = placed(pos, modifiers);
    if (m_points.isEmpty())
        m_points.prepend(adjusted);
    else if (endIsLastVertex())
        m_points.removeFirst();
    else
        m_points.first() = adjusted;
    // The clicked point remains a vertex, even if it differs slightly from the first one.
    if (!isNearFirst(pointer))
        return false;
    m_state = State::Busy;
    return true;
}

void PolygonSelection::release(QPoint pos, Qt::KeyboardModifiers modifiers)
{
    m_points.prepend(placed(pos, modifiers));
    m_canClose = true;
    m_state = State::Idle;
}

// While the button is down, each move adds a vertex.
void PolygonSelection::move(QPoint pos, Qt::KeyboardModifiers modifiers)
{
    if (m_points.isEmpty() || m_closing || m_state == State::Busy)
        return;
    const QPoint adjusted = placed(pos, modifiers);
    if (m_state == State::Pressed)
        m_points.prepend(adjusted);
    else
        m_points.first() = adjusted;
}

bool PolygonSelection::finish()
{
    if (!canFinish())
        return false;
    m_points.removeFirst();
    m_state = State::Busy;
    m_closing = true;
    return true;
}

void PolygonSelection::mark(const QPolygonF &vertices)
{
    m_points.clear();
    for (const QPointF &vertex : vertices)
        m_points.prepend(vertex);
    if (!m_points.isEmpty())
        m_points.prepend(m_points.constFirst());  // the end of the rubber line
    m_state = State::Idle;
    m_closing = false;
    m_canClose = true;
}

void PolygonSelection::deletelastpoint()
{
    if (m_points.size() < 2)
        return;
    if (endIsLastVertex())
        m_points.remove(0, 2);
    else
        m_points.remove(1);
    if (m_points.size() == 1)
        m_points.clear();
}

PolygonSelection::KeyResult PolygonSelection::key(int key, Qt::KeyboardModifiers modifiers)
{
    KeyResult result;
    result.changeViewMode = key == Qt::Key_E && modifiers.testFlag(Qt::ControlModifier);
    result.finished = key == Qt::Key_Return && finish();
    if (key == Qt::Key_Backspace) {
        deletelastpoint();
        if (modifiers.testFlag(Qt::ShiftModifier))
            clear();
    }
    for (const ArrowKey &arrow : s_arrows) {
        if (arrow.key != key || m_points.isEmpty())
            continue;
        // Alt moves to the edge after the normal step.
        const int step = modifiers.testFlag(Qt::ShiftModifier) ? 10 * arrow.step : arrow.step;
        const int size = arrow.axis == 0 ? m_surface.width() : m_surface.height();
        moveEnd(arrow.axis, along(m_points.first(), arrow.axis) + step, result);
        if (modifiers.testFlag(Qt::AltModifier))
            moveEnd(arrow.axis, arrow.step < 0 ? 1 : size - 1, result);
    }
    return result;
}

// A reader would expect the end to be limited to the desktop, but it is not, on purpose.
void PolygonSelection::moveEnd(int axis, double to, KeyResult &result)
{
    // If the end is at the last vertex, it replaces the vertex.
    if (endIsLastVertex())
        m_points.removeFirst();
    along(m_points.first(), axis) = to;
    result.pointer = truncated(m_points.first());
    m_state = State::Idle;
}

std::optional<QPoint> PolygonSelection::closeMark(QPoint pointer) const
{
    if (!isNearFirst(pointer))
        return {};
    return truncated(m_points.constLast() - QPointF(s_closeReach, s_closeReach));
}

QRect PolygonSelection::box() const
{
    const QRectF exact = m_points.boundingRect();
    return {truncated(exact.topLeft()),
            QSize(static_cast<int>(exact.width()), static_cast<int>(exact.height()))};
}

QPolygonF PolygonSelection::polygonInBox() const
{
    QPolygonF result;
    result.reserve(m_points.size());
    const QPointF corner = box().topLeft();
    for (const QPointF &point : m_points)
        result.append(truncated(point - corner));
    return result;
}

float PolygonSelection::distance_PtoP(const QPointF &a, const QPointF &b)
{
    return static_cast<float>(std::hypot(a.x() - b.x(), a.y() - b.y()));
}
