#include "platform/x11/x11screens.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

#include <xcb/randr.h>

X11Screens::X11Screens(X11Display &display)
    : m_display(display), m_hasRandr(display.hasExtension(xcb_randr_id))
{
}

QList<Screens::Screen> X11Screens::all()
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
    QList<Screen> result;
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QRect logical = screen->geometry();
        const auto monitor =
            std::find_if(monitors.cbegin(), monitors.cend(), [&](const QRect &candidate) {
                return candidate.topLeft() == logical.topLeft();
            });
        const qreal scale = screen->devicePixelRatio();
        result.append({.area = monitor != monitors.cend()
                                   ? *monitor
                                   : QRect(logical.topLeft(), logical.size() * scale),
                       .scale = scale,
                       .name = screen->name()});
    }
    return result;
}
