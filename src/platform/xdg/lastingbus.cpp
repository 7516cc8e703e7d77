#include "platform/xdg/lastingbus.h"

// A structure of GLib's has a member of this name, which is a word of Qt's.
#undef signals
#include <gio/gio.h>

#include <dlfcn.h>

namespace {

void *s_library = nullptr;

// Nothing is loaded for it: a library that is not there opens no dialogs.
template<typename Function> Function symbol(const char *name)
{
    return reinterpret_cast<Function>(dlsym(s_library, name));
}

// The reference is kept for good: without one, the next user would get a new connection.
void keep(GObject * /*source*/, GAsyncResult *result, void * /*unused*/)
{
    const auto finish = symbol<decltype(&g_bus_get_finish)>("g_bus_get_finish");
    const auto setExit = symbol<decltype(&g_dbus_connection_set_exit_on_close)>(
        "g_dbus_connection_set_exit_on_close");
    if (!finish || !setExit)
        return;
    if (GDBusConnection *connection = finish(result, nullptr))
        setExit(connection, FALSE);
}

}  // namespace

void outliveSessionBus()
{
    s_library = dlopen("libgio-2.0.so.0", RTLD_LAZY | RTLD_NOLOAD);
    if (!s_library)
        return;
    if (const auto get = symbol<decltype(&g_bus_get)>("g_bus_get"))
        get(G_BUS_TYPE_SESSION, nullptr, keep, nullptr);
}
