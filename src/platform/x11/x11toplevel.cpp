#include "platform/x11/x11toplevel.h"

// All requests are sent before the first reply is awaited, so a list costs a few round trips in
// total instead of a few for each window.
QList<X11TopLevel> topLevels(X11Display &display)
{
    xcb_connection_t *connection = display.connection();
    const auto tree = XCB_REPLY(connection, query_tree, xcb_query_tree(connection, display.root()));
    if (!tree)
        return {};
    const xcb_window_t *children = xcb_query_tree_children(tree.get());
    const int count = xcb_query_tree_children_length(tree.get());
    QList<std::pair<xcb_get_window_attributes_cookie_t, xcb_get_geometry_cookie_t>> cookies;
    for (int i = 0; i < count; ++i)
        cookies.append({xcb_get_window_attributes(connection, children[i]),
                        xcb_get_geometry(connection, children[i])});
    const QRect root = rootArea(display);
    QList<X11TopLevel> result;
    for (int i = count - 1; i >= 0; --i) {
        const auto attributes = XCB_REPLY(connection, get_window_attributes, cookies[i].first);
        const auto geometry = XCB_REPLY(connection, get_geometry, cookies[i].second);
        if (!attributes || !geometry || attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY)
            continue;
        const int border = 2 * geometry->border_width;
        const QRect bounds(geometry->x, geometry->y, geometry->width + border,
                           geometry->height + border);
        // Window managers keep small helper windows outside of the screen.
        const bool onScreen =
            attributes->map_state == XCB_MAP_STATE_VIEWABLE && bounds.intersects(root);
        result.append({.frame = children[i],
                       .bounds = bounds,
                       .border = geometry->border_width,
                       .depth = geometry->depth,
                       .onScreen = onScreen,
                       .unmanaged = attributes->override_redirect != 0});
    }
    return result;
}

QRect rootArea(X11Display &display)
{
    xcb_connection_t *connection = display.connection();
    const auto geometry =
        XCB_REPLY(connection, get_geometry, xcb_get_geometry(connection, display.root()));
    return geometry ? QRect(0, 0, geometry->width, geometry->height) : QRect();
}
