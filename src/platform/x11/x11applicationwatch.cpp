#include "platform/x11/x11applicationwatch.h"

#include "base/log.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>
#include <QWidget>
#include <QWindow>

#include <array>
#include <chrono>

#include <unistd.h>

using namespace std::chrono_literals;

namespace {

constexpr auto s_manageLimit = 200ms;
constexpr auto s_manageRound = 1ms;

// Marks a request of the user, which focus stealing prevention lets through.
constexpr uint32_t s_sourcePager = 2;

constexpr uint32_t s_allDesktops = 0xffffffff;

// Stands for the process of windows that don't tell theirs: some other application.
constexpr long s_unknownProcess = -1;

}  // namespace

X11ApplicationWatch::X11ApplicationWatch(X11Display &display) : m_display(display) {}

void X11ApplicationWatch::start(Handlers handlers)
{
    m_handlers = std::move(handlers);
    m_display.selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
    QCoreApplication::instance()->installNativeEventFilter(this);
    // This program counts as active until the watch has reported something.
    m_pid = getpid();
    update();
}

void X11ApplicationWatch::stop()
{
    QCoreApplication::instance()->removeNativeEventFilter(this);
    m_handlers = {};
}

bool X11ApplicationWatch::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & ~0x80) == XCB_PROPERTY_NOTIFY) {
        const auto *change = reinterpret_cast<const xcb_property_notify_event_t *>(event);
        if (change->window == m_display.root() &&
            change->atom == m_display.atom("_NET_ACTIVE_WINDOW"))
            update();
    }
    return false;
}

void X11ApplicationWatch::update()
{
    const QList<uint32_t> active =
        m_display.values(m_display.root(), m_display.atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW);
    xcb_window_t front = active.value(0, XCB_NONE);
    // An overlay is override-redirect: it has the keyboard, but the window manager does not report
    // it as active.
    if (front == XCB_NONE && processOf(focusWindow()) == getpid())
        front = focusWindow();
    report(front);
}

xcb_window_t X11ApplicationWatch::focusWindow()
{
    xcb_connection_t *connection = m_display.connection();
    const auto reply = XCB_REPLY(connection, get_input_focus, xcb_get_input_focus(connection));
    return reply && reply->focus > XCB_INPUT_FOCUS_POINTER_ROOT
               ? reply->focus
               : static_cast<xcb_window_t>(XCB_NONE);
}

void X11ApplicationWatch::report(xcb_window_t front)
{
    const long pid = processOf(front);
    const long before = m_pid;
    m_front = front;
    m_pid = pid;
    if (before != pid && before != 0 && m_handlers.deactivated)
        m_handlers.deactivated(before);
    // Another window of the same application is reported, too, since it is the one to return to.
    if (pid != 0 && (before != pid || pid != getpid()) && m_handlers.activated)
        m_handlers.activated(pid);
}

long X11ApplicationWatch::processOf(xcb_window_t window)
{
    if (window == XCB_NONE)
        return 0;
    const QList<uint32_t> pid =
        m_display.values(window, m_display.atom("_NET_WM_PID"), XCB_ATOM_CARDINAL);
    return pid.isEmpty() ? s_unknownProcess : static_cast<long>(pid.first());
}

void X11ApplicationWatch::activate(unsigned window)
{
    // The user does not want a window back that was minimised or moved to another desktop
    // meanwhile.
    if (window == XCB_NONE || !isInView(window)) {
        qCInfo(logX11) << "window" << window << "is not in view any more, and gets no front";
        return;
    }
    if (m_display.hasWindowManager()) {
        m_display.sendToRoot(window, m_display.atom("_NET_ACTIVE_WINDOW"),
                             {s_sourcePager, XCB_CURRENT_TIME, XCB_NONE, 0, 0});
    } else {
        focus(window);
        report(window);
    }
}

void X11ApplicationWatch::bringToFront(QWidget *widget)
{
    const auto window = static_cast<xcb_window_t>(widget->window()->winId());
    if (m_display.hasWindowManager()) {
        widget->window()->raise();
        waitUntilManaged(window);
        // Not every window manager fetches the window from another desktop, or switches to that
        // desktop.
        const QList<uint32_t> current = currentDesktop();
        if (!isOnDesktop(window, current))
            m_display.sendToRoot(window, m_display.atom("_NET_WM_DESKTOP"),
                                 {current.first(), s_sourcePager, 0, 0, 0});
        m_display.sendToRoot(window, m_display.atom("_NET_ACTIVE_WINDOW"),
                             {s_sourcePager, XCB_CURRENT_TIME, XCB_NONE, 0, 0});
        return;
    }
    // Without a window manager nobody else reports focus changes, or moves the focus.
    const xcb_window_t before = focusWindow();
    if (before != XCB_NONE && processOf(before) != getpid())
        report(before);
    focus(window);
    report(window);
}

bool X11ApplicationWatch::isInView(xcb_window_t window)
{
    xcb_connection_t *connection = m_display.connection();
    const auto attributes =
        XCB_REPLY(connection, get_window_attributes, xcb_get_window_attributes(connection, window));
    if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE)
        return false;
    return isOnDesktop(window, currentDesktop());
}

QList<uint32_t> X11ApplicationWatch::currentDesktop()
{
    return m_display.values(m_display.root(), m_display.atom("_NET_CURRENT_DESKTOP"),
                            XCB_ATOM_CARDINAL);
}

bool X11ApplicationWatch::isOnDesktop(xcb_window_t window, const QList<uint32_t> &desktop)
{
    const QList<uint32_t> own =
        m_display.values(window, m_display.atom("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL);
    return own.isEmpty() || desktop.isEmpty() || own == desktop || own.first() == s_allDesktops;
}

// A window manager does not know a window yet that was shown a moment ago, and would drop a request
// for it. The wait runs no events, and happens once for each window, since the window manager may
// never manage it.
void X11ApplicationWatch::waitUntilManaged(xcb_window_t window)
{
    if (window == m_waitedFor)
        return;
    m_waitedFor = window;
    xcb_connection_t *connection = m_display.connection();
    const auto attributes =
        XCB_REPLY(connection, get_window_attributes, xcb_get_window_attributes(connection, window));
    if (!attributes || attributes->override_redirect)
        return;
    const xcb_atom_t state = m_display.atom("WM_STATE");
    QDeadlineTimer deadline(s_manageLimit);
    while (m_display.values(window, state, state).isEmpty() && !deadline.hasExpired())
        QThread::usleep(std::chrono::microseconds(s_manageRound).count());
}

void X11ApplicationWatch::focus(xcb_window_t window)
{
    xcb_connection_t *connection = m_display.connection();
    // The server refuses a window that is gone or not shown, and the focus stays.
    const Reply<xcb_generic_error_t> refused(xcb_request_check(
        connection,
        xcb_set_input_focus_checked(connection, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME)));
    if (refused)
        logError(*refused);
}
