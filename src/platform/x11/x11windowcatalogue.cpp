#include "platform/x11/x11windowcatalogue.h"

#include "platform/x11/windowproperties.h"
#include "platform/x11/x11menus.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <string>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_desktopLayer = -1000;
constexpr int s_aboveLayer = 3;
constexpr int s_dockLayer = 10;
constexpr int s_popupLayer = 101;

// How deep inside a frame window managers put the client window.
constexpr int s_frameDepth = 3;
constexpr int s_sides = 4;
constexpr uint32_t s_widestFrame = 1000;
constexpr uint32_t s_nameLimit = 1 << 14;  // in units of four bytes

WindowProperty propertyOf(const Reply<xcb_get_property_reply_t> &reply)
{
    if (!reply)
        return {};
    return {.type = reply->type,
            .format = reply->format,
            .bytes = {static_cast<const char *>(xcb_get_property_value(reply.get())),
                      xcb_get_property_value_length(reply.get())}};
}

// The margins in the order left, right, top and bottom; none if they would leave nothing of the
// window.
QMargins frameMargins(const QList<uint32_t> &told, QSize size)
{
    QMargins margins;
    if (std::all_of(told.begin(), told.end(), [](uint32_t side) { return side < s_widestFrame; }))
        margins = {int(told[0]), int(told[2]), int(told[1]), int(told[3])};
    return size.shrunkBy(margins).isEmpty() ? QMargins() : margins;
}

QString processName(uint32_t pid)
{
    QFile file(u"/proc/%1/comm"_s.arg(pid));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll().trimmed()) : QString();
}

}  // namespace

X11WindowCatalogue::X11WindowCatalogue(X11Display &display) : m_display(display) {}

QList<X11WindowCatalogue::Window> X11WindowCatalogue::topWindows()
{
    QList<Window> result;
    for (const X11TopLevel &top : topLevels(m_display))
        result.append({.top = top});
    return result;
}

// All requests are sent before the first reply is awaited, so a list costs a few round trips in
// total instead of a few for each window.

void X11WindowCatalogue::findClients(QList<Window> &windows)
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
        level.append({.owner = i, .window = windows[i].top.frame});
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

void X11WindowCatalogue::readNames(QList<Window> &windows)
{
    enum Property { NetName, Name, Class, Pid, Type, State, Frame, PropertyCount };
    xcb_connection_t *connection = m_display.connection();
    const std::array<xcb_atom_t, PropertyCount> names{m_display.atom("_NET_WM_NAME"),
                                                      XCB_ATOM_WM_NAME,
                                                      XCB_ATOM_WM_CLASS,
                                                      m_display.atom("_NET_WM_PID"),
                                                      m_display.atom("_NET_WM_WINDOW_TYPE"),
                                                      m_display.atom("_NET_WM_STATE"),
                                                      m_display.atom("_NET_FRAME_EXTENTS")};
    const xcb_atom_t utf8 = m_display.atom("UTF8_STRING");
    const auto trayCookie = xcb_get_selection_owner(
        connection,
        m_display.atom("_NET_SYSTEM_TRAY_S" + std::to_string(m_display.screenNumber())));
    QList<std::array<xcb_get_property_cookie_t, PropertyCount>> cookies(windows.size());
    for (qsizetype i = 0; i < windows.size(); ++i) {
        const xcb_window_t window = windows[i].client ? windows[i].client : windows[i].top.frame;
        for (size_t p = 0; p < PropertyCount; ++p)
            cookies[i][p] = xcb_get_property(connection, 0, window, names[p],
                                             XCB_GET_PROPERTY_TYPE_ANY, 0, s_nameLimit);
    }
    const auto tray = XCB_REPLY(connection, get_selection_owner, trayCookie);
    for (qsizetype i = 0; i < windows.size(); ++i) {
        std::array<WindowProperty, PropertyCount> told;
        for (size_t p = 0; p < PropertyCount; ++p)
            told[p] = propertyOf(XCB_REPLY(connection, get_property, cookies[i][p]));
        Entry &entry = windows[i].entry;
        entry.number = static_cast<int>(windows[i].top.frame);
        entry.client = windows[i].client ? windows[i].client : windows[i].top.frame;
        entry.bounds = windows[i].top.bounds;
        entry.name = windowName(told[NetName], told[Name], utf8);
        const QList<uint32_t> pid = valuesOf(told[Pid]);
        entry.owner = windowClass(told[Class]);
        if (entry.owner.isEmpty() && !pid.isEmpty())
            entry.owner = processName(pid.first());
        // A window may declare a frame although the window manager has given it none.
        const QList<uint32_t> frame = valuesOf(told[Frame]);
        if (frame.size() == s_sides && windows[i].client != windows[i].top.frame)
            entry.frame = frameMargins(frame, windows[i].top.bounds.size());
        entry.process = pid.value(0);
        tellPurpose(windows[i], valuesOf(told[Type]), valuesOf(told[State]),
                    tray ? tray->owner : XCB_NONE);
    }
}

// What it is for, and how far in front it is, by its types and states.
void X11WindowCatalogue::tellPurpose(Window &window, const QList<uint32_t> &types,
                                     const QList<uint32_t> &states, xcb_window_t tray)
{
    const auto isOfType = [&](std::string_view name) {
        return types.contains(m_display.atom(name));
    };
    Entry &entry = window.entry;
    const bool isPopup = !window.client && window.top.unmanaged;
    const bool isMenu = isMenuType(m_display, types);
    if (isPopup && (isMenu || types.isEmpty()))
        entry.kind = isMenu ? Kind::Menu : Kind::Unnamed;
    const bool isPanel = isOfType("_NET_WM_WINDOW_TYPE_DOCK");
    if (isPanel)
        entry.kind = Kind::Panel;
    // Many trays are found by a window that is never shown, of the program that has the bar.
    if (tray && (entry.client == tray || (isPanel && m_display.isSameClient(entry.client, tray))))
        entry.kind = Kind::Tray;
    if (isOfType("_NET_WM_WINDOW_TYPE_DESKTOP"))
        entry.layer = s_desktopLayer;
    else if (isPanel)
        entry.layer = s_dockLayer;
    else if (isPopup)
        entry.layer = s_popupLayer;
    else if (states.contains(m_display.atom("_NET_WM_STATE_ABOVE")))
        entry.layer = s_aboveLayer;
}

QList<X11WindowCatalogue::Window> X11WindowCatalogue::hiddenClients(const QList<Window> &all)
{
    const QList<uint32_t> clients =
        m_display.values(m_display.root(), m_display.atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW);
    QList<Window> result;
    std::copy_if(all.begin(), all.end(), std::back_inserter(result), [&](const Window &window) {
        return !window.top.onScreen && window.client && clients.contains(window.client);
    });
    return result;
}

QList<WindowCatalogue::Entry> X11WindowCatalogue::windows(List which, int relativeTo)
{
    const QList<Window> all = topWindows();
    QList<Window> chosen;
    std::copy_if(all.begin(), all.end(), std::back_inserter(chosen),
                 [](const Window &window) { return window.top.onScreen; });
    if (which == List::AtAndAbove) {
        const auto last = std::find_if(chosen.begin(), chosen.end(), [&](const Window &window) {
            return static_cast<int>(window.top.frame) == relativeTo;
        });
        chosen.erase(last == chosen.end() ? chosen.begin() : last + 1, chosen.end());
    }
    findClients(chosen);
    if (which == List::All) {
        QList<Window> hidden;
        std::copy_if(all.begin(), all.end(), std::back_inserter(hidden),
                     [](const Window &window) { return !window.top.onScreen; });
        findClients(hidden);
        chosen += hiddenClients(hidden);
    }
    readNames(chosen);
    QList<Entry> result;
    for (const Window &window : std::as_const(chosen))
        result.append(window.entry);
    return result;
}
