#include "base/regionselection.h"

#include "base/arrowkeys.h"

#include <QPainterPath>
#include <QRegion>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_captionGap = 15;  // between the region and the caption below it

// Columns and rows count in halves of the size, from the top left corner: 0, 1 or 2.
struct Handle {
    int column = 0;
    int row = 0;
    int anchorColumn = 0;  // the corner that stays in place while this handle is dragged
    int anchorRow = 0;
    Qt::CursorShape cursor = Qt::ArrowCursor;

    bool isEdge() const { return column == 1 || row == 1; }
};

// clang-format off
constexpr std::array<Handle, RegionSelection::s_handleCount> s_handles{{
    {0, 0, 2, 2, Qt::SizeFDiagCursor},
    {1, 0, 2, 2, Qt::SizeVerCursor},
    {2, 0, 0, 2, Qt::SizeBDiagCursor},
    {2, 1, 0, 0, Qt::SizeHorCursor},
    {2, 2, 0, 0, Qt::SizeFDiagCursor},
    {1, 2, 0, 0, Qt::SizeVerCursor},
    {0, 2, 2, 0, Qt::SizeBDiagCursor},
    {0, 1, 2, 0, Qt::SizeHorCursor},
}};
// clang-format on

bool isHandle(int zone)
{
    return zone > RegionSelection::s_nothing && zone <= RegionSelection::s_handleCount;
}

const Handle &handle(int zone) { return s_handles.at(static_cast<size_t>(zone) - 1); }

bool isEdge(int zone) { return isHandle(zone) && handle(zone).isEdge(); }

QPoint pointAt(const QRect &rect, int column, int row)
{
    return {rect.x() + column * rect.width() / 2, rect.y() + row * rect.height() / 2};
}

int &along(QPoint &point, int axis) { return axis == 0 ? point.rx() : point.ry(); }

// Compares both coordinates, because the limits of the key steps test both axes, whichever axis the
// key moves along.
bool isBelow(QPoint a, QPoint b) { return a.x() < b.x() && a.y() < b.y(); }

QPoint toPoint(QSize size) { return {size.width(), size.height()}; }

// The start of a length, moved so that the whole length lies between 0 and `limit`.
int slid(int from, int length, int limit)
{
    return from < 0 ? 0 : from > limit - length ? limit - length : from;
}

}  // namespace

void RegionSelection::press(const Input &input, Qt::MouseButtons buttons)
{
    if (buttons != Qt::LeftButton)
        return;
    m_leftDown = true;
    if (input.modifiers == Qt::ControlModifier) {
        anchorOnRegion(input.pos);
    } else {
        m_endPoint = {};
        m_startPoint = input.pos;
    }
    if (m_policy.clampsAnchor)
        m_startPoint = clamped(m_startPoint);
    if (m_hasRegion)
        m_hitZone = hitTest(input);
}

std::optional<RegionSelection::Caption> RegionSelection::move(const Input &input)
{
    if (!m_leftDown)
        return {};
    m_dragging = true;
    m_rubberBand = true;
    if (m_hitZone == s_inside) {
        dragRegion(input.pos);
    } else {
        const bool square = input.modifiers == Qt::ControlModifier;
        m_endPoint = clamped(square ? squareEnd(input.pointer) : ended(input.pos));
        if (isHandle(m_hitZone))
            dragHandle(input.pos);
    }
    if (band().isEmpty() && !m_policy.captionWhileFlat)
        return {};
    return bandCaption();
}

bool RegionSelection::release(const Input &input)
{
    m_leftDown = false;
    m_dragging = false;
    if (isEdge(m_hitZone))
        m_endPoint = edgeEnd(input.pos);
    else if (m_hitZone != s_inside && input.modifiers != Qt::ControlModifier)
        m_endPoint = clamped(ended(input.pos));
    const QRect stored = band();
    const bool stores = m_hasRegion && m_rubberBand && !stored.isEmpty();
    if (stores) {
        m_regionPos = stored.topLeft();
        m_regionSize = toPoint(stored.size());
    }
    m_hitZone = s_nothing;
    m_rubberBand = false;
    return stores;
}

// A reader would expect one action per key, but the steps run one after the other: Alt with an
// arrow key first nudges the region, since Shift is not held, and then moves the edge.
RegionSelection::Request RegionSelection::key(int key, Qt::KeyboardModifiers modifiers)
{
    const bool hasArea = isBelow({0, 0}, m_regionSize);
    Request request = Request::None;
    if (key == Qt::Key_E && modifiers.testFlag(Qt::ControlModifier)) {
        request = Request::ChangeViewMode;
    } else if (key == Qt::Key_Return && hasArea) {
        request = Request::Accept;
    } else if (key == Qt::Key_Escape) {
        request = Request::Close;
    } else if (key == Qt::Key_Backspace && modifiers.testFlag(Qt::ShiftModifier)) {
        clear();
        request = Request::Clear;
    } else if (key == Qt::Key_Backspace && hasArea) {
        m_regionSize -= QPoint(1, 1);
    }
    for (const ArrowKey &candidate : s_arrows) {
        if (candidate.key == key && m_policy.exactKeys)
            exactArrow(candidate.axis, candidate.step, modifiers);
        else if (candidate.key == key)
            arrow(candidate.axis, candidate.step, modifiers);
    }
    m_rubberBand = false;
    return request;
}

void RegionSelection::arrow(int axis, int step, Qt::KeyboardModifiers modifiers)
{
    QPoint surface = toPoint(m_extent.surface);
    int &pos = along(m_regionPos, axis);
    int &size = along(m_regionSize, axis);
    if (modifiers.testFlag(Qt::ShiftModifier)) {
        if (step < 0 ? isBelow({0, 0}, m_regionSize) : isBelow(m_regionPos + m_regionSize, surface))
            size += step;
    } else if (step < 0 ? isBelow({0, 0}, m_regionPos) : isBelow(m_regionPos, surface)) {
        pos += step;
    }
    if (!modifiers.testFlag(Qt::AltModifier))
        return;
    if (step < 0) {
        size += pos;
        pos = 1;
    } else {
        size = along(surface, axis) - 1 - pos;
    }
}

void RegionSelection::exactArrow(int axis, int step, Qt::KeyboardModifiers modifiers)
{
    if (!isBelow({0, 0}, m_regionSize))
        return;
    QPoint surface = toPoint(m_extent.surface);
    const int limit = along(surface, axis);
    int &pos = along(m_regionPos, axis);
    int &size = along(m_regionSize, axis);
    if (modifiers.testFlag(Qt::AltModifier) && step < 0)
        size += std::exchange(pos, 0);
    else if (modifiers.testFlag(Qt::AltModifier))
        size = limit - pos;
    else if (modifiers.testFlag(Qt::ShiftModifier))
        size = std::clamp(size + step, 1, limit - pos);
    else
        pos = std::clamp(pos + step, 0, limit - size);
}

// A reader would expect m_hasRegion to be reset, but it is kept on purpose: the next press is still
// hit tested, against an empty region at (0, 0).
void RegionSelection::clear()
{
    m_startPoint = {};
    m_endPoint = {};
    m_regionPos = {};
    m_regionSize = {};
}

void RegionSelection::mark(const QRect &region)
{
    m_startPoint = m_regionPos = region.topLeft();
    m_regionSize = toPoint(region.size());
    m_endPoint = m_startPoint + m_regionSize;
    m_hasRegion = true;
}

QList<QRect> RegionSelection::shapes() const
{
    QList<QRect> result;
    if (m_rubberBand)
        result.append(band());
    // An empty region is not drawn, not even its handles.
    if ((!m_dragging || (m_rubberBand && m_startPoint == m_endPoint)) && m_regionSize != QPoint())
        result.append(region());
    return result;
}

void RegionSelection::painted()
{
    if (m_rubberBand && m_startPoint != m_endPoint)
        m_hasRegion = true;
}

RegionSelection::Caption RegionSelection::bandCaption() const
{
    const QRect rect = band();
    const int right = rect.x() + rect.width();
    const int bottom = rect.y() + rect.height();
    const int reach = s_captionGap + m_extent.frame.height();
    const int x = right <= m_extent.frame.width() ? 0 : right - m_extent.frame.width();
    int y = bottom + s_captionGap;
    if (bottom > m_extent.overlay.height() - reach)
        y = rect.y() >= reach ? rect.y() - reach : bottom - reach;
    const QSize told = toldSize(rect);
    return {onScreen({x, y}, rect), u"%1 px"_s.arg(told.width()), u"%1 px"_s.arg(told.height())};
}

// A reader would expect both x values from the region, but the condition uses the band, on purpose.
// The colon and the missing unit for an ellipse are intended as well.
RegionSelection::Caption RegionSelection::regionCaption() const
{
    const QPoint farCorner = m_regionPos + m_regionSize;
    const int reach = s_captionGap + m_extent.frame.height();
    const int bandRight = std::max(m_startPoint.x(), m_endPoint.x());
    const int x = bandRight <= m_extent.frame.width() ? 0 : farCorner.x() - m_extent.frame.width();
    int y = farCorner.y() + s_captionGap;
    if (farCorner.y() > m_extent.overlay.height() - reach)
        y = (m_regionPos.y() >= reach ? m_regionPos.y() : farCorner.y()) - reach;
    const QString text = m_policy.keyCaptionHasUnit ? u":%1 px"_s : u":%1"_s;
    const QSize told = toldSize(region());
    return {onScreen({x, y}, region().normalized()), text.arg(told.width()),
            text.arg(told.height())};
}

QSize RegionSelection::toldSize(const QRect &marked) const
{
    return m_extent.sizeOf && !marked.isEmpty() ? m_extent.sizeOf(marked) : marked.size();
}

// If the monitors differ in height, parts of the overlay lie on no monitor. A caption that would be
// partly hidden moves to the screen that shows most of the marked area.
QPoint RegionSelection::onScreen(QPoint caption, const QRect &marked) const
{
    QRegion hidden = QRect(caption, m_extent.frame) & QRect(QPoint(), m_extent.overlay);
    for (const QRect &screen : m_extent.screens)
        hidden -= screen;
    if (hidden.isEmpty() || m_extent.screens.isEmpty())
        return caption;
    const auto shown = [&](const QRect &screen) {
        const QRect part = screen & marked.adjusted(-1, -1, 1, 1);
        return static_cast<qint64>(part.width()) * part.height();
    };
    const QRect home =
        *std::max_element(m_extent.screens.begin(), m_extent.screens.end(),
                          [&](const QRect &a, const QRect &b) { return shown(a) < shown(b); });
    const QSize room = home.size() - m_extent.frame;
    const int bottom = std::min(marked.y() + marked.height(), home.y() + home.height());
    const int reach = s_captionGap + m_extent.frame.height();
    int y = bottom + s_captionGap;
    if (y > home.y() + room.height())
        y = (marked.y() - home.y() >= reach ? marked.y() : bottom) - reach;
    return {std::clamp(caption.x(), home.x(), home.x() + std::max(0, room.width())),
            std::clamp(y, home.y(), home.y() + std::max(0, room.height()))};
}

RegionSelection::Cursor RegionSelection::cursor(const Input &input, const QRect &frame) const
{
    if (const int zone = handleAt(input.pos))
        return {handle(zone).cursor, false};
    if (cursorIsInside(input.pointer))
        return {Qt::ArrowCursor, false};
    if (frame.contains(input.pointer))
        return {Qt::ArrowCursor, true};
    return {};
}

QRect RegionSelection::band() const
{
    const QPoint size = m_endPoint - m_startPoint;
    return {std::min(m_startPoint.x(), m_endPoint.x()), std::min(m_startPoint.y(), m_endPoint.y()),
            std::abs(size.x()), std::abs(size.y())};
}

QPoint RegionSelection::handleCentre(const QRect &rect, int zone)
{
    return pointAt(rect, handle(zone).column, handle(zone).row);
}

bool RegionSelection::distance_XvsY(QPoint a, QPoint b)
{
    return std::abs(a.x() - b.x()) >= std::abs(a.y() - b.y());
}

float RegionSelection::distance_PtoP(QPoint a, QPoint b)
{
    const qint64 dx = a.x() - b.x();
    const qint64 dy = a.y() - b.y();
    return static_cast<float>(std::sqrt(static_cast<double>(dx * dx + dy * dy)));
}

int RegionSelection::handleAt(QPoint pos) const
{
    for (int zone = 1; zone <= s_handleCount; ++zone) {
        if (distance_PtoP(pos, handleCentre(region(), zone)) <= m_extent.reach)
            return zone;
    }
    return s_nothing;
}

// The far edges count as inside, because the handles are centred on them. QRect::contains()
// excludes them.
bool RegionSelection::regionContains(QPoint point) const
{
    const QPoint offset = point - m_regionPos;
    return offset.x() >= 0 && offset.x() <= m_regionSize.x() && offset.y() >= 0 &&
           offset.y() <= m_regionSize.y();
}

bool RegionSelection::cursorIsInside(QPoint pointer) const
{
    if (!m_policy.arrowInsideEllipse)
        return regionContains(pointer);
    QPainterPath path;
    path.addEllipse(region());
    return path.contains(pointer);
}

int RegionSelection::hitTest(const Input &input)
{
    if (const int zone = handleAt(input.pos))
        return zone;
    if (!regionContains(input.pointer))
        return m_policy.missKeepsZone ? m_hitZone : s_nothing;
    m_dragOrigin = input.pos;
    return s_inside;
}

QPoint RegionSelection::clamped(QPoint point) const
{
    return {std::clamp(point.x(), 0, m_extent.surface.width()),
            std::clamp(point.y(), 0, m_extent.surface.height())};
}

// The pointer can't get beyond the last row and column, which would never be marked otherwise.
QPoint RegionSelection::ended(QPoint pos) const
{
    if (!m_policy.lastIsEdge)
        return pos;
    const QSize size = m_extent.surface;
    return {pos.x() == size.width() - 1 ? size.width() : pos.x(),
            pos.y() == size.height() - 1 ? size.height() : pos.y()};
}

// Only one coordinate follows the pointer. It is not clamped: an edge can be dragged beyond the
// overlay.
QPoint RegionSelection::edgeEnd(QPoint pos) const
{
    pos = ended(pos);
    const Handle &edge = handle(m_hitZone);
    const QPoint fixed = pointAt(region(), 2 - edge.anchorColumn, 2 - edge.anchorRow);
    return edge.column == 1 ? QPoint(fixed.x(), pos.y()) : QPoint(pos.x(), fixed.y());
}

// The corner of a square that has the band's anchor as its opposite corner. A reader would expect
// all limits to mirror each other, but three don't, on purpose.
QPoint RegionSelection::squareEnd(QPoint pointer) const
{
    const QPoint start = m_startPoint;
    const QPoint offset = pointer - start;
    if (offset.x() == 0 || offset.y() == 0)
        return m_endPoint;
    const int width = m_extent.overlay.width();
    const int height = m_extent.overlay.height();
    const bool vertical = !distance_XvsY(start, pointer);
    const bool left = offset.x() < 0;
    const bool down = offset.y() > 0;

    const int roomAcross = left ? start.x() : width - start.x();
    const int roomDown = down ? height - start.y() : start.y();
    const int side = vertical ? std::abs(offset.y()) : std::abs(offset.x());
    if (side <= (vertical ? roomAcross : roomDown))
        return start + QPoint(left ? -side : side, down ? side : -side);

    const std::array<QPoint, 8> limits{{
        {start.x() + start.y(), 0},                // across: right and up
        {start.x() + height - start.y(), height},  // right and down
        {start.x() - start.y(), 0},                // left and up
        {start.x() + height - start.y(), height},  // left and down
        {width, width - start.x()},                // down: right and up
        {width, width + start.y() - start.x()},    // right and down
        {0, start.y() - start.x()},                // left and up
        {0, pointer.x() + start.y()},              // left and down
    }};
    return limits.at((vertical ? 4U : 0U) + (left ? 2U : 0U) + (down ? 1U : 0U));
}

// With Command a press continues with the existing region. A reader would expect the last two tests
// to use the region, but they use the anchor of an earlier drag, on purpose.
void RegionSelection::anchorOnRegion(QPoint pos)
{
    const QPoint origin = m_regionPos;
    const QPoint farCorner = m_regionPos + m_regionSize;
    const QPoint topRight(farCorner.x(), origin.y());
    const QPoint bottomLeft(origin.x(), farCorner.y());
    const bool afterRegion = origin.x() < pos.x();
    const bool beforeAnchor = m_startPoint.x() > pos.x();
    struct Row {
        bool applies = false;
        QPoint start;
        QPoint end;
    };
    const std::array<Row, 4> rows{{
        {afterRegion && origin.y() > pos.y(), bottomLeft, topRight},
        {afterRegion && origin.y() < pos.y(), origin, farCorner},
        {beforeAnchor && m_startPoint.y() > pos.y(), farCorner, origin},
        {beforeAnchor && m_startPoint.y() < pos.y(), topRight, bottomLeft},
    }};
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [](const Row &candidate) { return candidate.applies; });
    if (row == rows.end())
        return;
    m_startPoint = row->start;
    m_endPoint = row->end;
}

// A corner handle becomes a free drag from the opposite corner at the first move; an edge remains
// an edge until the release. The region counts again once its band has been painted.
void RegionSelection::dragHandle(QPoint pos)
{
    const Handle &dragged = handle(m_hitZone);
    m_startPoint = pointAt(region(), dragged.anchorColumn, dragged.anchorRow);
    if (dragged.isEdge()) {
        m_endPoint = edgeEnd(pos);
    } else {
        m_endPoint = clamped(ended(pos));
        m_hitZone = s_nothing;
    }
    m_hasRegion = false;
}

void RegionSelection::dragRegion(QPoint pos)
{
    const QPoint moved = m_regionPos + pos - m_dragOrigin;
    m_startPoint = {slid(moved.x(), m_regionSize.x(), m_extent.overlay.width()),
                    slid(moved.y(), m_regionSize.y(), m_extent.overlay.height())};
    m_endPoint = m_startPoint + m_regionSize;
}
