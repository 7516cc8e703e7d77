#include "platform/x11/x11windowserver.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <string>

#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/randr.h>
#include <xcb/shape.h>
#include <xcb/xfixes.h>
#include <xcb/xtest.h>

namespace {

constexpr uint8_t s_wheelUp = 4;  // the pointer's buttons
constexpr uint8_t s_wheelDown = 5;
constexpr uint8_t s_wheelLeft = 6;
constexpr uint8_t s_wheelRight = 7;

// Calls back each time a window is about to be shown. The native window exists by then and is not
// mapped yet. The window owns this object.
class ShowHook : public QObject
{
public:
    ShowHook(QWidget *window, std::function<void()> callback)
        : QObject(window), m_callback(std::move(callback))
    {
        window->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show && !event->spontaneous())
            m_callback();
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> m_callback;
};

// A request of an extension that the server lacks would end the connection.
bool hasExtension(xcb_connection_t *connection, xcb_extension_t &extension)
{
    const xcb_query_extension_reply_t *data = xcb_get_extension_data(connection, &extension);
    return data && data->present;
}

// The screen to which the toolkit will assign a window at `area`. Screen positions are in device
// pixels, but sizes are not.
QScreen *screenOf(const QRect &area)
{
    QScreen *touched = QGuiApplication::primaryScreen();
    for (QScreen *screen : QGuiApplication::screens()) {
        const QRect geometry = screen->geometry();
        const QRect pixels(geometry.topLeft(), geometry.size() * screen->devicePixelRatio());
        if (pixels.contains(area.center()))
            return screen;
        if (pixels.intersects(area))
            touched = screen;
    }
    return touched;
}

// A key that sets a modifier; 0 if the keyboard has none.
xcb_keycode_t modifierKey(xcb_connection_t *connection, int modifier)
{
    const auto mapping =
        XCB_REPLY(connection, get_modifier_mapping, xcb_get_modifier_mapping(connection));
    if (!mapping)
        return 0;
    const xcb_keycode_t *keys = xcb_get_modifier_mapping_keycodes(mapping.get());
    const ptrdiff_t each = mapping->keycodes_per_modifier;
    const auto *end = keys + (modifier + 1) * each;
    const auto *found =
        std::find_if(keys + modifier * each, end, [](auto key) { return key != 0; });
    return found == end ? xcb_keycode_t{0} : *found;
}

}  // namespace

X11WindowServer::X11WindowServer(X11Display &display) : m_display(display), m_reader(display)
{
    xcb_connection_t *connection = m_display.connection();
    m_hasRandr = hasExtension(connection, xcb_randr_id);
    m_hasShape = hasExtension(connection, xcb_shape_id);
    m_hasComposite = hasExtension(connection, xcb_composite_id);
    m_hasTest = hasExtension(connection, xcb_test_id);
    if (hasExtension(connection, xcb_damage_id)) {
        // Other requests are allowed only after the version has been queried.
        xcb_discard_reply(connection, xcb_damage_query_version(connection, 1, 1).sequence);
        m_damageEvent =
            xcb_get_extension_data(connection, &xcb_damage_id)->first_event + XCB_DAMAGE_NOTIFY;
    }
    // From now on the server keeps a window's pixels even where it is covered, also without a
    // compositor.
    if (m_hasComposite) {
        xcb_discard_reply(connection, xcb_composite_query_version(connection, 0, 4).sequence);
        xcb_composite_redirect_subwindows(connection, m_display.root(),
                                          XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    }
}

QList<QRect> X11WindowServer::screens()
{
    // The toolkit gives the screens' positions in device pixels but their sizes divided by the
    // scale, which loses odd pixels. So the sizes are taken from the monitors at the same
    // positions.
    xcb_connection_t *connection = m_display.connection();
    QList<QRect> monitors;
    Reply<xcb_randr_get_monitors_reply_t> reply;
    if (m_hasRandr)
        reply = XCB_REPLY(connection, randr_get_monitors,
                          xcb_randr_get_monitors(connection, m_display.root(), 1));
    if (reply) {
        auto it = xcb_randr_get_monitors_monitors_iterator(reply.get());
        for (; it.rem; xcb_randr_monitor_info_next(&it))
            monitors.append({it.data->x, it.data->y, it.data->width, it.data->height});
    }
    QList<QRect> result;
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QRect logical = screen->geometry();
        const auto monitor =
            std::find_if(monitors.cbegin(), monitors.cend(), [&](const QRect &candidate) {
                return candidate.topLeft() == logical.topLeft();
            });
        result.append(monitor != monitors.cend()
                          ? *monitor
                          : QRect(logical.topLeft(), logical.size() * screen->devicePixelRatio()));
    }
    return result;
}

QPoint X11WindowServer::pointer()
{
    xcb_connection_t *connection = m_display.connection();
    const auto reply =
        XCB_REPLY(connection, query_pointer, xcb_query_pointer(connection, m_display.root()));
    return reply ? QPoint(reply->root_x, reply->root_y) : QPoint();
}

void X11WindowServer::movePointer(QPoint to)
{
    xcb_warp_pointer(m_display.connection(), XCB_NONE, m_display.root(), 0, 0, 0, 0,
                     static_cast<int16_t>(to.x()), static_cast<int16_t>(to.y()));
    xcb_flush(m_display.connection());
}

bool X11WindowServer::isHandBusy()
{
    // The other modifiers are mostly locks.
    constexpr unsigned busy = XCB_KEY_BUT_MASK_SHIFT | XCB_KEY_BUT_MASK_CONTROL |
                              XCB_KEY_BUT_MASK_MOD_1 | XCB_KEY_BUT_MASK_MOD_4 |
                              XCB_KEY_BUT_MASK_BUTTON_1 | XCB_KEY_BUT_MASK_BUTTON_2 |
                              XCB_KEY_BUT_MASK_BUTTON_3;
    xcb_connection_t *connection = m_display.connection();
    const auto reply =
        XCB_REPLY(connection, query_pointer, xcb_query_pointer(connection, m_display.root()));
    return reply && (reply->mask & busy);
}

bool X11WindowServer::turnWheel(QPoint at, int clicks, Wheel wheel)
{
    if (!m_hasTest)
        return false;
    xcb_connection_t *connection = m_display.connection();
    const auto fake = [&](uint8_t type, uint8_t detail) {
        xcb_test_fake_input(connection, type, detail, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    };
    const auto forth = wheel == Wheel::Right ? s_wheelRight : s_wheelDown;
    const auto back = wheel == Wheel::Right ? s_wheelLeft : s_wheelUp;
    const uint8_t button = clicks > 0 ? forth : back;
    const xcb_keycode_t shift =
        wheel == Wheel::DownWithShift ? modifierKey(connection, XCB_MAP_INDEX_SHIFT) : 0;
    movePointer(at);
    if (shift)
        fake(XCB_KEY_PRESS, shift);
    for (int i = 0; i < std::abs(clicks); ++i) {
        fake(XCB_BUTTON_PRESS, button);
        fake(XCB_BUTTON_RELEASE, button);
    }
    if (shift)
        fake(XCB_KEY_RELEASE, shift);
    xcb_flush(connection);
    return true;
}

// Uses one report of damage; the server sends no more until this one has been taken.
class X11WindowServer::DamageWatch : public ChangeWatch
{
public:
    DamageWatch(X11WindowServer &server, xcb_window_t window)
        : m_server(server), m_damage(xcb_generate_id(server.m_display.connection()))
    {
        xcb_connection_t *connection = m_server.m_display.connection();
        const Reply<xcb_generic_error_t> error(xcb_request_check(
            connection, xcb_damage_create_checked(connection, m_damage, window,
                                                  XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY)));
        m_isValid = !error;
        if (m_isValid)
            m_server.m_damages.insert(m_damage, true);
    }
    ~DamageWatch() override
    {
        if (!m_isValid)
            return;
        m_server.m_damages.remove(m_damage);
        // The damage object may be gone together with its window, so the reply is dropped.
        xcb_connection_t *connection = m_server.m_display.connection();
        xcb_discard_reply(connection, xcb_damage_destroy_checked(connection, m_damage).sequence);
    }
    DamageWatch(const DamageWatch &) = delete;
    DamageWatch &operator=(const DamageWatch &) = delete;

    bool isValid() const { return m_isValid; }
    bool takeChange() override
    {
        if (!std::exchange(m_server.m_damages[m_damage], false))
            return false;
        xcb_connection_t *connection = m_server.m_display.connection();
        xcb_discard_reply(
            connection,
            xcb_damage_subtract_checked(connection, m_damage, XCB_NONE, XCB_NONE).sequence);
        return true;
    }

private:
    X11WindowServer &m_server;
    xcb_damage_damage_t m_damage;
    bool m_isValid = false;
};

std::unique_ptr<ChangeWatch> X11WindowServer::watchChanges(int number)
{
    if (m_damageEvent == 0)
        return nullptr;
    QCoreApplication::instance()->installNativeEventFilter(this);
    auto watch = std::make_unique<DamageWatch>(*this, static_cast<xcb_window_t>(number));
    if (!watch->isValid())
        return nullptr;
    return watch;
}

xcb_atom_t X11WindowServer::compositorSelection()
{
    return m_display.atom("_NET_WM_CM_S" + std::to_string(m_display.screenNumber()));
}

bool X11WindowServer::isComposited()
{
    xcb_connection_t *connection = m_display.connection();
    const auto reply = XCB_REPLY(connection, get_selection_owner,
                                 xcb_get_selection_owner(connection, compositorSelection()));
    return reply && reply->owner != XCB_NONE;
}

void X11WindowServer::setCompositingHandler(std::function<void()> changed)
{
    m_compositingHandler = std::move(changed);
    xcb_connection_t *connection = m_display.connection();
    if (m_selectionEvent != 0 || !hasExtension(connection, xcb_xfixes_id))
        return;
    // The server refuses clients that have not queried the version. The toolkit has selected events
    // on this connection, too, so its events are included here.
    xcb_discard_reply(connection, xcb_xfixes_query_version(connection, XCB_XFIXES_MAJOR_VERSION,
                                                           XCB_XFIXES_MINOR_VERSION)
                                      .sequence);
    m_selectionEvent = xcb_get_extension_data(connection, &xcb_xfixes_id)->first_event +
                       XCB_XFIXES_SELECTION_NOTIFY;
    xcb_xfixes_select_selection_input(connection, m_display.root(), compositorSelection(),
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

bool X11WindowServer::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    const int type = event->response_type & ~0x80;
    if (type != 0 && type == m_damageEvent) {
        const auto *report = reinterpret_cast<const xcb_damage_notify_event_t *>(event);
        const auto watched = m_damages.find(report->damage);
        if (watched != m_damages.end())
            *watched = true;
    }
    if (type != m_selectionEvent || !m_compositingHandler)
        return false;
    const auto *change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t *>(event);
    if (change->selection == compositorSelection())
        m_compositingHandler();
    return false;
}

void X11WindowServer::coverArea(QWidget *window, const QRect &area)
{
    // Override-redirect: no window manager moves the window off a panel, confines it to one monitor
    // or animates it. The far edges may lie slightly outside if the scale does not divide the size.
    window->setWindowFlag(Qt::BypassWindowManagerHint);
    QScreen *screen = screenOf(area);
    window->setScreen(screen);
    const QPoint origin = screen->geometry().topLeft();
    const qreal scale = screen->devicePixelRatio();
    const QPointF position = QPointF(area.topLeft() - origin) / scale;
    const QSizeF size = QSizeF(area.size()) / scale;
    window->setGeometry(
        QRect(origin + position.toPoint(), QSize(static_cast<int>(std::ceil(size.width())),
                                                 static_cast<int>(std::ceil(size.height())))));
    // Not every device pixel has a logical position, and the toolkit converts with the origin of
    // the screen on which it assumes the window. So the window is moved again with device pixels.
    new ShowHook(window, [this, window, area] { moveWindow(window, area.topLeft()); });
}

void X11WindowServer::moveWindow(QWidget *window, QPoint to)
{
    const QSize size = (QSizeF(window->size()) * window->devicePixelRatioF()).toSize();
    const std::array<uint32_t, 4> values{
        static_cast<uint32_t>(to.x()), static_cast<uint32_t>(to.y()),
        static_cast<uint32_t>(size.width()), static_cast<uint32_t>(size.height())};
    xcb_configure_window(m_display.connection(), static_cast<xcb_window_t>(window->winId()),
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT,
                         values.data());
    xcb_flush(m_display.connection());
}

void X11WindowServer::keepOutOfTaskBar(QWidget *window)
{
    // A window loses these states whenever it is hidden, so they are set before each show. The
    // toolkit adds its own states to existing ones.
    new ShowHook(window, [this, window] {
        const std::array<xcb_atom_t, 2> states{m_display.atom("_NET_WM_STATE_SKIP_TASKBAR"),
                                               m_display.atom("_NET_WM_STATE_SKIP_PAGER")};
        xcb_change_property(m_display.connection(), XCB_PROP_MODE_REPLACE,
                            static_cast<xcb_window_t>(window->winId()),
                            m_display.atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 32,
                            static_cast<uint32_t>(states.size()), states.data());
    });
}

void X11WindowServer::setOnScreen(QWidget *window, bool onScreen)
{
    xcb_connection_t *connection = m_display.connection();
    const auto id = static_cast<xcb_window_t>(window->winId());
    const xcb_atom_t property = m_display.atom("_NET_WM_STATE");
    const char *const kept = "statesOffScreen";
    if (!onScreen) {
        // Saves the states, which the window manager removes from a withdrawn window.
        window->setProperty(kept,
                            QVariant::fromValue(m_display.values(id, property, XCB_ATOM_ATOM)));
        xcb_unmap_window(connection, id);
        xcb_unmap_notify_event_t gone{};
        gone.response_type = XCB_UNMAP_NOTIFY;
        gone.event = m_display.root();
        gone.window = id;
        xcb_send_event(connection, 0, m_display.root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char *>(&gone));
    } else {
        const auto states = window->property(kept).value<QList<uint32_t>>();
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, property, XCB_ATOM_ATOM, 32,
                            static_cast<uint32_t>(states.size()), states.constData());
        xcb_map_window(connection, id);
    }
    xcb_flush(connection);
}

void X11WindowServer::dropShadow(QWidget *window)
{
    // Compositors that draw shadows around every window check this property first.
    const uint32_t off = 0;
    xcb_change_property(m_display.connection(), XCB_PROP_MODE_REPLACE,
                        static_cast<xcb_window_t>(window->window()->winId()),
                        m_display.atom("_COMPTON_SHADOW"), XCB_ATOM_CARDINAL, 32, 1, &off);
}

xcb_window_t X11WindowServer::topLevelOf(xcb_window_t window)
{
    xcb_connection_t *connection = m_display.connection();
    while (window != XCB_NONE) {
        const auto tree = XCB_REPLY(connection, query_tree, xcb_query_tree(connection, window));
        if (!tree || tree->parent == m_display.root())
            break;
        window = tree->parent;
    }
    return window;
}

int X11WindowServer::numberOf(const QWidget *widget)
{
    const QWindow *window = widget ? widget->window()->windowHandle() : nullptr;
    if (!window || !window->handle())
        return 0;
    return static_cast<int>(topLevelOf(static_cast<xcb_window_t>(window->winId())));
}
