#include "datacontrol.h"

#include <QByteArrayList>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <wayland-client.h>
#include <wlr-data-control-unstable-v1.h>

namespace {

// A reader that stops in the middle keeps its pipe open, and the pipes of a process are counted.
constexpr size_t s_mostTransfers = 64;
// Who reads while another program copies gets the rest, as long as it goes on reading.
constexpr int s_lastPatience = 5000;  // ms

template<auto destroy> struct Destroyer {
    template<typename Proxy> void operator()(Proxy *proxy) const { destroy(proxy); }
};
template<typename Proxy, auto destroy> using Owned = std::unique_ptr<Proxy, Destroyer<destroy>>;

// What the readers of a type ask for, as each toolkit calls it.
QByteArrayList namesOf(const QByteArray &type)
{
    if (type == "text/plain")
        return {"text/plain;charset=utf-8", type, "UTF8_STRING", "TEXT", "STRING"};
    return {type};
}

class Keeper
{
public:
    explicit Keeper(const QByteArray &content)
        : m_content(content), m_display(wl_display_connect(nullptr))
    {
    }

    bool take(const QByteArray &type);
    void run();

private:
    struct Transfer {
        int pipe = -1;
        qsizetype sent = 0;
    };

    void bind(const char *interface, uint32_t name);
    void send(int pipe);
    bool advance(Transfer &transfer) const;
    void write();

    static const wl_registry_listener s_registryListener;
    static const zwlr_data_control_device_v1_listener s_deviceListener;
    static const zwlr_data_control_source_v1_listener s_sourceListener;

    const QByteArray &m_content;
    Owned<wl_display, wl_display_disconnect> m_display;
    Owned<wl_registry, wl_registry_destroy> m_registry{};
    Owned<wl_seat, wl_seat_destroy> m_seat{};
    Owned<zwlr_data_control_manager_v1, zwlr_data_control_manager_v1_destroy> m_manager{};
    Owned<zwlr_data_control_device_v1, zwlr_data_control_device_v1_destroy> m_device{};
    Owned<zwlr_data_control_source_v1, zwlr_data_control_source_v1_destroy> m_source{};
    std::vector<Transfer> m_transfers{};
    bool m_isReplaced = false;
};

Keeper &keeper(void *data) { return *static_cast<Keeper *>(data); }

const wl_registry_listener Keeper::s_registryListener{
    .global = [](void *data, wl_registry *, uint32_t name, const char *interface,
                 uint32_t) { keeper(data).bind(interface, name); },
    .global_remove = [](void *, wl_registry *, uint32_t) {},
};

// What the clipboard holds is none of this process's business, beyond that it is its own no more.
const zwlr_data_control_device_v1_listener Keeper::s_deviceListener{
    .data_offer =
        [](void *, zwlr_data_control_device_v1 *, zwlr_data_control_offer_v1 *offer) {
            zwlr_data_control_offer_v1_destroy(offer);
        },
    .selection = [](void *, zwlr_data_control_device_v1 *, zwlr_data_control_offer_v1 *) {},
    .finished = [](void *data, zwlr_data_control_device_v1 *) { keeper(data).m_isReplaced = true; },
    .primary_selection = [](void *, zwlr_data_control_device_v1 *, zwlr_data_control_offer_v1 *) {},
};

const zwlr_data_control_source_v1_listener Keeper::s_sourceListener{
    .send = [](void *data, zwlr_data_control_source_v1 *, const char *,
               int32_t pipe) { keeper(data).send(pipe); },
    .cancelled = [](void *data,
                    zwlr_data_control_source_v1 *) { keeper(data).m_isReplaced = true; },
};

void Keeper::bind(const char *interface, uint32_t name)
{
    const auto is = [interface](const wl_interface &other) {
        return std::strcmp(interface, other.name) == 0;
    };
    const auto bound = [this, name](const wl_interface &wanted) {
        return wl_registry_bind(m_registry.get(), name, &wanted, 1);
    };
    if (is(wl_seat_interface) && !m_seat)
        m_seat.reset(static_cast<wl_seat *>(bound(wl_seat_interface)));
    else if (is(zwlr_data_control_manager_v1_interface) && !m_manager)
        m_manager.reset(static_cast<zwlr_data_control_manager_v1 *>(
            bound(zwlr_data_control_manager_v1_interface)));
}

bool Keeper::take(const QByteArray &type)
{
    if (!m_display)
        return false;
    m_registry.reset(wl_display_get_registry(m_display.get()));
    wl_registry_add_listener(m_registry.get(), &s_registryListener, this);
    if (wl_display_roundtrip(m_display.get()) < 0 || !m_seat || !m_manager)
        return false;
    m_device.reset(zwlr_data_control_manager_v1_get_data_device(m_manager.get(), m_seat.get()));
    zwlr_data_control_device_v1_add_listener(m_device.get(), &s_deviceListener, this);
    m_source.reset(zwlr_data_control_manager_v1_create_data_source(m_manager.get()));
    zwlr_data_control_source_v1_add_listener(m_source.get(), &s_sourceListener, this);
    for (const QByteArray &name : namesOf(type))
        zwlr_data_control_source_v1_offer(m_source.get(), name.constData());
    zwlr_data_control_device_v1_set_selection(m_device.get(), m_source.get());
    return wl_display_roundtrip(m_display.get()) >= 0;
}

void Keeper::send(int pipe)
{
    fcntl(pipe, F_SETFL, fcntl(pipe, F_GETFL) | O_NONBLOCK);
    if (m_transfers.size() == s_mostTransfers) {
        close(m_transfers.front().pipe);
        m_transfers.erase(m_transfers.begin());
    }
    m_transfers.push_back({.pipe = pipe});
}

// Writes what the pipe takes now; true when that was the last of it, or nobody reads any more.
bool Keeper::advance(Transfer &transfer) const
{
    while (transfer.sent < m_content.size()) {
        const ssize_t written = ::write(transfer.pipe, m_content.constData() + transfer.sent,
                                        static_cast<size_t>(m_content.size() - transfer.sent));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return errno != EAGAIN;
        transfer.sent += written;
    }
    return true;
}

void Keeper::write()
{
    std::erase_if(m_transfers, [this](Transfer &transfer) {
        const bool isOver = advance(transfer);
        if (isOver)
            close(transfer.pipe);
        return isOver;
    });
}

void Keeper::run()
{
    wl_display *display = m_display.get();
    while (!m_isReplaced || !m_transfers.empty()) {
        while (wl_display_prepare_read(display) != 0) {
            if (wl_display_dispatch_pending(display) < 0)
                return;
        }
        wl_display_flush(display);
        std::vector<pollfd> waits{
            {.fd = wl_display_get_fd(display), .events = POLLIN, .revents = 0}};
        for (const Transfer &transfer : m_transfers)
            waits.push_back({.fd = transfer.pipe, .events = POLLOUT, .revents = 0});
        const int ready = poll(waits.data(), waits.size(), m_isReplaced ? s_lastPatience : -1);
        if (waits.front().revents != 0)
            wl_display_read_events(display);
        else
            wl_display_cancel_read(display);
        if (ready == 0 || wl_display_dispatch_pending(display) < 0)
            return;
        write();
    }
}

}  // namespace

bool keepInCompositor(const QByteArray &content, const QByteArray &type)
{
    // Without this the library takes the first compositor of the user for that of the session.
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return false;
    Keeper keeper(content);
    if (!keeper.take(type))
        return false;
    // A reader that goes away in the middle.
    std::signal(SIGPIPE, SIG_IGN);
    keeper.run();
    return true;
}
