#include "platform/x11/x11hands.h"

#include "platform/x11/x11menus.h"

#include <algorithm>
#include <cstdlib>

#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace {

constexpr uint8_t s_wheelUp = 4;  // the pointer's buttons
constexpr uint8_t s_wheelDown = 5;
constexpr uint8_t s_wheelLeft = 6;
constexpr uint8_t s_wheelRight = 7;

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

X11Hands::X11Hands(X11Display &display)
    : m_display(display), m_hasTest(display.hasExtension(xcb_test_id))
{
}

QPoint X11Hands::pointer()
{
    xcb_connection_t *connection = m_display.connection();
    const auto reply =
        XCB_REPLY(connection, query_pointer, xcb_query_pointer(connection, m_display.root()));
    return reply ? QPoint(reply->root_x, reply->root_y) : QPoint();
}

void X11Hands::movePointer(QPoint to)
{
    xcb_warp_pointer(m_display.connection(), XCB_NONE, m_display.root(), 0, 0, 0, 0,
                     static_cast<int16_t>(to.x()), static_cast<int16_t>(to.y()));
    xcb_flush(m_display.connection());
}

bool X11Hands::isHandBusy()
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

void X11Hands::fake(uint8_t type, uint8_t detail)
{
    xcb_test_fake_input(m_display.connection(), type, detail, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
}

// There is no other way to know than to ask for it.
bool X11Hands::isKeyboardHeld()
{
    xcb_connection_t *connection = m_display.connection();
    const auto reply =
        XCB_REPLY(connection, grab_keyboard,
                  xcb_grab_keyboard(connection, 1, m_display.root(), XCB_CURRENT_TIME,
                                    XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    const bool isHeld = reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
    if (!isHeld) {
        xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
        xcb_flush(connection);
    }
    return isHeld;
}

// To ask for the keyboard takes it from a program for a moment, so a menu has to be seen first.
int X11Hands::openMenus()
{
    const int menus = ::openMenus(m_display);
    return menus > 0 && isKeyboardHeld() ? menus : 0;
}

// A hot key's other keys may still be down, and with them Escape would mean something else.
void X11Hands::pressEscape()
{
    xcb_connection_t *connection = m_display.connection();
    const auto mapping =
        XCB_REPLY(connection, get_modifier_mapping, xcb_get_modifier_mapping(connection));
    const auto held = XCB_REPLY(connection, query_keymap, xcb_query_keymap(connection));
    xcb_key_symbols_t *symbols = xcb_key_symbols_alloc(connection);
    const Reply<xcb_keycode_t> escape(symbols ? xcb_key_symbols_get_keycode(symbols, XKB_KEY_Escape)
                                              : nullptr);
    if (symbols)
        xcb_key_symbols_free(symbols);
    if (!m_hasTest || !escape || *escape == XCB_NO_SYMBOL)
        return;
    if (mapping && held) {
        const xcb_keycode_t *keys = xcb_get_modifier_mapping_keycodes(mapping.get());
        for (int i = 0; i < xcb_get_modifier_mapping_keycodes_length(mapping.get()); ++i) {
            if (keys[i] != 0 && (held->keys[keys[i] / 8] & (1U << (keys[i] % 8))))
                fake(XCB_KEY_RELEASE, keys[i]);
        }
    }
    fake(XCB_KEY_PRESS, *escape);
    fake(XCB_KEY_RELEASE, *escape);
    xcb_flush(connection);
}

void X11Hands::turnWheel(QPoint at, int clicks, Wheel wheel)
{
    if (!m_hasTest)
        return;
    xcb_connection_t *connection = m_display.connection();
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
}
