#include "platform/wayland/waylandhands.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSinglePointEvent>
#include <QWindow>

#include <algorithm>
#include <cstdlib>

#include <fake-input.h>
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

uint32_t numberOf(PointerDevice::Axis axis)
{
    return axis == PointerDevice::Axis::Vertical ? WL_POINTER_AXIS_VERTICAL_SCROLL
                                                 : WL_POINTER_AXIS_HORIZONTAL_SCROLL;
}

// Of sway and its kin, which take a place as a share of the box around all screens.
class VirtualPointer : public PointerDevice
{
public:
    explicit VirtualPointer(const WaylandConnection &connection)
        : m_pointer(zwlr_virtual_pointer_manager_v1_create_virtual_pointer(
              connection.virtualPointers(), connection.seat()))
    {
    }
    ~VirtualPointer() override { zwlr_virtual_pointer_v1_destroy(m_pointer); }
    VirtualPointer(const VirtualPointer &) = delete;
    VirtualPointer &operator=(const VirtualPointer &) = delete;

    void move(QPointF to, const QRect &box) override
    {
        const QPointF place = to - box.topLeft();
        zwlr_virtual_pointer_v1_motion_absolute(m_pointer, now(), parts(place.x()),
                                                parts(place.y()), parts(box.width()),
                                                parts(box.height()));
        zwlr_virtual_pointer_v1_frame(m_pointer);
    }
    void turn(Axis axis, bool isForward) override
    {
        const int step = isForward ? 1 : -1;
        zwlr_virtual_pointer_v1_axis_source(m_pointer, WL_POINTER_AXIS_SOURCE_WHEEL);
        zwlr_virtual_pointer_v1_axis_discrete(m_pointer, now(), numberOf(axis),
                                              wl_fixed_from_int(s_clickLength * step), step);
        zwlr_virtual_pointer_v1_frame(m_pointer);
    }

private:
    zwlr_virtual_pointer_v1 *m_pointer;
};

// Of KWin, which offers it to programs whose desktop entry asks for it.
class FakeInput : public PointerDevice
{
public:
    explicit FakeInput(const WaylandConnection &connection) : m_input(connection.fakeInput())
    {
        const QByteArray name = QGuiApplication::applicationDisplayName().toUtf8();
        const QByteArray reason =
            QCoreApplication::translate("WaylandHands", "To turn the wheel over what is captured")
                .toUtf8();
        org_kde_kwin_fake_input_authenticate(m_input, name, reason);
    }
    void move(QPointF to, const QRect & /*box*/) override
    {
        org_kde_kwin_fake_input_pointer_motion_absolute(m_input, wl_fixed_from_double(to.x()),
                                                        wl_fixed_from_double(to.y()));
    }
    void turn(Axis axis, bool isForward) override
    {
        org_kde_kwin_fake_input_axis(m_input, numberOf(axis),
                                     wl_fixed_from_int(isForward ? s_clickLength : -s_clickLength));
    }

private:
    org_kde_kwin_fake_input *m_input;
};

}  // namespace

WaylandHands::WaylandHands(std::shared_ptr<WaylandConnection> connection)
    : m_connection(std::move(connection))
{
    qGuiApp->installEventFilter(this);
}

// In logical units, which need not be those that the toolkit tells.
QPointF WaylandHands::originOf(const QScreen &screen) const
{
    const ScreenLayout layout = m_connection->layout();
    for (const ScreenLayout::Screen &known : layout.screens()) {
        if (known.name == screen.name())
            return known.logical.topLeft();
    }
    return screen.geometry().topLeft();
}

bool WaylandHands::eventFilter(QObject *watched, QEvent *event)
{
    if (event->isSinglePointEvent() && watched->isWindowType()) {
        const auto *window = static_cast<QWindow *>(watched);
        const auto &point = *static_cast<QSinglePointEvent *>(event);
        if (window->windowStates().testFlag(Qt::WindowFullScreen))
            m_pointer = m_connection->layout().toGlobal(originOf(*window->screen()) +
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

bool WaylandHands::canTurnWheels(const WaylandConnection &connection)
{
    return connection.virtualPointers() || connection.fakeInput();
}

PointerDevice *WaylandHands::device()
{
    if (m_device || !canTurnWheels(*m_connection))
        return m_device.get();
    if (m_connection->virtualPointers())
        m_device = std::make_unique<VirtualPointer>(*m_connection);
    else
        m_device = std::make_unique<FakeInput>(*m_connection);
    return m_device.get();
}

void WaylandHands::movePointer(QPoint to)
{
    const ScreenLayout layout = m_connection->layout();
    QRect box;
    for (const ScreenLayout::Screen &screen : layout.screens())
        box |= screen.logical;
    if (!device() || box.isEmpty())
        return;
    device()->move(layout.toLogical(to), box);
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
    const auto axis =
        wheel == Wheel::Down ? PointerDevice::Axis::Vertical : PointerDevice::Axis::Horizontal;
    // One by one, as a hand turns it.
    for (int i = 0; i < std::abs(clicks); ++i)
        device()->turn(axis, clicks > 0);
    m_connection->flush();
}
