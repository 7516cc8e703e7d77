#include "platform/x11/x11keyboard.h"

#include <QGuiApplication>

#include <algorithm>

#include <xcb/xcb_keysyms.h>
// Included last, because its macros would break other headers.
#include <X11/XKBlib.h>

namespace {

// Keysyms from X11/keysymdef.h that tell which modifier bits are locks and Alt.
constexpr xcb_keysym_t s_numLock = 0xff7f;
constexpr xcb_keysym_t s_scrollLock = 0xff14;
constexpr xcb_keysym_t s_altLeft = 0xffe9;
constexpr xcb_keysym_t s_altRight = 0xffea;

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

struct FreeMap {
    void operator()(XkbDescPtr map) const { XkbFreeKeyboard(map, 0, True); }
};

char letterOf(unsigned long keysym)
{
    if (keysym >= 'a' && keysym <= 'z')
        return static_cast<char>(keysym - 'a' + 'A');
    return keysym >= 'A' && keysym <= 'Z' ? static_cast<char>(keysym) : '\0';
}

// A key may have fewer groups than the keyboard. The key itself says which group is used instead.
int ownGroup(XkbDescPtr map, int key, int group)
{
    const int count = XkbKeyNumGroups(map, key);
    if (group < count)
        return group;
    const int info = XkbKeyGroupInfo(map, key);
    switch (XkbOutOfRangeGroupAction(info)) {
    case XkbClampIntoRange:
        return count - 1;
    case XkbRedirectIntoRange: {
        const int instead = XkbOutOfRangeGroupNumber(info);
        return instead < count ? instead : 0;
    }
    default:
        return group % count;
    }
}

QList<KeyLayout::Group> groupsOf(XkbDescPtr map)
{
    int count = 1;
    for (int key = map->min_key_code; key <= map->max_key_code; ++key)
        count = std::max(count, static_cast<int>(XkbKeyNumGroups(map, key)));
    QList<KeyLayout::Group> result(count);
    for (int key = map->min_key_code; key <= map->max_key_code; ++key) {
        if (XkbKeyNumGroups(map, key) == 0)
            continue;
        for (int group = 0; group < count; ++group) {
            const char letter = letterOf(XkbKeySymEntry(map, key, 0, ownGroup(map, key, group)));
            if (letter)
                result[group].insert(static_cast<uint8_t>(key), letter);
        }
    }
    return result;
}

// For a server without the keyboard extension, which has one layout.
QList<KeyLayout::Group> coreGroup(xcb_connection_t *connection, xcb_key_symbols_t *symbols)
{
    KeyLayout::Group result;
    const xcb_setup_t *setup = xcb_get_setup(connection);
    for (int key = setup->min_keycode; key <= setup->max_keycode; ++key) {
        const auto code = static_cast<xcb_keycode_t>(key);
        if (const char letter = letterOf(xcb_key_symbols_get_keysym(symbols, code, 0)))
            result.insert(code, letter);
    }
    return {result};
}

Display *xlibDisplay()
{
    auto *native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return native ? native->display() : nullptr;
}

}  // namespace

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
    X11Keyboard result;
    for (const uint16_t alt : {modifier(s_altLeft), modifier(s_altRight)}) {
        if (alt && !result.modifiers.contains(XCB_MOD_MASK_CONTROL | alt))
            result.modifiers.append(XCB_MOD_MASK_CONTROL | alt);
    }
    if (result.modifiers.isEmpty())
        result.modifiers = {XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1};
    result.locks = {0};
    for (const uint16_t lock :
         {static_cast<uint16_t>(XCB_MOD_MASK_LOCK), modifier(s_numLock), modifier(s_scrollLock)}) {
        const QList<uint16_t> without = result.locks;
        for (const uint16_t others : without) {
            if (lock && !result.locks.contains(others | lock))
                result.locks.append(others | lock);
        }
    }
    // The core protocol's table mixes layouts from the third one on.
    Display *xlib = xlibDisplay();
    const std::unique_ptr<XkbDescRec, FreeMap> map(
        xlib ? XkbGetMap(xlib, XkbKeySymsMask, XkbUseCoreKbd) : nullptr);
    result.layout = KeyLayout(map ? groupsOf(map.get()) : coreGroup(connection, symbols.get()));
    return result;
}

int currentGroup(uint16_t state)
{
    // Events of a grab carry the core protocol's state, which may lack the layout.
    XkbStateRec now{};
    Display *xlib = xlibDisplay();
    if (xlib && XkbGetState(xlib, XkbUseCoreKbd, &now) == Success)
        return now.group;
    return XkbGroupForCoreState(state);
}
