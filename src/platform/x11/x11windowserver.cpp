#include "platform/x11/x11windowserver.h"

#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <array>
#include <cmath>
#include <ranges>
#include <string>

#include <xcb/composite.h>
#include <xcb/randr.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_desktopLayer = -1000;
constexpr int s_aboveLayer = 3;
constexpr int s_dockLayer = 10;
constexpr int s_popupLayer = 101;

// How deep below a frame a window manager puts the client.
constexpr int s_frameDepth = 3;
constexpr uint32_t s_nameLimit = 1 << 14;  // in units of four bytes

QByteArray bytesOf(const Reply<xcb_get_property_reply_t> &reply)
{
    if (!reply || reply->format != 8)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
}

QList<uint32_t> valuesOf(const Reply<xcb_get_property_reply_t> &reply)
{
    if (!reply || reply->format != 32)
        return {};
    const auto *values = static_cast<const uint32_t *>(xcb_get_property_value(reply.get()));
    return {values, values + xcb_get_property_value_length(reply.get()) / 4};
}

QString processName(uint32_t pid)
{
    QFile file(u"/proc/%1/comm"_s.arg(pid));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll().trimmed()) : QString();
}

}  // namespace

// Requests go out for all windows before the first answer is awaited, so a list costs a few round
// trips and not a few for each window.
struct X11WindowServer::Window {
    xcb_window_t frame = XCB_NONE;   // the root's child
    xcb_window_t client = XCB_NONE;  // the application's window, where the frame has one
    QRect bounds{};
    bool onScreen = false;
    Entry entry{};
};

X11WindowServer::X11WindowServer(X11Display &display) : m_display(display), m_reader(display)
{
    // Windows keep pixels of their own from now on, so that covered ones come out whole where no
    // compositor has asked for that.
    xcb_connection_t *connection = m_display.connection();
    const xcb_query_extension_reply_t *composite =
        xcb_get_extension_data(connection, &xcb_composite_id);
    if (composite && composite->present) {
        xcb_discard_reply(connection, xcb_composite_query_version(connection, 0, 4).sequence);
        xcb_composite_redirect_subwindows(connection, m_display.root(),
                                          XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    }
}

QList<X11WindowServer::Window> X11WindowServer::topLevels()
{
    xcb_connection_t *connection = m_display.connection();
    const auto tree =
        XCB_REPLY(connection, query_tree, xcb_query_tree(connection, m_display.root()));
    if (!tree)
        return {};
    const xcb_window_t *children = xcb_query_tree_children(tree.get());
    const int count = xcb_query_tree_children_length(tree.get());
    QList<std::pair<xcb_get_window_attributes_cookie_t, xcb_get_geometry_cookie_t>> cookies;
    for (int i = 0; i < count; ++i)
        cookies.append({xcb_get_window_attributes(connection, children[i]),
                        xcb_get_geometry(connection, children[i])});
    QList<Window> result;
    for (int i = count - 1; i >= 0; --i) {
        const auto attributes = XCB_REPLY(connection, get_window_attributes, cookies[i].first);
        const auto geometry = XCB_REPLY(connection, get_geometry, cookies[i].second);
        if (!attributes || !geometry || attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY)
            continue;
        const int border = 2 * geometry->border_width;
        result.append({.frame = children[i],
                       .bounds = {geometry->x, geometry->y, geometry->width + border,
                                  geometry->height + border},
                       .onScreen = attributes->map_state == XCB_MAP_STATE_VIEWABLE});
    }
    return result;
}

void X11WindowServer::findClients(QList<Window> &windows)
{
    struct Candidate {
        qsizetype owner = 0;
        xcb_window_t window = XCB_NONE;
        xcb_get_property_cookie_t state{};
        xcb_query_tree_cookie_t tree{};
    };
    xcb_connection_t *connection = m_display.connection();
    const xcb_atom_t wmState = m_display.atom("WM_STATE");
    QList<Candidate> level;
    for (qsizetype i = 0; i < windows.size(); ++i)
        level.append({.owner = i, .window = windows[i].frame});
    for (int depth = 0; depth <= s_frameDepth && !level.isEmpty(); ++depth) {
        for (Candidate &candidate : level) {
            candidate.state = xcb_get_property(connection, 0, candidate.window, wmState,
                                               XCB_GET_PROPERTY_TYPE_ANY, 0, 0);
            candidate.tree = xcb_query_tree(connection, candidate.window);
        }
        QList<Candidate> next;
        for (const Candidate &candidate : std::as_const(level)) {
            const auto state = XCB_REPLY(connection, get_property, candidate.state);
            const auto tree = XCB_REPLY(connection, query_tree, candidate.tree);
            Window &owner = windows[candidate.owner];
            if (owner.client)
                continue;
            if (state && state->type != XCB_ATOM_NONE) {
                owner.client = candidate.window;
            } else if (tree) {
                const xcb_window_t *children = xcb_query_tree_children(tree.get());
                for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i)
                    next.append({.owner = candidate.owner, .window = children[i]});
            }
        }
        level = next;
    }
}

void X11WindowServer::readNames(QList<Window> &windows)
{
    enum Property { NetName, Name, Class, Pid, Type, State, PropertyCount };
    xcb_connection_t *connection = m_display.connection();
    const std::array<xcb_atom_t, PropertyCount> names{m_display.atom("_NET_WM_NAME"),
                                                      XCB_ATOM_WM_NAME,
                                                      XCB_ATOM_WM_CLASS,
                                                      m_display.atom("_NET_WM_PID"),
                                                      m_display.atom("_NET_WM_WINDOW_TYPE"),
                                                      m_display.atom("_NET_WM_STATE")};
    const xcb_atom_t desktop = m_display.atom("_NET_WM_WINDOW_TYPE_DESKTOP");
    const xcb_atom_t dock = m_display.atom("_NET_WM_WINDOW_TYPE_DOCK");
    const xcb_atom_t above = m_display.atom("_NET_WM_STATE_ABOVE");

    QList<std::array<xcb_get_property_cookie_t, PropertyCount>> cookies(windows.size());
    for (qsizetype i = 0; i < windows.size(); ++i) {
        const xcb_window_t window = windows[i].client ? windows[i].client : windows[i].frame;
        for (size_t p = 0; p < PropertyCount; ++p)
            cookies[i][p] = xcb_get_property(connection, 0, window, names[p],
                                             XCB_GET_PROPERTY_TYPE_ANY, 0, s_nameLimit);
    }
    for (qsizetype i = 0; i < windows.size(); ++i) {
        std::array<Reply<xcb_get_property_reply_t>, PropertyCount> replies;
        for (size_t p = 0; p < PropertyCount; ++p)
            replies[p] = XCB_REPLY(connection, get_property, cookies[i][p]);
        Entry &entry = windows[i].entry;
        entry.number = static_cast<int>(windows[i].frame);
        entry.bounds = windows[i].bounds;
        entry.name = QString::fromUtf8(bytesOf(replies[NetName]));
        if (entry.name.isEmpty())
            entry.name = QString::fromLatin1(bytesOf(replies[Name]));
        // Two strings, each with its terminator: the instance and the class.
        const QList<QByteArray> classes = bytesOf(replies[Class]).split('\0');
        const QList<uint32_t> pid = valuesOf(replies[Pid]);
        entry.owner = QString::fromLatin1(classes.value(1));
        if (entry.owner.isEmpty() && !pid.isEmpty())
            entry.owner = processName(pid.first());
        const QList<uint32_t> types = valuesOf(replies[Type]);
        if (types.contains(desktop))
            entry.layer = s_desktopLayer;
        else if (types.contains(dock))
            entry.layer = s_dockLayer;
        else if (!windows[i].client)
            entry.layer = s_popupLayer;
        else if (valuesOf(replies[State]).contains(above))
            entry.layer = s_aboveLayer;
    }
}

QList<X11WindowServer::Window> X11WindowServer::hiddenClients(const QList<Window> &all)
{
    const QList<uint32_t> clients =
        m_display.values(m_display.root(), m_display.atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW);
    QList<Window> result;
    std::copy_if(all.begin(), all.end(), std::back_inserter(result), [&](const Window &window) {
        return !window.onScreen && window.client && clients.contains(window.client);
    });
    return result;
}

QList<WindowServer::Entry> X11WindowServer::windows(List which, int relativeTo)
{
    const QList<Window> all = topLevels();
    QList<Window> chosen;
    std::copy_if(all.begin(), all.end(), std::back_inserter(chosen),
                 [](const Window &window) { return window.onScreen; });
    if (which == List::AtAndAbove) {
        const auto last = std::find_if(chosen.begin(), chosen.end(), [&](const Window &window) {
            return static_cast<int>(window.frame) == relativeTo;
        });
        chosen.erase(last == chosen.end() ? chosen.begin() : last + 1, chosen.end());
    }
    findClients(chosen);
    if (which == List::All) {
        QList<Window> hidden;
        std::copy_if(all.begin(), all.end(), std::back_inserter(hidden),
                     [](const Window &window) { return !window.onScreen; });
        findClients(hidden);
        chosen += hiddenClients(hidden);
    }
    readNames(chosen);
    QList<Entry> result;
    for (const Window &window : std::as_const(chosen))
        result.append(window.entry);
    if (which == List::OnScreen) {
        m_lastOnScreen.clear();
        for (const Entry &entry : std::as_const(result))
            m_lastOnScreen.append(entry.number);
    }
    return result;
}

QRect X11WindowServer::rootArea()
{
    xcb_connection_t *connection = m_display.connection();
    const auto geometry =
        XCB_REPLY(connection, get_geometry, xcb_get_geometry(connection, m_display.root()));
    return geometry ? QRect(0, 0, geometry->width, geometry->height) : QRect();
}

QImage X11WindowServer::rootPicture(const QRect &area)
{
    const QRect inside = area & rootArea();
    xcb_connection_t *connection = m_display.connection();
    // Nobody draws between the bands.
    xcb_grab_server(connection);
    QImage picture = m_reader.read(m_display.root(), inside, m_display.screen().root_depth);
    xcb_ungrab_server(connection);
    xcb_flush(connection);
    if (inside == area)
        return picture;
    QImage result(area.size(), QImage::Format_RGB32);
    result.fill(Qt::black);
    QPainter(&result).drawImage(inside.topLeft() - area.topLeft(), picture);
    return result;
}

QImage X11WindowServer::windowPicture(xcb_window_t window)
{
    xcb_connection_t *connection = m_display.connection();
    const xcb_pixmap_t pixmap = xcb_generate_id(connection);
    const Reply<xcb_generic_error_t> error(xcb_request_check(
        connection, xcb_composite_name_window_pixmap_checked(connection, window, pixmap)));
    if (error)
        return {};
    const auto geometry = XCB_REPLY(connection, get_geometry, xcb_get_geometry(connection, pixmap));
    QImage picture;
    if (geometry)
        picture = m_reader.read(pixmap, {0, 0, geometry->width, geometry->height}, geometry->depth);
    xcb_free_pixmap(connection, pixmap);
    return picture;
}

QImage X11WindowServer::composition(const QRect &area, const QList<int> &numbers)
{
    QImage result(area.size(), QImage::Format_RGB32);
    if (result.isNull())
        return {};
    result.fill(Qt::black);
    QPainter painter(&result);
    xcb_connection_t *connection = m_display.connection();
    for (const int number : std::views::reverse(numbers)) {
        const auto window = static_cast<xcb_window_t>(number);
        const auto geometry =
            XCB_REPLY(connection, get_geometry, xcb_get_geometry(connection, window));
        if (geometry)
            painter.drawImage(QPoint(geometry->x, geometry->y) - area.topLeft(),
                              windowPicture(window));
    }
    return result;
}

QImage X11WindowServer::picture(const QRectF &area, const QList<int> &numbers)
{
    if (area.isNull() && numbers.size() == 1)
        return windowPicture(static_cast<xcb_window_t>(numbers.first()));
    QRect pixels = area.toRect();
    if (area.isNull()) {
        for (const Entry &entry : windows(List::All, 0)) {
            if (numbers.contains(entry.number))
                pixels |= entry.bounds.toRect();
        }
    }
    if (pixels.isEmpty())
        return {};
    // With no window left out this is what the screen shows: no window has to be put together.
    return numbers == m_lastOnScreen ? rootPicture(pixels) : composition(pixels, numbers);
}

QList<QRect> X11WindowServer::screens()
{
    // The toolkit gives positions in device pixels and sizes divided by the scale, and the division
    // loses odd pixels: the sizes come from the monitors at the same positions.
    xcb_connection_t *connection = m_display.connection();
    QList<QRect> monitors;
    const auto reply = XCB_REPLY(connection, randr_get_monitors,
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

bool X11WindowServer::isComposited()
{
    xcb_connection_t *connection = m_display.connection();
    const auto reply = XCB_REPLY(
        connection, get_selection_owner,
        xcb_get_selection_owner(
            connection, m_display.atom("_NET_WM_CM_S" + std::to_string(m_display.screenNumber()))));
    return reply && reply->owner != XCB_NONE;
}

void X11WindowServer::coverArea(QWidget *window, const QRect &area)
{
    // Override-redirect: no window manager moves it off a panel, confines it to one monitor or
    // slides it in. The far edges may lie a little outside where the scale does not divide the
    // size.
    window->setWindowFlag(Qt::BypassWindowManagerHint);
    QScreen *nearest = QGuiApplication::primaryScreen();
    for (QScreen *screen : QGuiApplication::screens()) {
        if (screen->geometry().topLeft() == area.topLeft())
            nearest = screen;
    }
    window->setScreen(nearest);
    const QPoint origin = nearest->geometry().topLeft();
    const qreal scale = nearest->devicePixelRatio();
    const QPointF position = QPointF(area.topLeft() - origin) / scale;
    const QSizeF size = QSizeF(area.size()) / scale;
    window->setGeometry(QRect(origin + QPoint(static_cast<int>(std::floor(position.x())),
                                              static_cast<int>(std::floor(position.y()))),
                              QSize(static_cast<int>(std::ceil(size.width())),
                                    static_cast<int>(std::ceil(size.height())))));
}

void X11WindowServer::dropShadow(QWidget *window)
{
    // Compositors that draw shadows around any window look for this property before they do.
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
