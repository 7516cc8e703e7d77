#include "shell/windowreach.h"

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
    const QRect home = areas.first();
    QRect moved = window;
    moved.moveTo(std::max(home.left(), std::min(window.left(), home.right() + 1 - window.width())),
                 std::max(home.top(), std::min(window.top(), home.bottom() + 1 - window.height())));
    return moved;
}
