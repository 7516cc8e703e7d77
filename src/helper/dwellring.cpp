#include "helper/dwellring.h"

#include "base/palette.h"
#include "platform/services.h"

#include <QPainter>

#include <algorithm>
#include <limits>

namespace {

constexpr int s_size = 26;  // logical pixels
constexpr qreal s_stroke = 3;
constexpr int s_hole = 6;  // thickness of the ring if nothing is translucent
constexpr int s_gap = 6;   // device pixels between the ring and a menu
constexpr int s_fullTurn = 360 * 16;
constexpr int s_top = 90 * 16;

}  // namespace

DwellRing::DwellRing()
    : QWidget(nullptr, Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
}

QPoint DwellRing::place(QPoint pointer, QSize size, const QList<QRect> &menus,
                        const QList<QRect> &screens)
{
    // Tries positions beside, above and below each menu, as close to the pointer as possible.
    const QPoint centred = pointer - QPoint(size.width() / 2, size.height() / 2);
    QPoint best = centred;
    int nearest = std::numeric_limits<int>::max();
    for (const QRect &menu : menus) {
        const int left = menu.x() - s_gap - size.width();
        const int right = menu.x() + menu.width() + s_gap;
        const int above = menu.y() - s_gap - size.height();
        const int below = menu.y() + menu.height() + s_gap;
        for (const QPoint corner : {QPoint(right, centred.y()), QPoint(left, centred.y()),
                                    QPoint(centred.x(), above), QPoint(centred.x(), below)}) {
            const QRect box(corner, size);
            const int distance = (corner - centred).manhattanLength();
            const bool isFree =
                std::none_of(menus.begin(), menus.end(),
                             [&box](const QRect &other) { return other.intersects(box); }) &&
                std::any_of(screens.begin(), screens.end(),
                            [&box](const QRect &screen) { return screen.contains(box); });
            if (isFree && distance < nearest) {
                nearest = distance;
                best = corner;
            }
        }
    }
    return best;
}

void DwellRing::show(QPoint pointer, const QList<WindowCatalogue::Entry> &menus, double rest)
{
    m_rest = rest;
    OwnWindows &own = *services().ownWindows;
    QList<QRect> boxes;
    for (const WindowCatalogue::Entry &menu : menus)
        boxes.append(menu.bounds.toRect());
    const QSize size = (QSizeF(s_size, s_size) * devicePixelRatioF()).toSize();
    const QPoint corner = place(pointer, size, boxes, services().screens->areas());
    if (isVisible()) {
        own.moveWindow(this, corner);
    } else {
        own.coverArea(this, {corner, size});
        // Without a compositor nothing is translucent, so the window is cut to the ring.
        if (!own.isComposited())
            setMask(QRegion(rect(), QRegion::Ellipse) -
                    QRegion(rect().adjusted(s_hole, s_hole, -s_hole, -s_hole), QRegion::Ellipse));
        own.dropShadow(this);
        QWidget::show();
    }
    update();
}

void DwellRing::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal margin = s_stroke / 2 + 1;
    const QRectF circle = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
    painter.setPen(QPen(Palette::translucent(Palette::dark, 200), s_stroke));
    painter.drawEllipse(circle);
    painter.setPen(QPen(Palette::accent, s_stroke, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(circle, s_top, -static_cast<int>(m_rest * s_fullTurn));
}
