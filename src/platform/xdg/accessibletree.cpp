#include "platform/xdg/accessibletree.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr int s_farAway = 1 << 29;  // lists of millions of rows report the extents of all rows
constexpr int s_leastSide = 40;
constexpr int s_thickestBar = 40;
constexpr int s_thickestLine = 4;  // the border around a list; an indentation is wider
constexpr int s_besides = 8;       // the distance between content and its scroll bar
constexpr int s_sticksOut = 8;     // more than a rounding error or a border

// The widest margins: window frames, or the shadows that a program draws itself.
constexpr int s_widestSides = 80;
constexpr int s_highestSides = 120;
// The largest scale comes first, because with a smaller one the missing pixels would be taken for a
// thick frame.
constexpr std::array s_scales{3.0, 2.5, 2.25, 2.0, 1.75, 1.5, 1.25, 1.0};

int right(const QRect &rect) { return rect.x() + rect.width(); }
int bottom(const QRect &rect) { return rect.y() + rect.height(); }

QRect between(int x1, int y1, int x2, int y2) { return {x1, y1, x2 - x1, y2 - y1}; }

bool isUpright(const QRect &bar) { return bar.height() > bar.width(); }

// Whether a vertical scroll bar belongs to the content: it is beside it or over its edge.
bool moves(const QRect &bar, const QRect &content)
{
    return isUpright(bar) && bar.x() <= right(content) + s_besides &&
           right(bar) >= content.x() - s_besides && bar.y() < bottom(content) &&
           bottom(bar) > content.y();
}

bool isLargeEnough(const QRect &area)
{
    return area.width() >= s_leastSide && area.height() >= s_leastSide;
}

// The area without a scroll bar, which is removed from the nearest edge.
QRect without(const QRect &bar, const QRect &area)
{
    if (!bar.intersects(area))
        return area;
    QRect rest = area;
    if (isUpright(bar)) {
        if (right(area) - right(bar) <= bar.x() - area.x())
            rest.setWidth(bar.x() - area.x());
        else
            rest.setLeft(right(bar));
    } else {
        if (bottom(area) - bottom(bar) <= bar.y() - area.y())
            rest.setHeight(bar.y() - area.y());
        else
            rest.setTop(bottom(bar));
    }
    return rest;
}

// The part of the area that is beside the scroll bar; a header above the scroll bar does not
// scroll.
QRect alongside(const QRect &bar, const QRect &area)
{
    const QRect rest = between(area.x(), std::max(area.y(), bar.y()), right(area),
                               std::min(bottom(area), bottom(bar)));
    return rest.height() * 2 >= area.height() ? rest : area;
}

QRect unitedItems(const AccessibleLevel &level)
{
    QRect result;
    for (const QRect &item : level.items)
        result |= item;
    return result;
}

// For a list that doesn't report its scroll bars: its items end at the border and at the scroll
// bar.
QRect aroundItems(const AccessibleLevel &level)
{
    const QRect items = unitedItems(level) | level.header;
    const QRect &whole = level.extents;
    QRect area = whole;
    const int line = items.x() - whole.x();
    if (line > 0 && line <= s_thickestLine)
        area.adjust(line, line, -line, -line);
    const int rest = right(whole) - right(items);
    if (rest > 0 && rest <= s_thickestBar)
        area.setWidth(right(items) - area.x());
    if (level.header.intersects(area))
        area.setTop(bottom(level.header));
    return area;
}

// Whether the content is higher than the part that is shown.
bool overflows(const QRect &content, const QRect &shown)
{
    return content.height() > shown.height() + s_sticksOut && content.intersects(shown);
}

QRect areaOf(const AccessibleLevel &level)
{
    const QRect child = level.next & level.extents;
    QRect area;
    for (const QRect &bar : level.scrollBars) {
        // A child that is much lower than the scroll bar is one of several that scroll together.
        const bool isOneOfMany = child.height() * 4 < bar.height() * 3;
        const QRect content = isOneOfMany ? level.extents : child;
        if (moves(bar, content))
            area = alongside(bar, area.isNull() ? content : area);
    }
    if (!area.isNull())
        return area;
    if (level.role == AccessibleRole::Terminal || overflows(level.next, level.extents))
        return level.extents;
    return overflows(unitedItems(level), level.extents) ? aroundItems(level) : QRect();
}

}  // namespace

bool holdsItems(AccessibleRole role)
{
    switch (role) {
    case AccessibleRole::List:
    case AccessibleRole::Table:
    case AccessibleRole::Tree:
    case AccessibleRole::TreeTable:
    case AccessibleRole::DocumentFrame:
    case AccessibleRole::DocumentWeb:
    case AccessibleRole::ListBox:
        return true;
    default:
        return false;
    }
}

bool areSane(const QRect &extents)
{
    const auto isNear = [](int value) { return value > -s_farAway && value < s_farAway; };
    return extents.width() > 0 && extents.height() > 0 && isNear(extents.width()) &&
           isNear(extents.height()) && isNear(extents.x()) && isNear(extents.y());
}

bool areThin(const QRect &extents)
{
    const int longer = std::max(extents.width(), extents.height());
    const int shorter = std::min(extents.width(), extents.height());
    return shorter > 1 && shorter <= s_thickestBar && longer >= 2 * shorter;
}

QRect scrollingArea(const QList<AccessibleLevel> &path)
{
    for (qsizetype i = path.size() - 1; i >= 0; --i) {
        QRect area = areaOf(path[i]);
        // Objects further out may report the content's scroll bars, and may clip the content.
        for (qsizetype around = i; around >= 0 && !area.isEmpty(); --around) {
            area &= path[around].extents;
            for (const QRect &bar : path[around].scrollBars)
                area = without(bar, area);
        }
        if (isLargeEnough(area))
            return area;
    }
    return {};
}

QRect PixelMapping::toPixels(const QRect &extents) const
{
    // Scales are multiples of a quarter, so these products are exact.
    const QPointF from = QPointF(extents.topLeft()) * scale + offset;
    const QPointF to = QPointF(right(extents), bottom(extents)) * scale + offset;
    return between(static_cast<int>(std::ceil(from.x())), static_cast<int>(std::ceil(from.y())),
                   static_cast<int>(std::floor(to.x())), static_cast<int>(std::floor(to.y())));
}

std::optional<PixelMapping> pixelMapping(const QRect &told, const QRect &window,
                                         const QList<QPoint> &screens)
{
    if (!areSane(told))
        return {};
    for (const qreal scale : s_scales) {
        const QSizeF sides = QSizeF(window.size()) - QSizeF(told.size()) * scale;
        // Allows one logical pixel on each side, because both corners are rounded.
        const qreal loose = 2 * scale;
        if (sides.width() < -loose || sides.width() > s_widestSides || sides.height() < -loose ||
            sides.height() > s_highestSides)
            continue;
        QList<QPointF> offsets{QPointF()};
        for (const QPoint &screen : screens)
            offsets.append(QPointF(screen) * (1 - scale));
        for (const QPointF &offset : std::as_const(offsets)) {
            const QPointF into = QPointF(told.topLeft()) * scale + offset - window.topLeft();
            if (into.x() >= -loose && into.x() <= sides.width() + loose && into.y() >= -loose &&
                into.y() <= sides.height() + loose)
                return PixelMapping{scale, offset, true};
        }
        // Assumes that a frame is as thick at the bottom as at the sides, and that the title bar is
        // at the top.
        const qreal side = std::max(0.0, std::round(sides.width() / 2));
        const QPointF corner(side, std::max(0.0, sides.height() - side));
        return PixelMapping{scale, window.topLeft() + corner - QPointF(told.topLeft()) * scale,
                            false};
    }
    return {};
}

bool isUsable(const QRect &area, const QRect &window, QPoint point)
{
    return isLargeEnough(area) && window.contains(area) && area.contains(point);
}
