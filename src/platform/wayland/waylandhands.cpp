#include "platform/wayland/waylandhands.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSinglePointEvent>
#include <QWindow>

#include <algorithm>
#include <cstdlib>

#include <wayland-client.h>
#include <wlr-virtual-pointer-unstable-v1.h>

namespace {

constexpr int s_clickLength = 15;  // as the compositors count a wheel's click
constexpr int s_parts = 1000;      // of a logical unit, in which the pointer is placed

uint32_t now()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<uint32_t>(time.tv_sec * 1000 + time.tv_nsec / 1000000);
}

uint32_t parts(qreal length) { return static_cast<uint32_t>(std::max(length, 0.0) * s_parts); }

}  // namespace

WaylandHands::WaylandHands(std::shared_ptr<WaylandConnection> connection)
    : m_connection(std::move(connection))
{
    qGuiApp->installEventFilter(this);
}

WaylandHands::~WaylandHands()
{
    if (m_device)
        zwlr_virtual_pointer_v1_destroy(m_device);
}

bool WaylandHands::eventFilter(QObject *watched, QEvent *event)
{
    if (event->isSinglePointEvent() && watched->isWindowType()) {
        const auto *window = static_cast<QWindow *>(watched);
        const auto &point = *static_cast<QSinglePointEvent *>(event);
        if (window->windowStates().testFlag(Qt::WindowFullScreen))
            m_pointer = m_connection->layout().toGlobal(window->screen()->geometry().topLeft() +
                                                        point.scenePosition());
    }
    return QObject::eventFilter(watched, event);
}

// Only what happens over windows of this program is known.
bool WaylandHands::isHandBusy()
{
    return QGuiApplication::focusWindow() &&
           (QGuiApplication::mouseButtons() != Qt::NoButton ||
            QGuiApplication::queryKeyboardModifiers() != Qt::NoModifier);
}

zwlr_virtual_pointer_v1 *WaylandHands::device()
{
    if (!m_device && m_connection->virtualPointers())
        m_device = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(
            m_connection->virtualPointers(), m_connection->seat());
    return m_device;
}

// The compositor takes the place as a share of the box around all screens.
void WaylandHands::movePointer(QPoint to)
{
    const ScreenLayout layout = m_connection->layout();
    QRect box;
    for (const ScreenLayout::Screen &screen : layout.screens())
        box |= screen.logical;
    if (!device() || box.isEmpty())
        return;
    const QPointF place = layout.toLogical(to) - box.topLeft();
    zwlr_virtual_pointer_v1_motion_absolute(m_device, now(), parts(place.x()), parts(place.y()),
                                            parts(box.width()), parts(box.height()));
    zwlr_virtual_pointer_v1_frame(m_device);
    m_connection->flush();
    m_pointer = to;
}

// A program of its own would need a whole keyboard to hold Shift, so that the horizontal wheel is
// all there is for that direction.
void WaylandHands::turnWheel(QPoint at, int clicks, Wheel wheel)
{
    if (!device() || wheel == Wheel::DownWithShift)
        return;
    movePointer(at);
    const int step = clicks < 0 ? -1 : 1;
    const uint32_t axis =
        wheel == Wheel::Down ? WL_POINTER_AXIS_VERTICAL_SCROLL : WL_POINTER_AXIS_HORIZONTAL_SCROLL;
    // One by one, as a hand turns it.
    for (int i = 0; i < std::abs(clicks); ++i) {
        zwlr_virtual_pointer_v1_axis_source(m_device, WL_POINTER_AXIS_SOURCE_WHEEL);
        zwlr_virtual_pointer_v1_axis_discrete(m_device, now(), axis,
                                              wl_fixed_from_int(s_clickLength * step), step);
        zwlr_virtual_pointer_v1_frame(m_device);
    }
    m_connection->flush();
}
