#include "platform/x11/x11display.h"

#include "base/log.h"

#include <algorithm>
#include <array>

#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/randr.h>
#include <xcb/shape.h>
#include <xcb/shm.h>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>

namespace {

constexpr uint32_t s_propertyLimit = 1 << 16;  // in units of four bytes

int defaultScreen()
{
    char *host = nullptr;
    int display = 0;
    int screen = 0;
    xcb_parse_display(nullptr, &host, &display, &screen);
    std::free(host);
    return screen;
}

}  // namespace

void logError(const xcb_generic_error_t &error)
{
    qCInfo(logX11).nospace() << "request " << error.major_code << '.' << error.minor_code
                             << " on 0x" << Qt::hex << error.resource_id << Qt::dec
                             << " refused with error " << error.error_code;
}

X11Display::X11Display(xcb_connection_t *connection)
    : m_connection(connection), m_screenNumber(defaultScreen())
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < m_screenNumber && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    m_screen = screens.data;
    // The services ask for these one after another. One round trip for all of them.
    for (xcb_extension_t *extension :
         {&xcb_composite_id, &xcb_damage_id, &xcb_input_id, &xcb_randr_id, &xcb_shape_id,
          &xcb_shm_id, &xcb_test_id, &xcb_xfixes_id})
        xcb_prefetch_extension_data(connection, extension);
}

xcb_atom_t X11Display::atom(std::string_view name)
{
    const QByteArray key(name.data(), static_cast<qsizetype>(name.size()));
    const auto known = std::find_if(m_atoms.cbegin(), m_atoms.cend(),
                                    [&](const auto &entry) { return entry.first == key; });
    if (known != m_atoms.cend())
        return known->second;
    const auto reply = XCB_REPLY(
        m_connection, intern_atom,
        xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(name.size()), name.data()));
    const xcb_atom_t result = reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    m_atoms.append({key, result});
    return result;
}

QByteArray X11Display::property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type, int format)
{
    const auto reply =
        XCB_REPLY(m_connection, get_property,
                  xcb_get_property(m_connection, 0, window, name, type, 0, s_propertyLimit));
    if (!reply || reply->format != format)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
}

QList<uint32_t> X11Display::values(xcb_window_t window, xcb_atom_t name, xcb_atom_t type)
{
    const QByteArray bytes = property(window, name, type, 32);
    const auto *values = reinterpret_cast<const uint32_t *>(bytes.constData());
    return {values, values + bytes.size() / static_cast<qsizetype>(sizeof(uint32_t))};
}

// The server numbers the windows of each client from a base of its own.
bool X11Display::isSameClient(xcb_window_t one, xcb_window_t other) const
{
    return ((one ^ other) & ~xcb_get_setup(m_connection)->resource_id_mask) == 0;
}

bool X11Display::hasExtension(xcb_extension_t &extension)
{
    const xcb_query_extension_reply_t *data = xcb_get_extension_data(m_connection, &extension);
    return data && data->present;
}

xcb_atom_t X11Display::compositorSelection()
{
    return atom("_NET_WM_CM_S" + std::to_string(m_screenNumber));
}

bool X11Display::isComposited()
{
    const auto reply = XCB_REPLY(m_connection, get_selection_owner,
                                 xcb_get_selection_owner(m_connection, compositorSelection()));
    return reply && reply->owner != XCB_NONE;
}

bool X11Display::hasWindowManager()
{
    // The window that the root's property names must have the same property: a window manager that
    // died leaves the root's property behind.
    const xcb_atom_t check = atom("_NET_SUPPORTING_WM_CHECK");
    const QList<uint32_t> manager = values(root(), check, XCB_ATOM_WINDOW);
    return !manager.isEmpty() && values(manager.first(), check, XCB_ATOM_WINDOW) == manager;
}

void X11Display::sendToRoot(xcb_window_t window, xcb_atom_t type,
                            const std::array<uint32_t, 5> &data)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(m_connection, 0, root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(m_connection);
}

uint8_t X11Display::hearRawKeys(bool hears)
{
    const xcb_query_extension_reply_t *input = xcb_get_extension_data(m_connection, &xcb_input_id);
    if (!input || !input->present)
        return 0;
    m_rawKeyHearers += hears ? 1 : -1;
    struct {
        xcb_input_event_mask_t head;
        uint32_t mask;
    } request{.head = {.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1},
              .mask = m_rawKeyHearers > 0 ? uint32_t{XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS} : 0};
    xcb_input_xi_select_events(m_connection, root(), 1, &request.head);
    xcb_flush(m_connection);
    return input->major_opcode;
}

void X11Display::selectRootEvents(uint32_t mask)
{
    // The toolkit shares this connection and has selected events of its own, which must stay.
    const auto attributes = XCB_REPLY(m_connection, get_window_attributes,
                                      xcb_get_window_attributes(m_connection, root()));
    const uint32_t wanted = mask | (attributes ? attributes->your_event_mask : 0);
    xcb_change_window_attributes(m_connection, root(), XCB_CW_EVENT_MASK, &wanted);
}
