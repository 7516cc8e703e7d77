#include "platform/x11/x11changewatch.h"

#include <QCoreApplication>

#include <utility>

#include <xcb/damage.h>

// Uses one report of damage; the server sends no more until this one has been taken.
class X11ChangeWatches::DamageWatch : public ChangeWatch
{
public:
    DamageWatch(X11ChangeWatches &watches, xcb_window_t window)
        : m_watches(watches), m_damage(xcb_generate_id(watches.m_display.connection()))
    {
        xcb_connection_t *connection = m_watches.m_display.connection();
        const Reply<xcb_generic_error_t> error(xcb_request_check(
            connection, xcb_damage_create_checked(connection, m_damage, window,
                                                  XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY)));
        m_isValid = !error;
        if (m_isValid)
            m_watches.m_changed.insert(m_damage, true);
    }
    ~DamageWatch() override
    {
        if (!m_isValid)
            return;
        m_watches.m_changed.remove(m_damage);
        // The damage object may be gone together with its window, so the reply is dropped.
        xcb_connection_t *connection = m_watches.m_display.connection();
        xcb_discard_reply(connection, xcb_damage_destroy_checked(connection, m_damage).sequence);
    }
    DamageWatch(const DamageWatch &) = delete;
    DamageWatch &operator=(const DamageWatch &) = delete;

    bool isValid() const { return m_isValid; }
    bool takeChange() override
    {
        if (!std::exchange(m_watches.m_changed[m_damage], false))
            return false;
        xcb_connection_t *connection = m_watches.m_display.connection();
        xcb_discard_reply(
            connection,
            xcb_damage_subtract_checked(connection, m_damage, XCB_NONE, XCB_NONE).sequence);
        return true;
    }

private:
    X11ChangeWatches &m_watches;
    xcb_damage_damage_t m_damage;
    bool m_isValid = false;
};

X11ChangeWatches::X11ChangeWatches(X11Display &display) : m_display(display)
{
    if (!m_display.hasExtension(xcb_damage_id))
        return;
    // Other requests are allowed only after the version has been queried.
    xcb_connection_t *connection = m_display.connection();
    xcb_discard_reply(connection, xcb_damage_query_version(connection, 1, 1).sequence);
    m_damageEvent =
        xcb_get_extension_data(connection, &xcb_damage_id)->first_event + XCB_DAMAGE_NOTIFY;
}

std::unique_ptr<ChangeWatch> X11ChangeWatches::watch(xcb_window_t window)
{
    if (m_damageEvent == 0)
        return nullptr;
    QCoreApplication::instance()->installNativeEventFilter(this);
    auto watch = std::make_unique<DamageWatch>(*this, window);
    if (!watch->isValid())
        return nullptr;
    return watch;
}

bool X11ChangeWatches::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if (m_damageEvent == 0 || (event->response_type & ~0x80) != m_damageEvent)
        return false;
    const auto *report = reinterpret_cast<const xcb_damage_notify_event_t *>(event);
    const auto watched = m_changed.find(report->damage);
    if (watched != m_changed.end())
        *watched = true;
    return false;
}
