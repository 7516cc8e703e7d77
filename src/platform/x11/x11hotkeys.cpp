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
// The kinds of its events that tell of other keys or letters.
constexpr uint8_t s_newKeyboard = 0;
constexpr uint8_t s_newMap = 1;

}  // namespace

X11HotKeys::X11HotKeys(X11Display &display) : m_display(display)
{
    m_releaseWatch.setInterval(s_releaseInterval);
    connect(&m_releaseWatch, &QTimer::timeout, this, &X11HotKeys::forgetReleasedKey);
    // A new keymap comes as a burst of events.
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

// The server also tells of a new keyboard when another device is used for the first time. Grabs
// that stay as they are stay in force meanwhile: the key that brought the news may be a hot key.
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

// Holds the keys that are needed now, and no others.
void X11HotKeys::grabKeys()
{
    QList<xcb_keycode_t> needed;
    for (const char letter : std::as_const(m_letters))
        needed += m_keyboard.layout.keysOf(letter);
    // A grab holds for an exact set of modifiers, and a lock that is on is one of them.
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
    // Who listens to the extension, as the toolkit does, is not told in the other way.
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
    // An overlay that holds the keyboard receives the keys itself, so the window does not count.
    const uint16_t locks = m_keyboard.locks.isEmpty() ? 0 : m_keyboard.locks.last();
    const auto modifiers = static_cast<uint16_t>(key.state & 0xff & ~locks);
    if (m_letters.isEmpty() || !m_keyboard.modifiers.contains(modifiers))
        return false;
    if (key.event == m_display.root()) {
        // The press froze the keyboard for this program; the other one goes on typing.
        xcb_ungrab_keyboard(m_display.connection(), key.time);
        xcb_flush(m_display.connection());
    }
    const char letter = m_keyboard.layout.letterOf(key.detail, currentGroup(m_display, key.state));
    const int number = m_letters.key(letter, -1);
    if (letter == 0 || number == -1) {
        qCInfo(logX11) << "key" << key.detail << "is no hot key in this layout";
        return false;
    }
    // A key that is held down repeats, until another one is pressed. Where the release goes depends
    // on who has the focus by then: the keyboard's own state tells when the key is up.
    if (std::exchange(m_held, key.detail) == key.detail)
        return true;
    m_releaseWatch.start();
    // The commands run event loops of their own, which an event filter must not.
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
