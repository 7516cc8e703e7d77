#include "platform/x11/x11keywatch.h"

#include "platform/x11/x11keyboard.h"

#include <QCoreApplication>

#include <array>
#include <chrono>
#include <utility>

#include <xcb/xcb_keysyms.h>
#include <xcb/xinput.h>
#include <xkbcommon/xkbcommon-keysyms.h>

using namespace std::chrono_literals;

namespace {

// Shorter than any key press by hand.
constexpr auto s_lookInterval = 15ms;

constexpr std::array<std::pair<xcb_keysym_t, Qt::Key>, 3> s_keysyms{
    {{XKB_KEY_Escape, Qt::Key_Escape},
     {XKB_KEY_Return, Qt::Key_Return},
     {XKB_KEY_KP_Enter, Qt::Key_Return}}};

}  // namespace

X11KeyWatch::X11KeyWatch(X11Display &display) : m_display(display)
{
    m_look.setInterval(s_lookInterval);
    connect(&m_look, &QTimer::timeout, this, &X11KeyWatch::look);
}

X11KeyWatch::~X11KeyWatch() { X11KeyWatch::stop(); }

void X11KeyWatch::readCodes(const QList<Qt::Key> &keys)
{
    xcb_connection_t *connection = m_display.connection();
    xcb_key_symbols_t *symbols = xcb_key_symbols_alloc(connection);
    for (const auto &[keysym, key] : s_keysyms) {
        if (!symbols || !keys.contains(key))
            continue;
        const Reply<xcb_keycode_t> codes(xcb_key_symbols_get_keycode(symbols, keysym));
        for (const xcb_keycode_t *code = codes.get(); code && *code != XCB_NO_SYMBOL; ++code)
            m_keys.insert(*code, key);
    }
    if (symbols)
        xcb_key_symbols_free(symbols);
}

void X11KeyWatch::listen(const QList<Qt::Key> &keys, std::function<void(Qt::Key)> pressed)
{
    stop();
    readCodes(keys);
    m_pressed = std::move(pressed);
    m_isListening = true;
    QCoreApplication::instance()->installNativeEventFilter(this);
    m_inputOpcode = m_display.hearRawKeys(true);
}

void X11KeyWatch::start(const QList<Qt::Key> &keys, std::function<void(Qt::Key)> pressed)
{
    stop();
    xcb_connection_t *connection = m_display.connection();
    readCodes(keys);
    // The grabs keep the keys from the other program. If a grab is refused, somebody else has
    // grabbed the key, and only look() notices the press. AnyModifier is not used, because one
    // combination that a window manager has grabbed would make the whole grab fail.
    m_locks = readX11Keyboard(m_display).locks;
    for (auto it = m_keys.cbegin(); it != m_keys.cend(); ++it) {
        for (const uint16_t locks : std::as_const(m_locks)) {
            const xcb_void_cookie_t cookie =
                xcb_grab_key_checked(connection, 0, m_display.root(), locks, it.key(),
                                     XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
            xcb_discard_reply(connection, cookie.sequence);
        }
    }
    m_pressed = std::move(pressed);
    // A key that is down already was pressed for something else.
    m_held = m_keys.keys();
    QCoreApplication::instance()->installNativeEventFilter(this);
    m_look.start();
    look();
}

void X11KeyWatch::stop()
{
    if (!m_look.isActive() && !m_isListening)
        return;
    m_look.stop();
    QCoreApplication::instance()->removeNativeEventFilter(this);
    if (std::exchange(m_isListening, false))
        m_display.hearRawKeys(false);
    xcb_connection_t *connection = m_display.connection();
    for (auto it = m_keys.cbegin(); it != m_keys.cend(); ++it) {
        for (const uint16_t locks : std::as_const(m_locks))
            xcb_ungrab_key(connection, it.key(), m_display.root(), locks);
    }
    xcb_flush(connection);
    m_keys.clear();
    m_locks.clear();
    m_pressed = {};
}

bool X11KeyWatch::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if (m_isListening && event->response_type == XCB_GE_GENERIC) {
        const auto *raw = reinterpret_cast<const xcb_input_raw_key_press_event_t *>(event);
        const bool isPress = raw->extension == m_inputOpcode &&
                             raw->event_type == XCB_INPUT_RAW_KEY_PRESS &&
                             !(raw->flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT);
        if (isPress && m_keys.contains(static_cast<xcb_keycode_t>(raw->detail)))
            tell(static_cast<xcb_keycode_t>(raw->detail));
        return false;
    }
    if ((event->response_type & ~0x80) != XCB_KEY_PRESS)
        return false;
    const auto *key = reinterpret_cast<const xcb_key_press_event_t *>(event);
    if (key->event != m_display.root() || !m_keys.contains(key->detail))
        return false;
    press(key->detail);
    return true;
}

// Polls the keyboard, because no event reports presses while an open menu has grabbed it.
void X11KeyWatch::look()
{
    xcb_connection_t *connection = m_display.connection();
    const auto keymap = XCB_REPLY(connection, query_keymap, xcb_query_keymap(connection));
    if (!keymap)
        return;
    for (auto it = m_keys.cbegin(); it != m_keys.cend(); ++it) {
        if (keymap->keys[it.key() / 8] & (1U << (it.key() % 8)))
            press(it.key());
        else
            m_held.removeAll(it.key());
    }
}

// Reports each press once, whether an event or the polling notices it.
void X11KeyWatch::press(xcb_keycode_t code)
{
    if (m_held.contains(code))
        return;
    m_held.append(code);
    tell(code);
}

void X11KeyWatch::tell(xcb_keycode_t code)
{
    // The callback may end this watch or run event loops, which must not happen inside an event
    // filter.
    const Qt::Key key = m_keys.value(code);
    QMetaObject::invokeMethod(
        this,
        [this, key] {
            if (const auto pressed = m_pressed)
                pressed(key);
        },
        Qt::QueuedConnection);
}
