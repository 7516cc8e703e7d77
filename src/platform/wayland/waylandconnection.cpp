#include "platform/wayland/waylandconnection.h"

#include "base/log.h"

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QScreen>
#include <QSocketNotifier>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fake-input.h>
#include <poll.h>
#include <wayland-client.h>
#include <wlr-screencopy-unstable-v1.h>
#include <wlr-virtual-pointer-unstable-v1.h>
#include <xdg-output-unstable-v1.h>

namespace {

constexpr int s_openLimit = 3000;  // ms

// The versions of the interfaces that are known here.
constexpr uint32_t s_outputVersion = 4;
constexpr uint32_t s_logicalVersion = 3;
constexpr uint32_t s_screencopyVersion = 3;
constexpr uint32_t s_pointerVersion = 2;
constexpr uint32_t s_fakeInputVersion = 3;

template<typename Interface>
Interface *bind(wl_registry *registry, uint32_t name, const wl_interface &interface,
                uint32_t version)
{
    return static_cast<Interface *>(wl_registry_bind(registry, name, &interface, version));
}

// Screens that are turned by a quarter change their sides.
bool isOnItsSide(int32_t transform) { return transform % 2 == 1; }

}  // namespace

std::shared_ptr<WaylandConnection> WaylandConnection::open()
{
    wl_display *display = wl_display_connect(nullptr);
    if (!display)
        return nullptr;
    const std::shared_ptr<WaylandConnection> connection(new WaylandConnection(display));
    return connection->readGlobals() ? connection : nullptr;
}

WaylandConnection::WaylandConnection(wl_display *display) : m_display(display)
{
    auto *notifier = new QSocketNotifier(wl_display_get_fd(display), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &WaylandConnection::readEvents);
    connect(this, &WaylandConnection::broken, notifier,
            [notifier] { notifier->setEnabled(false); });
}

WaylandConnection::~WaylandConnection()
{
    for (const auto &output : m_outputs)
        destroy(*output);
    if (m_logicalOutputs)
        zxdg_output_manager_v1_destroy(m_logicalOutputs);
    if (m_fakeInput)
        org_kde_kwin_fake_input_destroy(m_fakeInput);
    if (m_virtualPointers)
        zwlr_virtual_pointer_manager_v1_destroy(m_virtualPointers);
    if (m_screencopy)
        zwlr_screencopy_manager_v1_destroy(m_screencopy);
    if (m_seat)
        wl_seat_destroy(m_seat);
    if (m_shm)
        wl_shm_destroy(m_shm);
    if (m_registry)
        wl_registry_destroy(m_registry);
    wl_display_disconnect(m_display);
}

bool WaylandConnection::readGlobals()
{
    static const wl_registry_listener s_listener{
        .global =
            [](void *data, wl_registry *, uint32_t name, const char *interface, uint32_t version) {
                static_cast<WaylandConnection *>(data)->global(name, interface, version);
            },
        .global_remove =
            [](void *data, wl_registry *, uint32_t name) {
                static_cast<WaylandConnection *>(data)->globalRemoved(name);
            }};
    m_registry = wl_display_get_registry(m_display);
    wl_registry_add_listener(m_registry, &s_listener, this);
    // The first answer names what there is, the second one tells of the screens.
    if (!sync(s_openLimit))
        return false;
    for (const auto &output : m_outputs)
        tellLogical(*output);
    return sync(s_openLimit);
}

void WaylandConnection::global(uint32_t name, const char *interface, uint32_t version)
{
    const auto is = [interface](const wl_interface &wanted) {
        return std::strcmp(interface, wanted.name) == 0;
    };
    if (is(wl_shm_interface) && !m_shm) {
        m_shm = bind<wl_shm>(m_registry, name, wl_shm_interface, 1);
    } else if (is(wl_seat_interface) && !m_seat) {
        m_seat = bind<wl_seat>(m_registry, name, wl_seat_interface, 1);
    } else if (is(wl_output_interface)) {
        addOutput(name, version);
    } else if (is(zxdg_output_manager_v1_interface) && !m_logicalOutputs) {
        m_logicalOutputs =
            bind<zxdg_output_manager_v1>(m_registry, name, zxdg_output_manager_v1_interface,
                                         std::min(version, s_logicalVersion));
    } else if (is(zwlr_screencopy_manager_v1_interface) && !m_screencopy) {
        m_screencopy =
            bind<zwlr_screencopy_manager_v1>(m_registry, name, zwlr_screencopy_manager_v1_interface,
                                             std::min(version, s_screencopyVersion));
    } else if (is(zwlr_virtual_pointer_manager_v1_interface) && !m_virtualPointers) {
        m_virtualPointers = bind<zwlr_virtual_pointer_manager_v1>(
            m_registry, name, zwlr_virtual_pointer_manager_v1_interface,
            std::min(version, s_pointerVersion));
    } else if (is(org_kde_kwin_fake_input_interface) && version >= s_fakeInputVersion &&
               !m_fakeInput) {
        m_fakeInput = bind<org_kde_kwin_fake_input>(
            m_registry, name, org_kde_kwin_fake_input_interface, s_fakeInputVersion);
    }
}

void WaylandConnection::globalRemoved(uint32_t name)
{
    const auto found = std::find_if(m_outputs.begin(), m_outputs.end(),
                                    [name](const auto &output) { return output->name == name; });
    if (found == m_outputs.end())
        return;
    const std::unique_ptr<WaylandOutput> gone = std::move(*found);
    m_outputs.erase(found);
    emit outputGone(gone.get());
    destroy(*gone);
}

void WaylandConnection::addOutput(uint32_t name, uint32_t version)
{
    static const wl_output_listener s_listener{
        .geometry =
            [](void *data, wl_output *, int32_t, int32_t, int32_t, int32_t, int32_t, const char *,
               const char *,
               int32_t transform) { static_cast<WaylandOutput *>(data)->transform = transform; },
        .mode =
            [](void *data, wl_output *, uint32_t flags, int32_t width, int32_t height, int32_t) {
                if (flags & WL_OUTPUT_MODE_CURRENT)
                    static_cast<WaylandOutput *>(data)->mode = {width, height};
            },
        .done = [](void *, wl_output *) {},
        .scale = [](void *data, wl_output *,
                    int32_t scale) { static_cast<WaylandOutput *>(data)->scale = scale; },
        .name =
            [](void *data, wl_output *, const char *title) {
                static_cast<WaylandOutput *>(data)->title = QString::fromUtf8(title);
            },
        .description = [](void *, wl_output *, const char *) {}};
    auto output = std::make_unique<WaylandOutput>();
    output->name = name;
    output->output =
        bind<wl_output>(m_registry, name, wl_output_interface, std::min(version, s_outputVersion));
    wl_output_add_listener(output->output, &s_listener, output.get());
    // At the start the screens may be named before what tells of their places.
    if (m_logicalOutputs)
        tellLogical(*output);
    m_outputs.push_back(std::move(output));
}

void WaylandConnection::tellLogical(WaylandOutput &output)
{
    static const zxdg_output_v1_listener s_listener{
        .logical_position =
            [](void *data, zxdg_output_v1 *, int32_t x, int32_t y) {
                static_cast<WaylandOutput *>(data)->area.moveTo(x, y);
            },
        .logical_size =
            [](void *data, zxdg_output_v1 *, int32_t width, int32_t height) {
                static_cast<WaylandOutput *>(data)->area.setSize({width, height});
            },
        .done = [](void *, zxdg_output_v1 *) {},
        .name =
            [](void *data, zxdg_output_v1 *, const char *title) {
                static_cast<WaylandOutput *>(data)->title = QString::fromUtf8(title);
            },
        .description = [](void *, zxdg_output_v1 *, const char *) {}};
    if (!m_logicalOutputs || output.logical)
        return;
    output.logical = zxdg_output_manager_v1_get_xdg_output(m_logicalOutputs, output.output);
    zxdg_output_v1_add_listener(output.logical, &s_listener, &output);
}

void WaylandConnection::destroy(WaylandOutput &output)
{
    if (output.logical)
        zxdg_output_v1_destroy(output.logical);
    wl_output_destroy(output.output);
}

// The toolkit's primary screen first.
ScreenLayout WaylandConnection::layout() const
{
    QList<ScreenLayout::Screen> screens;
    const QScreen *primary = QGuiApplication::primaryScreen();
    for (const auto &output : m_outputs) {
        const QSize pixels =
            isOnItsSide(output->transform) ? output->mode.transposed() : output->mode;
        if (output->area.isEmpty() || pixels.isEmpty())
            continue;
        const bool isPrimary = primary && primary->name() == output->title;
        // Some desktops count in pixels here, as GNOME 43 does, but give windows logical sizes.
        const int counted = output->area.size() == pixels ? output->scale : 1;
        const QRect logical(output->area.topLeft() / counted, output->area.size() / counted);
        screens.insert(isPrimary ? 0 : screens.size(),
                       {.name = output->title, .logical = logical, .pixels = pixels});
    }
    return ScreenLayout(screens);
}

void WaylandConnection::flush()
{
    if (!m_isBroken && wl_display_flush(m_display) < 0 && errno != EAGAIN)
        fail();
}

// The socket is read here and nowhere else, so that preparing to read never has to wait.
void WaylandConnection::readEvents()
{
    if (m_isBroken)
        return;
    while (wl_display_prepare_read(m_display) != 0)
        wl_display_dispatch_pending(m_display);
    if (wl_display_read_events(m_display) < 0 || wl_display_dispatch_pending(m_display) < 0)
        fail();
    flush();
}

void WaylandConnection::fail()
{
    if (std::exchange(m_isBroken, true))
        return;
    qCInfo(logGrab) << "the connection to the compositor is broken:" << std::strerror(errno);
    emit broken();
}

bool WaylandConnection::waitFor(const std::function<bool()> &isDone, int limit)
{
    const QDeadlineTimer deadline(limit);
    wl_display_dispatch_pending(m_display);
    while (!isDone()) {
        flush();
        pollfd socket{.fd = wl_display_get_fd(m_display), .events = POLLIN, .revents = 0};
        if (m_isBroken || deadline.hasExpired())
            return false;
        if (poll(&socket, 1, static_cast<int>(deadline.remainingTime())) > 0)
            readEvents();
    }
    return true;
}

bool WaylandConnection::sync(int limit)
{
    static const wl_callback_listener s_listener{
        .done = [](void *data, wl_callback *, uint32_t) { *static_cast<bool *>(data) = true; }};
    bool isDone = false;
    wl_callback *callback = wl_display_sync(m_display);
    wl_callback_add_listener(callback, &s_listener, &isDone);
    const bool isInTime = waitFor([&isDone] { return isDone; }, limit);
    wl_callback_destroy(callback);
    return isInTime;
}
