#include "helper/exactmovement.h"

#include "helper/pixelrows.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int s_tellingLines = 24;  // changed lines; a caret or two change fewer
constexpr int s_barWidth = 32;  // largest width of a scroll bar, also limited to a part of the view
constexpr int s_barParts = 8;

}  // namespace

int rowsThatDiffer(const QImage &before, const QImage &after, const Movement &movement)
{
    const QRect &moved = movement.moved;
    int left = moved.right();
    int right = moved.left() - 1;
    int result = 0;
    for (int y = moved.top(); y < movement.bottom - movement.rows; ++y) {
        const QRgb *was = pixelRow(before, y + movement.rows);
        const QRgb *is = pixelRow(after, y);
        const auto [first, other] =
            std::mismatch(is + moved.left(), is + moved.right() + 1, was + moved.left());
        const int x = static_cast<int>(first - is);
        if (x > moved.right())
            continue;
        ++result;
        left = std::min(left, x);
        int last = moved.right();
        while (is[last] == was[last])
            --last;
        right = std::max(right, last);
    }
    return right - left < std::min(s_barWidth, moved.width() / s_barParts) ? 0 : result;
}

Movement exactMovement(const QImage &before, const QImage &after, int most, const QRect &moved)
{
    Movement movement{.kind = Movement::Kind::Moved,
                      .rows = std::min(most, moved.height() - 1),
                      .moved = {0, moved.y(), before.width(), moved.height()},
                      .bottom = moved.bottom() + 1};
    const size_t bytes = sizeof(QRgb) * static_cast<size_t>(before.width());
    for (; movement.rows > 0; --movement.rows) {
        if (rowsThatDiffer(before, after, movement) > 0)
            continue;
        int telling = 0;
        for (int y = moved.top(); y + movement.rows <= moved.bottom(); ++y)
            telling += std::memcmp(pixelRow(after, y), pixelRow(before, y), bytes) != 0;
        if (telling >= s_tellingLines)
            return movement;
    }
    return {.kind = Movement::Kind::Still};
}
