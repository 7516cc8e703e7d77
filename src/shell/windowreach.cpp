#include "shell/windowreach.h"

#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace {

// Of the caption row, in logical pixels.
constexpr int s_captionHeight = 28;
constexpr int s_handWidth = 120;

}  // namespace

QRect withinReach(const QRect &window, const QList<QRect> &areas)
{
    const QRect caption(window.topLeft(), QSize(window.width(), s_captionHeight));
    const bool isReachable = std::any_of(areas.begin(), areas.end(), [&](const QRect &area) {
        const QRect seen = area & caption;
        return seen.width() >= s_handWidth && seen.height() >= s_captionHeight / 2;
    });
    if (isReachable || areas.isEmpty())
        return window;
    return movedInto(window, areas.first());
}

QRect movedInto(const QRect &window, const QRect &area)
{
    QRect moved = window;
    moved.moveTo(std::max(area.left(), std::min(window.left(), area.right() + 1 - window.width())),
                 std::max(area.top(), std::min(window.top(), area.bottom() + 1 - window.height())));
    return moved;
}

QPoint placeBeside(const QWidget &widget, QSize size)
{
    const QWidget *place = &widget;
    while (!place->isVisible() && place->parentWidget())
        place = place->parentWidget();
    const QRect screen = place->screen()->availableGeometry();
    QPoint corner = place->mapToGlobal(QPoint(0, -size.height()));
    if (corner.y() < screen.top())
        corner = place->mapToGlobal(QPoint(0, place->height()));
    return movedInto({corner, size}, screen).topLeft();
}
