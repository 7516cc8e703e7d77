#include "platform/x11/x11ownwindows.h"

#include "config/settings.h"
#include "platform/desktoppictures.h"
#include "platform/services.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <array>
#include <cmath>

#include <xcb/xfixes.h>

using namespace Qt::StringLiterals;

namespace {

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

}  // namespace

X11OwnWindows::X11OwnWindows(X11Display &display) : m_display(display) {}

bool X11OwnWindows::isComposited() { return m_display.isComposited(); }

void X11OwnWindows::setCompositingHandler(std::function<void()> changed)
{
    m_compositingHandler = std::move(changed);
    xcb_connection_t *connection = m_display.connection();
    if (m_selectionEvent != 0 || !m_display.hasExtension(xcb_xfixes_id))
        return;
    // The server refuses clients that have not queried the version. The toolkit has selected events
    // on this connection, too, so its events are included here.
    xcb_discard_reply(connection, xcb_xfixes_query_version(connection, XCB_XFIXES_MAJOR_VERSION,
                                                           XCB_XFIXES_MINOR_VERSION)
                                      .sequence);
    m_selectionEvent = xcb_get_extension_data(connection, &xcb_xfixes_id)->first_event +
                       XCB_XFIXES_SELECTION_NOTIFY;
    xcb_xfixes_select_selection_input(connection, m_display.root(), m_display.compositorSelection(),
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

bool X11OwnWindows::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    const int type = event->response_type & ~0x80;
    if (type != m_selectionEvent || !m_compositingHandler)
        return false;
    const auto *change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t *>(event);
    if (change->selection == m_display.compositorSelection())
        m_compositingHandler();
    return false;
}

// One window can lie across all screens here. Tests ask for one a screen, as other desktops need.
QList<PanePlace> X11OwnWindows::panes()
{
    const bool split = GetConfigString(u"OverlayPanes"_s) == u"screens";
    QList<PanePlace> result;
    for (const QRect &area : split ? services().screens->areas() : QList<QRect>{desktopBox()}) {
        const qreal scale = screenOf(area)->devicePixelRatio();
        result.append({area, scale, QPointF(area.topLeft()) / scale});
    }
    return result;
}

void X11OwnWindows::coverArea(QWidget *window, const QRect &area)
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

void X11OwnWindows::moveWindow(QWidget *window, QPoint to)
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

void X11OwnWindows::keepOutOfTaskBar(QWidget *window)
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

void X11OwnWindows::setOnScreen(QWidget *window, bool onScreen)
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

void X11OwnWindows::dropShadow(QWidget *window)
{
    // Compositors that draw shadows around every window check this property first.
    const uint32_t off = 0;
    xcb_change_property(m_display.connection(), XCB_PROP_MODE_REPLACE,
                        static_cast<xcb_window_t>(window->window()->winId()),
                        m_display.atom("_COMPTON_SHADOW"), XCB_ATOM_CARDINAL, 32, 1, &off);
}

xcb_window_t X11OwnWindows::topLevelOf(xcb_window_t window)
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

int X11OwnWindows::numberOf(const QWidget *widget)
{
    const QWindow *window = widget ? widget->window()->windowHandle() : nullptr;
    if (!window || !window->handle())
        return 0;
    return static_cast<int>(topLevelOf(static_cast<xcb_window_t>(window->winId())));
}
