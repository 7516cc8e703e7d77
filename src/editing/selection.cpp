#include "editing/selection.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace {

using Grip = Selection::Grip;

// Where the handles of a box are, in halves of its sides, clockwise from the top left corner.
struct Place {
    Grip grip = Grip::None;
    int column = 0;
    int row = 0;

    bool isCorner() const { return column != 1 && row != 1; }
};

constexpr std::array<Place, 8> s_places{{{Grip::TopLeft, 0, 0},
                                         {Grip::Top, 1, 0},
                                         {Grip::TopRight, 2, 0},
                                         {Grip::Right, 2, 1},
                                         {Grip::BottomRight, 2, 2},
                                         {Grip::Bottom, 1, 2},
                                         {Grip::BottomLeft, 0, 2},
                                         {Grip::Left, 0, 1}}};

// A box that can be resized has two sides.
QRect solid(const QRect &box) { return {box.topLeft(), box.size().expandedTo({1, 1})}; }

// One side of a box after a handle was dragged: at the far end, at the near one, or in the middle,
// which leaves it alone. No side becomes shorter than a pixel.
void drag(int place, int by, int &from, int &length)
{
    if (place == 2) {
        length = std::max(1, length + by);
    } else if (place == 0) {
        const int moved = std::min(by, length - 1);
        from += moved;
        length -= moved;
    }
}

QRect resized(const QRect &box, const Place &place, QPoint by, bool keepsProportions)
{
    int left = box.x();
    int top = box.y();
    int width = box.width();
    int height = box.height();
    drag(place.column, by.x(), left, width);
    drag(place.row, by.y(), top, height);
    if (!keepsProportions)
        return {left, top, width, height};
    // The side that grew more leads, and the corner opposite the handle stays.
    const double across = static_cast<double>(width) / box.width();
    const double down = static_cast<double>(height) / box.height();
    const double growth =
        !place.isCorner() ? (place.column == 1 ? down : across) : std::max(across, down);
    const QSize size = (QSizeF(box.size()) * growth).toSize().expandedTo({1, 1});
    const auto start = [](int at, int from, int before, int now) {
        return at == 0 ? from + before - now : at == 2 ? from : from + (before - now) / 2;
    };
    return {start(place.column, box.x(), box.width(), size.width()),
            start(place.row, box.y(), box.height(), size.height()), size.width(), size.height()};
}

QPoint evened(QPoint anchor, QPoint to)
{
    const QPoint way = to - anchor;
    const double eighth = std::round(std::atan2(way.y(), way.x()) / (M_PI / 4)) * (M_PI / 4);
    const double length = way.x() * std::cos(eighth) + way.y() * std::sin(eighth);
    return anchor + QPointF(length * std::cos(eighth), length * std::sin(eighth)).toPoint();
}

}  // namespace

QList<EntryPtr> Selection::of(const QList<EntryPtr> &shapes) const
{
    QList<EntryPtr> result;
    if (m_ids.isEmpty())
        return result;
    const QSet<ShapeId> ids(m_ids.begin(), m_ids.end());
    std::copy_if(shapes.begin(), shapes.end(), std::back_inserter(result),
                 [&](const EntryPtr &shape) { return ids.contains(shape->id); });
    return result;
}

void Selection::keepOnly(const QList<EntryPtr> &shapes)
{
    QList<ShapeId> ids;
    for (const EntryPtr &shape : of(shapes))
        ids.append(shape->id);
    m_ids = ids;
}

bool Selection::walk(const QList<EntryPtr> &shapes, bool isForward)
{
    const auto isThis = [this](const EntryPtr &shape) { return has(shape->id); };
    qsizetype next = isForward ? 0 : shapes.size() - 1;
    if (isForward) {
        const auto last = std::find_if(shapes.rbegin(), shapes.rend(), isThis);
        if (last != shapes.rend())
            next = shapes.rend() - last;
    } else if (const auto first = std::find_if(shapes.begin(), shapes.end(), isThis);
               first != shapes.end()) {
        next = first - shapes.begin() - 1;
    }
    // What draws nothing can't be seen to be chosen.
    while (next >= 0 && next < shapes.size() && boxOf(*shapes.at(next)).isNull())
        next += isForward ? 1 : -1;
    const bool isThere = next >= 0 && next < shapes.size();
    set(isThere ? QList{shapes.at(next)->id} : QList<ShapeId>());
    return isThere;
}

QList<Selection::Handle> Selection::handlesOf(const EditEntry &shape)
{
    QList<Handle> result;
    const QPolygon ends = endsOf(shape.geometry);
    for (qsizetype i = 0; i < ends.size(); ++i)
        result.append({ends.at(i), Grip::End, i});
    if (!ends.isEmpty())
        return result;
    const QRect box = boxOf(shape);
    if (box.isNull())
        return result;
    for (const Place &place : s_places) {
        if (place.isCorner() || !toolOf(shape.geometry).keepsProportions) {
            result.append({QPointF(box.x() + place.column * box.width() / 2.,
                                   box.y() + place.row * box.height() / 2.),
                           place.grip});
        }
    }
    return result;
}

Selection::Handle Selection::handleAt(QPointF at, qreal reach, const EntryPtr &under,
                                      const QList<EntryPtr> &shapes) const
{
    if (const QList<EntryPtr> chosen = of(shapes); chosen.size() == 1) {
        const QList<Handle> handles = handlesOf(*chosen.first());
        // The later of two that lie at one place is the one that lets it grow.
        const auto found =
            std::find_if(handles.rbegin(), handles.rend(), [&](const Handle &handle) {
                const QPointF way = handle.at - at;
                return std::max(std::abs(way.x()), std::abs(way.y())) <= reach;
            });
        if (found != handles.rend())
            return *found;
    }
    return under ? Handle{at, Grip::Shape} : Handle{};
}

void Selection::press(const Press &press, const QList<EntryPtr> &shapes)
{
    m_isPressed = true;
    m_isDragged = false;
    m_isEven = false;
    m_adds = press.adds;
    m_from = m_to = press.at;
    m_shapes = shapes;
    m_handle = handleAt(press.at, press.reach, press.under, shapes);
    m_under = press.under ? press.under->id : 0;
    if (m_handle.grip == Grip::Shape && !has(m_under))
        m_ids = press.adds ? m_ids + QList{m_under} : QList{m_under};
    else if (m_handle.grip == Grip::Shape && press.adds)
        m_ids.removeOne(m_under);
    else if (m_handle.grip == Grip::None && !press.adds)
        clear();
}

void Selection::move(QPointF to, bool isEven)
{
    if (!m_isPressed)
        return;
    m_isDragged = true;
    m_isEven = isEven;
    m_to = to;
}

EntryPtr Selection::changed(const EditEntry &shape) const
{
    const QPoint by = m_to.toPoint() - m_from.toPoint();
    if (m_handle.grip == Grip::End) {
        const QPolygon ends = endsOf(shape.geometry);
        QPoint to = ends.at(m_handle.end) + by;
        if (m_isEven)
            to = evened(ends.at(m_handle.end == 0 ? ends.size() - 1 : m_handle.end - 1), to);
        return std::make_shared<const EditEntry>(EditEntry{
            withEnd(shape.geometry, shape.style, m_handle.end, to), shape.style, shape.id});
    }
    const auto place =
        std::find_if(s_places.begin(), s_places.end(),
                     [this](const Place &candidate) { return candidate.grip == m_handle.grip; });
    const QRect box = solid(boxOf(shape));
    const bool isSized = toolOf(shape.geometry).keepsProportions;
    const PictureMap map = PictureMap::fitting(box, resized(box, *place, by, m_isEven || isSized));
    // A text and a disc are as large as their style says; the lines of all others stay as wide.
    const EditMsg style = isSized ? mapped(shape.style, map) : shape.style;
    return std::make_shared<const EditEntry>(
        EditEntry{mapped(shape.geometry, style, map), style, shape.id});
}

OperationPtr Selection::step() const
{
    const QPoint by = m_to.toPoint() - m_from.toPoint();
    if (!m_isDragged || by.isNull() || m_handle.grip == Grip::None || m_ids.isEmpty())
        return nullptr;
    const QList<EntryPtr> chosen = of(m_shapes);
    if (m_handle.grip == Grip::Shape) {
        const bool isAcross = std::abs(by.x()) >= std::abs(by.y());
        const QPoint straight = isAcross ? QPoint(by.x(), 0) : QPoint(0, by.y());
        return moving(chosen, PictureMap::moving(m_isEven ? straight : by));
    }
    // An edge that is dragged along itself stays where it is.
    const EntryPtr &before = chosen.first();
    const EntryPtr after = changed(*before);
    if (boxOf(*before) == boxOf(*after) && endsOf(before->geometry) == endsOf(after->geometry))
        return nullptr;
    return operation(ReplaceShape{after});
}

std::optional<QRectF> Selection::band() const
{
    if (!m_isDragged || m_handle.grip != Grip::None)
        return {};
    return QRectF(m_from, m_to).normalized();
}

OperationPtr Selection::release()
{
    if (!std::exchange(m_isPressed, false))
        return nullptr;
    OperationPtr result = step();
    if (const std::optional<QRectF> marked = band()) {
        for (const EntryPtr &shape : std::as_const(m_shapes)) {
            const QRect box = boxOf(*shape);
            if (!box.isNull() && marked->contains(solid(box)) && !has(shape->id))
                m_ids.append(shape->id);
        }
    } else if (!m_isDragged && m_handle.grip == Grip::Shape && !m_adds) {
        set({m_under});
    }
    m_isDragged = false;
    m_shapes.clear();
    return result;
}

bool Selection::drop()
{
    m_shapes.clear();
    m_isDragged = false;
    return std::exchange(m_isPressed, false);
}

OperationPtr asOne(QList<OperationPtr> changes)
{
    if (changes.size() > 1)
        return operation(SeveralChanges{std::move(changes)});
    return changes.isEmpty() ? nullptr : changes.first();
}

OperationPtr moving(const QList<EntryPtr> &shapes, const PictureMap &map)
{
    QList<OperationPtr> steps;
    for (const EntryPtr &shape : shapes) {
        steps.append(operation(ReplaceShape{std::make_shared<const EditEntry>(
            EditEntry{mapped(shape->geometry, shape->style, map), shape->style, shape->id})}));
    }
    return asOne(std::move(steps));
}

OperationPtr removing(const QList<EntryPtr> &shapes, const Scene &scene)
{
    QList<OperationPtr> steps;
    for (const EntryPtr &shape : shapes)
        steps.append(operation(RemoveShape{shape->id}));
    int start = 0;
    for (const ShapeId id : scene.derived) {
        const auto isIt = [id](const EntryPtr &shape) { return shape->id == id; };
        const auto found = std::find_if(scene.shapes.begin(), scene.shapes.end(), isIt);
        const auto *marker =
            found == scene.shapes.end() ? nullptr : std::get_if<MarkerShape>(&(*found)->geometry);
        if (!marker)
            continue;
        const bool isRemoved = std::any_of(shapes.begin(), shapes.end(), isIt);
        if (isRemoved && marker->start > 0) {
            start = marker->start;
        } else if (!isRemoved) {
            if (const int inherited = std::exchange(start, 0);
                inherited > 0 && marker->start == 0) {
                EditEntry next = **found;
                std::get<MarkerShape>(next.geometry).start = inherited;
                steps.append(
                    operation(ReplaceShape{std::make_shared<const EditEntry>(std::move(next))}));
            }
        }
    }
    return asOne(std::move(steps));
}

OperationPtr ordering(const QList<EntryPtr> &chosen, const QList<EntryPtr> &all, bool isUp)
{
    QList<EntryPtr> order = all;
    QList<OperationPtr> steps;
    const auto isChosen = [&](qsizetype place) { return chosen.contains(order.at(place)); };
    const auto pass = [&](qsizetype place, qsizetype other) {
        if (other < 0 || other >= order.size() || !isChosen(place) || isChosen(other))
            return;
        order.swapItemsAt(place, other);
        steps.append(operation(
            OrderShape{order.at(other)->id, other == 0 ? ShapeId() : order.at(other - 1)->id}));
    };
    for (qsizetype i = 0; i < order.size(); ++i) {
        if (isUp)
            pass(order.size() - 1 - i, order.size() - i);
        else
            pass(i, i - 1);
    }
    return asOne(std::move(steps));
}

EntryPtr inStyle(const EditEntry &shape, EditMsg style)
{
    const QPolygon ends = endsOf(shape.geometry);
    Geometry geometry =
        ends.isEmpty() ? shape.geometry : withEnd(shape.geometry, style, 0, ends.first());
    return std::make_shared<const EditEntry>(
        EditEntry{std::move(geometry), std::move(style), shape.id});
}
