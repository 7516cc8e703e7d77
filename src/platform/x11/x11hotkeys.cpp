#include "platform/x11/x11hotkeys.h"

#include "base/log.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto s_releaseInterval = 20ms;

constexpr std::string_view s_keyboardExtension = "XKEYBOARD";
// The extension's events that report other keys or letters.
constexpr uint8_t s_newKeyboard = 0;
constexpr uint8_t s_newMap = 1;

}  // namespace

X11HotKeys::X11HotKeys(X11Display &display) : m_display(display)
{
    m_releaseWatch.setInterval(s_releaseInterval);
    connect(&m_releaseWatch, &QTimer::timeout, this, &X11HotKeys::forgetReleasedKey);
    // A new keymap is reported by several events at once; the timer handles them together.
    m_keyboardChange.setInterval(0ms);
    m_keyboardChange.setSingleShot(true);
    connect(&m_keyboardChange, &QTimer::timeout, this, &X11HotKeys::changeKeyboard);
    xcb_connection_t *connection = m_display.connection();
    const auto extension = XCB_REPLY(
        connection, query_extension,
        xcb_query_extension(connection, s_keyboardExtension.size(), s_keyboardExtension.data()));
    if (extension && extension->present)
        m_keyboardEvent = extension->first_event;
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11HotKeys::~X11HotKeys()
{
    m_letters.clear();
    grabKeys();
}

void X11HotKeys::setHandler(std::function<void(int)> handler) { m_handler = std::move(handler); }

void X11HotKeys::add(int number, char letter)
{
    if (m_keyboard.modifiers.isEmpty())
        m_keyboard = readX11Keyboard(m_display);
    m_letters[number] = letter;
    grabKeys();
}

void X11HotKeys::remove(int number)
{
    m_letters.remove(number);
    grabKeys();
}

// The server also reports a new keyboard when another device is used for the first time. The key
// that caused this may be a hot key, so grabs that are still needed stay in force.
void X11HotKeys::changeKeyboard()
{
    const X11Keyboard keyboard = readX11Keyboard(m_display);
    if (keyboard.modifiers.isEmpty())
        return;
    if (keyboard.modifiers != m_keyboard.modifiers || keyboard.locks != m_keyboard.locks) {
        const QMap<int, char> letters = std::exchange(m_letters, {});
        grabKeys();
        m_letters = letters;
    }
    m_keyboard = keyboard;
    grabKeys();
}

// Grabs the keys that are needed now, and releases all others.
void X11HotKeys::grabKeys()
{
    QList<xcb_keycode_t> needed;
    for (const char letter : std::as_const(m_letters))
        needed += m_keyboard.layout.keysOf(letter);
    // A grab applies to an exact set of modifiers, and active locks are modifiers, too.
    for (const uint16_t modifiers : std::as_const(m_keyboard.modifiers)) {
        for (const uint16_t locks : std::as_const(m_keyboard.locks))
            grabKeysWith(modifiers | locks, needed);
    }
    m_grabbed = needed;
    xcb_flush(m_display.connection());
}

void X11HotKeys::grabKeysWith(uint16_t modifiers, const QList<xcb_keycode_t> &needed)
{
    xcb_connection_t *connection = m_display.connection();
    for (const xcb_keycode_t key : std::as_const(m_grabbed)) {
        if (!needed.contains(key))
            xcb_ungrab_key(connection, key, m_display.root(), modifiers);
    }
    for (const xcb_keycode_t key : needed) {
        if (m_grabbed.contains(key))
            continue;
        const xcb_void_cookie_t cookie =
            xcb_grab_key_checked(connection, 0, m_display.root(), modifiers, key,
                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        // Another program has the key. Nobody waits for that who does not want to know.
        if (!logX11().isInfoEnabled())
            xcb_discard_reply(connection, cookie.sequence);
        else if (Reply<xcb_generic_error_t>(xcb_request_check(connection, cookie)))
            qCInfo(logX11) << "key" << key << "with modifiers" << modifiers << "is held by another";
    }
}

bool X11HotKeys::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    const int type = event->response_type & ~0x80;
    if (type == XCB_KEY_PRESS)
        return pressed(*reinterpret_cast<const xcb_key_press_event_t *>(event));
    // A client that listens to the extension, as the toolkit does, does not get the core event.
    const bool isNewMap =
        type == m_keyboardEvent && (event->pad0 == s_newKeyboard || event->pad0 == s_newMap);
    const bool isMapping =
        type == XCB_MAPPING_NOTIFY &&
        reinterpret_cast<const xcb_mapping_notify_event_t *>(event)->request != XCB_MAPPING_POINTER;
    if ((isNewMap || isMapping) && !m_letters.isEmpty())
        m_keyboardChange.start();
    return false;
}

bool X11HotKeys::pressed(const xcb_key_press_event_t &key)
{
    // The event's window is not checked, because an overlay that has grabbed the keyboard receives
    // the hot keys itself.
    const uint16_t locks = m_keyboard.locks.isEmpty() ? 0 : m_keyboard.locks.last();
    const auto modifiers = static_cast<uint16_t>(key.state & 0xff & ~locks);
    if (m_letters.isEmpty() || !m_keyboard.modifiers.contains(modifiers))
        return false;
    if (key.event == m_display.root()) {
        // The key grab has become a grab of the whole keyboard, which is released so that the other
        // program still gets its keys.
        xcb_ungrab_keyboard(m_display.connection(), key.time);
        xcb_flush(m_display.connection());
    }
    const char letter = m_keyboard.layout.letterOf(key.detail, currentGroup(m_display, key.state));
    const int number = m_letters.key(letter, -1);
    if (letter == 0 || number == -1) {
        qCInfo(logX11) << "key" << key.detail << "is no hot key in this layout";
        return false;
    }
    // A key that is held down repeats until another key is pressed. Its release may go to any
    // window that has the focus by then, so a timer asks the server for the keyboard's state.
    if (std::exchange(m_held, key.detail) == key.detail)
        return true;
    m_releaseWatch.start();
    // Commands run event loops of their own, which must not happen inside an event filter.
    QMetaObject::invokeMethod(
        this,
        [this, number] {
            if (m_handler)
                m_handler(number);
        },
        Qt::QueuedConnection);
    return true;
}

void X11HotKeys::forgetReleasedKey()
{
    xcb_connection_t *connection = m_display.connection();
    const auto keymap = XCB_REPLY(connection, query_keymap, xcb_query_keymap(connection));
    if (keymap && (keymap->keys[m_held / 8] & (1U << (m_held % 8))))
        return;
    m_held = 0;
    m_releaseWatch.stop();
}
