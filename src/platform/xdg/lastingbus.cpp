#include "platform/xdg/lastingbus.h"

// A structure of GLib has a member of this name, which is a macro of Qt.
#undef signals
#include <gio/gio.h>

#include <dlfcn.h>

namespace {

void *s_library = nullptr;

// The function of a library that is loaded already. A library that is not loaded can't open
// dialogs, so none is loaded for this.
template<typename Function> Function symbol(const char *name)
{
    return reinterpret_cast<Function>(dlsym(s_library, name));
}

// The reference is kept for good, because without it the next user would create a new connection.
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
