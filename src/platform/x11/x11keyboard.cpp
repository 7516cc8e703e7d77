#include "platform/x11/x11keyboard.h"

#include "platform/keysymbols.h"

#include <xcb/xcb_keysyms.h>
// One of its fields has a name that is a keyword here.
#define explicit isExplicit
#include <xcb/xkb.h>
#undef explicit
#include <xkbcommon/xkbcommon-x11.h>

namespace {

// The group that an event of the core protocol tells in its state.
constexpr int s_groupShift = 13;
constexpr int s_groupMask = 3;

struct FreeSymbols {
    void operator()(xcb_key_symbols_t *symbols) const { xcb_key_symbols_free(symbols); }
};
using Symbols = std::unique_ptr<xcb_key_symbols_t, FreeSymbols>;

QList<xcb_keycode_t> keycodesOf(xcb_key_symbols_t *symbols, xcb_keysym_t keysym)
{
    const Reply<xcb_keycode_t> codes(xcb_key_symbols_get_keycode(symbols, keysym));
    QList<xcb_keycode_t> result;
    for (const xcb_keycode_t *code = codes.get(); code && *code != XCB_NO_SYMBOL; ++code)
        result.append(*code);
    return result;
}

uint16_t modifierOf(const xcb_get_modifier_mapping_reply_t &mapping,
                    const QList<xcb_keycode_t> &keycodes)
{
    const xcb_keycode_t *codes = xcb_get_modifier_mapping_keycodes(&mapping);
    for (int modifier = 0; modifier < 8; ++modifier) {
        for (int i = 0; i < mapping.keycodes_per_modifier; ++i) {
            if (keycodes.contains(codes[modifier * mapping.keycodes_per_modifier + i]))
                return static_cast<uint16_t>(1U << modifier);
        }
    }
    return 0;
}

struct FreeContext {
    void operator()(xkb_context *context) const { xkb_context_unref(context); }
};
struct FreeKeymap {
    void operator()(xkb_keymap *map) const { xkb_keymap_unref(map); }
};
using Keymap = std::unique_ptr<xkb_keymap, FreeKeymap>;

// A key may have fewer layouts than the keyboard: the library knows which one stands in.
int keyAt(xkb_keymap *map, xkb_keycode_t code, xkb_layout_index_t layout, xkb_level_index_t level)
{
    const xkb_keysym_t *symbols = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(map, code, layout, level, &symbols);
    return count > 0 ? keyOfSymbol(symbols[0]) : 0;
}

QList<KeyLayout::Group> groupsOf(xkb_keymap *map, xkb_level_index_t level)
{
    QList<KeyLayout::Group> result(xkb_keymap_num_layouts(map));
    for (xkb_keycode_t code = xkb_keymap_min_keycode(map); code <= xkb_keymap_max_keycode(map);
         ++code) {
        for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts(map); ++layout) {
            if (const int key = keyAt(map, code, layout, level))
                result[layout].insert(static_cast<uint8_t>(code), key);
        }
    }
    return result;
}

// A server without the keyboard extension has one layout.
QList<KeyLayout::Group> coreGroup(xcb_connection_t *connection, xcb_key_symbols_t *symbols,
                                  int column)
{
    KeyLayout::Group result;
    const xcb_setup_t *setup = xcb_get_setup(connection);
    for (int at = setup->min_keycode; at <= setup->max_keycode; ++at) {
        const auto code = static_cast<xcb_keycode_t>(at);
        if (const int key = keyOfSymbol(xcb_key_symbols_get_keysym(symbols, code, column)))
            result.insert(code, key);
    }
    return {result};
}

int32_t coreKeyboard(xcb_connection_t *connection)
{
    // Who has not told a version may ask for nothing.
    if (!xkb_x11_setup_xkb_extension(
            connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr))
        return -1;
    return xkb_x11_get_core_keyboard_device_id(connection);
}

// Null without the keyboard extension.
Keymap readKeymap(xcb_connection_t *connection)
{
    const std::unique_ptr<xkb_context, FreeContext> context(
        xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES));
    const int32_t device = coreKeyboard(connection);
    if (!context || device < 0)
        return {};
    return Keymap(xkb_x11_keymap_new_from_device(context.get(), connection, device,
                                                 XKB_KEYMAP_COMPILE_NO_FLAGS));
}

}  // namespace

QList<uint16_t> X11Keyboard::masksOf(Qt::KeyboardModifiers modifiers) const
{
    uint16_t plain = 0;
    if (modifiers.testFlag(Qt::ShiftModifier))
        plain |= XCB_MOD_MASK_SHIFT;
    if (modifiers.testFlag(Qt::ControlModifier))
        plain |= XCB_MOD_MASK_CONTROL;
    const QList<uint16_t> none{0};
    QList<uint16_t> result;
    for (const uint16_t alt : modifiers.testFlag(Qt::AltModifier) ? alts : none) {
        for (const uint16_t meta : modifiers.testFlag(Qt::MetaModifier) ? metas : none)
            result.append(static_cast<uint16_t>(plain | alt | meta));
    }
    return result;
}

X11Keyboard readX11Keyboard(X11Display &display)
{
    xcb_connection_t *connection = display.connection();
    const auto mapping =
        XCB_REPLY(connection, get_modifier_mapping, xcb_get_modifier_mapping(connection));
    const Symbols symbols(xcb_key_symbols_alloc(connection));
    if (!mapping || !symbols)
        return {};
    const auto modifier = [&](xcb_keysym_t keysym) {
        return modifierOf(*mapping, keycodesOf(symbols.get(), keysym));
    };
    const auto modifiers = [&](xcb_keysym_t left, xcb_keysym_t right, uint16_t usual) {
        QList<uint16_t> found;
        for (const uint16_t one : {modifier(left), modifier(right)}) {
            if (one && !found.contains(one))
                found.append(one);
        }
        return found.isEmpty() ? QList<uint16_t>{usual} : found;
    };
    X11Keyboard result;
    result.alts = modifiers(XKB_KEY_Alt_L, XKB_KEY_Alt_R, XCB_MOD_MASK_1);
    result.metas = modifiers(XKB_KEY_Super_L, XKB_KEY_Super_R, XCB_MOD_MASK_4);
    result.locks = {0};
    for (const uint16_t lock : {static_cast<uint16_t>(XCB_MOD_MASK_LOCK),
                                modifier(XKB_KEY_Num_Lock), modifier(XKB_KEY_Scroll_Lock)}) {
        const QList<uint16_t> without = result.locks;
        for (const uint16_t others : without) {
            if (lock && !result.locks.contains(others | lock))
                result.locks.append(others | lock);
        }
    }
    // The core protocol's table mixes the layouts from the third on up.
    const Keymap map = readKeymap(connection);
    result.layout = map ? KeyLayout(groupsOf(map.get(), 0), groupsOf(map.get(), 1))
                        : KeyLayout(coreGroup(connection, symbols.get(), 0),
                                    coreGroup(connection, symbols.get(), 1));
    return result;
}

int currentGroup(X11Display &display, uint16_t state)
{
    // Events that a grab brings have the state of the core protocol, which may know no layouts. The
    // server is asked and not the keymap: of a layout that came this moment it would make another.
    xcb_connection_t *connection = display.connection();
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(connection, &xcb_xkb_id);
    if (extension && extension->present) {
        const auto now = XCB_REPLY(connection, xkb_get_state,
                                   xcb_xkb_get_state(connection, XCB_XKB_ID_USE_CORE_KBD));
        if (now)
            return now->group;
    }
    return state >> s_groupShift & s_groupMask;
}
