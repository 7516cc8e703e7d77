#include "helper/areaoutline.h"

#include "base/palette.h"
#include "platform/services.h"

#include <cmath>

namespace {

constexpr qreal s_width = 2;  // logical pixels

}  // namespace

AreaOutline::AreaOutline()
{
    for (QWidget &side : m_sides) {
        side.setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                            Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus);
        side.setAttribute(Qt::WA_ShowWithoutActivating);
        side.setPalette(Palette::accent);
    }
}

void AreaOutline::show(const QRect &area)
{
    OwnWindows &own = *services().ownWindows;
    const int width = static_cast<int>(std::ceil(s_width * m_sides.front().devicePixelRatioF()));
    const QRect outer = area.adjusted(-width, -width, width, width);
    const QRect top(outer.topLeft(), QSize(outer.width(), width));
    const QRect left(outer.x(), area.y(), width, area.height());
    const std::array places{top, top.translated(0, area.height() + width), left,
                            left.translated(area.width() + width, 0)};
    for (size_t i = 0; i < places.size(); ++i) {
        QWidget &side = m_sides.at(i);
        if (side.isVisible()) {
            own.moveWindow(&side, places.at(i).topLeft());
        } else {
            own.coverArea(&side, places.at(i));
            own.dropShadow(&side);
            side.show();
        }
    }
}
