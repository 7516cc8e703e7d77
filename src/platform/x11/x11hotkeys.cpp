#include "platform/x11/x11hotkeys.h"

#include <QCoreApplication>

#include <chrono>

#include <xcb/xcb_keysyms.h>

using namespace std::chrono_literals;

namespace {

// The keysyms, from X11/keysymdef.h, that tell which modifier bit a lock or Alt is.
constexpr xcb_keysym_t s_numLock = 0xff7f;
constexpr xcb_keysym_t s_scrollLock = 0xff14;
constexpr xcb_keysym_t s_altLeft = 0xffe9;
constexpr xcb_keysym_t s_altRight = 0xffea;

constexpr auto s_releaseInterval = 20ms;

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

}  // namespace

X11HotKeys::X11HotKeys(X11Display &display) : m_display(display)
{
    m_releaseWatch.setInterval(s_releaseInterval);
    connect(&m_releaseWatch, &QTimer::timeout, this, &X11HotKeys::forgetReleasedKeys);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11HotKeys::~X11HotKeys()
{
    for (const char letter : std::as_const(m_letters))
        ungrab(letter);
    xcb_flush(m_display.connection());
}

void X11HotKeys::setHandler(std::function<void(int)> handler) { m_handler = std::move(handler); }

void X11HotKeys::add(int number, char letter)
{
    if (m_modifiers == 0)
        readKeyboard();
    m_letters[number] = letter;
    grab(letter);
}

void X11HotKeys::remove(int number)
{
    if (const char letter = m_letters.take(number))
        ungrab(letter);
    xcb_flush(m_display.connection());
}

// A grab holds for an exact set of modifiers, and a lock that is on is one of them.
void X11HotKeys::readKeyboard()
{
    xcb_connection_t *connection = m_display.connection();
    const auto mapping =
        XCB_REPLY(connection, get_modifier_mapping, xcb_get_modifier_mapping(connection));
    const Symbols symbols(xcb_key_symbols_alloc(connection));
    if (!mapping || !symbols)
        return;
    const auto modifier = [&](xcb_keysym_t keysym) {
        return modifierOf(*mapping, keycodesOf(symbols.get(), keysym));
    };
    const uint16_t alt = modifier(s_altLeft) | modifier(s_altRight);
    m_modifiers = XCB_MOD_MASK_CONTROL | (alt ? alt : static_cast<uint16_t>(XCB_MOD_MASK_1));
    m_locks = {0};
    for (const uint16_t lock :
         {static_cast<uint16_t>(XCB_MOD_MASK_LOCK), modifier(s_numLock), modifier(s_scrollLock)}) {
        const QList<uint16_t> without = m_locks;
        for (const uint16_t others : without) {
            if (lock && !m_locks.contains(others | lock))
                m_locks.append(others | lock);
        }
    }
    m_keycodes.clear();
    for (char letter = 'A'; letter <= 'Z'; ++letter)
        m_keycodes[letter] =
            keycodesOf(symbols.get(), static_cast<xcb_keysym_t>(letter - 'A' + 'a'));
}

void X11HotKeys::grab(char letter)
{
    xcb_connection_t *connection = m_display.connection();
    for (const xcb_keycode_t keycode : m_keycodes.value(letter)) {
        for (const uint16_t locks : std::as_const(m_locks)) {
            const xcb_void_cookie_t cookie =
                xcb_grab_key_checked(connection, 0, m_display.root(), m_modifiers | locks, keycode,
                                     XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
            // A refusal is nobody's business, and nobody waits for it.
            xcb_discard_reply(connection, cookie.sequence);
        }
    }
    xcb_flush(connection);
}

void X11HotKeys::ungrab(char letter)
{
    for (const xcb_keycode_t keycode : m_keycodes.value(letter)) {
        for (const uint16_t locks : std::as_const(m_locks))
            xcb_ungrab_key(m_display.connection(), keycode, m_display.root(), m_modifiers | locks);
    }
}

bool X11HotKeys::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    switch (event->response_type & ~0x80) {
    case XCB_MAPPING_NOTIFY: {
        const auto *mapping = reinterpret_cast<const xcb_mapping_notify_event_t *>(event);
        if (m_letters.isEmpty() || mapping->request == XCB_MAPPING_POINTER)
            return false;
        for (const char letter : std::as_const(m_letters))
            ungrab(letter);
        readKeyboard();
        for (const char letter : std::as_const(m_letters))
            grab(letter);
        return false;
    }
    case XCB_KEY_PRESS: {
        // An overlay that holds the keyboard receives the keys itself, so the window does not
        // count.
        const auto *key = reinterpret_cast<const xcb_key_press_event_t *>(event);
        const uint16_t locks = m_locks.isEmpty() ? 0 : m_locks.last();
        if (m_letters.isEmpty() || (key->state & 0xff & ~locks) != m_modifiers)
            return false;
        const auto letter = std::find_if(m_letters.cbegin(), m_letters.cend(), [&](char candidate) {
            return m_keycodes.value(candidate).contains(key->detail);
        });
        if (letter == m_letters.cend())
            return false;
        if (key->event == m_display.root()) {
            // The press froze the keyboard for this program; the other one goes on typing.
            xcb_ungrab_keyboard(m_display.connection(), key->time);
            xcb_flush(m_display.connection());
        }
        pressed(key->detail);
        return true;
    }
    default:
        return false;
    }
}

void X11HotKeys::pressed(xcb_keycode_t keycode)
{
    // A key that is held down repeats, and where the release goes depends on who has the focus by
    // then: the keyboard's own state tells when the key is up.
    if (m_held.contains(keycode))
        return;
    m_held.append(keycode);
    m_releaseWatch.start();
    for (auto it = m_letters.cbegin(); it != m_letters.cend(); ++it) {
        if (!m_keycodes.value(it.value()).contains(keycode))
            continue;
        // The commands run event loops of their own, which an event filter must not.
        const int number = it.key();
        QMetaObject::invokeMethod(
            this,
            [this, number] {
                if (m_handler)
                    m_handler(number);
            },
            Qt::QueuedConnection);
    }
}

void X11HotKeys::forgetReleasedKeys()
{
    xcb_connection_t *connection = m_display.connection();
    const auto keymap = XCB_REPLY(connection, query_keymap, xcb_query_keymap(connection));
    m_held.removeIf([&](xcb_keycode_t keycode) {
        return !keymap || !(keymap->keys[keycode / 8] & (1U << (keycode % 8)));
    });
    if (m_held.isEmpty())
        m_releaseWatch.stop();
}
