#include "platform/x11/x11hotkeys.h"

#include "base/log.h"
#include "platform/x11/x11menus.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>

#include <xcb/xinput.h>
// One of its fields has a name that is a keyword here.
#define explicit isExplicit
#include <xcb/xkb.h>
#undef explicit

using namespace std::chrono_literals;

namespace {

constexpr auto s_releaseInterval = 20ms;

constexpr std::string_view s_keyboardExtension = "XKEYBOARD";
// The extension's events that report other keys or letters.
constexpr uint8_t s_newKeyboard = 0;
constexpr uint8_t s_newMap = 1;
constexpr uint8_t s_newState = 2;

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
    m_keys.clear();
    grabKeys();
    X11HotKeys::hearInMenus(false);
}

void X11HotKeys::hearInMenus(bool hears)
{
    if (hears == (m_inputOpcode != 0))
        return;
    const uint8_t opcode = m_display.hearRawKeys(hears);
    m_inputOpcode = hears ? opcode : 0;
}

void X11HotKeys::setHandler(std::function<void(int)> handler) { m_handler = std::move(handler); }

void X11HotKeys::add(int number, QKeyCombination keys)
{
    if (m_keyboard.locks.isEmpty())
        m_keyboard = readX11Keyboard(m_display);
    m_keys[number] = keys;
    grabKeys();
}

void X11HotKeys::remove(int number)
{
    m_keys.remove(number);
    grabKeys();
}

// What one of the strokes can't be had for is another program's as far as the user is concerned.
QString X11HotKeys::keysOf(int number) const
{
    if (!m_keys.contains(number))
        return {};
    const QKeyCombination keys = m_keys.value(number);
    const QList<Stroke> strokes = strokesOf(keys);
    for (const Stroke &stroke : strokes) {
        if (isTaken(stroke))
            return {};
    }
    return strokes.isEmpty() ? QString() : QKeySequence(keys).toString(QKeySequence::NativeText);
}

// The server is asked only where somebody wants to know: nobody else waits for its answer.
bool X11HotKeys::isTaken(const Stroke &stroke) const
{
    const auto found = m_grabs.find(stroke);
    if (found == m_grabs.end())
        return true;
    Held &held = found->second;
    if (const auto unasked = std::exchange(held.unasked, std::nullopt))
        held.isRefused =
            bool(Reply<xcb_generic_error_t>(xcb_request_check(m_display.connection(), *unasked)));
    return held.isRefused;
}

// The server also reports a new keyboard when another device is used for the first time. The key
// that caused this may be a hot key, so grabs that are still needed stay in force.
void X11HotKeys::changeKeyboard()
{
    const X11Keyboard keyboard = readX11Keyboard(m_display);
    if (keyboard.locks.isEmpty())
        return;
    m_keyboard = keyboard;
    grabKeys();
}

QList<X11HotKeys::Stroke> X11HotKeys::strokesOf(QKeyCombination keys) const
{
    QList<Stroke> result;
    for (const uint16_t modifiers : m_keyboard.masksOf(keys.keyboardModifiers())) {
        for (const uint8_t key : m_keyboard.layout.keysOf(keys.key()))
            result.append({key, modifiers});
    }
    return result;
}

// Grabs the keys that are needed now, and releases all others.
void X11HotKeys::grabKeys()
{
    xcb_connection_t *connection = m_display.connection();
    std::map<Stroke, Held> needed;
    for (const QKeyCombination keys : std::as_const(m_keys)) {
        // A grab applies to an exact set of modifiers, and active locks are modifiers, too.
        for (const Stroke &stroke : strokesOf(keys)) {
            for (const uint16_t locks : std::as_const(m_keyboard.locks))
                needed[{stroke.key, static_cast<uint16_t>(stroke.modifiers | locks)}] = {};
        }
    }
    for (auto it = m_grabs.begin(); it != m_grabs.end();) {
        if (needed.contains(it->first)) {
            ++it;
            continue;
        }
        if (it->second.unasked)
            xcb_discard_reply(connection, it->second.unasked->sequence);
        xcb_ungrab_key(connection, it->first.key, m_display.root(), it->first.modifiers);
        it = m_grabs.erase(it);
    }
    for (const auto &[stroke, held] : needed) {
        // What was refused may be free by now.
        const auto found = m_grabs.find(stroke);
        if (found != m_grabs.end() && !found->second.isRefused)
            continue;
        m_grabs[stroke].unasked =
            xcb_grab_key_checked(connection, 0, m_display.root(), stroke.modifiers, stroke.key,
                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    }
    if (logX11().isInfoEnabled()) {
        for (const auto &[stroke, held] : m_grabs) {
            if (isTaken(stroke))
                qCInfo(logX11) << "key" << stroke.key << "with modifiers" << stroke.modifiers
                               << "is held by another";
        }
    }
    xcb_flush(connection);
}

bool X11HotKeys::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    const int type = event->response_type & ~0x80;
    if (m_inputOpcode != 0 && event->response_type == XCB_GE_GENERIC) {
        const auto *raw = reinterpret_cast<const xcb_input_raw_key_press_event_t *>(event);
        if (raw->extension == m_inputOpcode && raw->event_type == XCB_INPUT_RAW_KEY_PRESS &&
            !(raw->flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT))
            pressedRaw(static_cast<xcb_keycode_t>(raw->detail));
        return false;
    }
    if (type == XCB_KEY_PRESS)
        return pressed(*reinterpret_cast<const xcb_key_press_event_t *>(event));
    if (type == m_keyboardEvent && event->pad0 == s_newState)
        m_state = reinterpret_cast<const xcb_xkb_state_notify_event_t *>(event)->mods;
    // A client that listens to the extension, as the toolkit does, does not get the core event.
    const bool isNewMap =
        type == m_keyboardEvent && (event->pad0 == s_newKeyboard || event->pad0 == s_newMap);
    const bool isMapping =
        type == XCB_MAPPING_NOTIFY &&
        reinterpret_cast<const xcb_mapping_notify_event_t *>(event)->request != XCB_MAPPING_POINTER;
    if ((isNewMap || isMapping) && !m_keys.isEmpty())
        m_keyboardChange.start();
    return false;
}

bool X11HotKeys::pressed(const xcb_key_press_event_t &key)
{
    // The event's window is not checked, because an overlay that has grabbed the keyboard receives
    // the hot keys itself.
    const uint16_t locks = m_keyboard.locks.isEmpty() ? 0 : m_keyboard.locks.last();
    const Stroke stroke{key.detail, static_cast<uint16_t>(key.state & 0xff & ~locks)};
    // Who lets go of the modifiers first types no letter into what the hot key has opened.
    if (!m_grabs.contains(stroke))
        return key.detail == m_held;
    if (key.event == m_display.root()) {
        // The key grab has become a grab of the whole keyboard, which is released so that the other
        // program still gets its keys.
        xcb_ungrab_keyboard(m_display.connection(), key.time);
        xcb_flush(m_display.connection());
    }
    const int number = numberOf(stroke, key.state);
    if (number == -1) {
        qCInfo(logX11) << "key" << key.detail << "is no hot key in this layout";
        return false;
    }
    press(key.detail, number);
    return true;
}

// The same press comes as an ordinary event, too, unless another program holds the keyboard. For a
// menu it is to count all the same, for a screen locker it must not.
void X11HotKeys::pressedRaw(xcb_keycode_t key)
{
    const bool isOne = std::any_of(m_grabs.begin(), m_grabs.end(),
                                   [key](const auto &grab) { return grab.first.key == key; });
    if (!isOne)
        return;
    const uint16_t state = modifiers();
    const uint16_t locks = m_keyboard.locks.isEmpty() ? 0 : m_keyboard.locks.last();
    const Stroke stroke{key, static_cast<uint16_t>(state & 0xff & ~locks)};
    const int number = m_grabs.contains(stroke) && !isTaken(stroke) ? numberOf(stroke, state) : -1;
    if (number != -1 && openMenus(m_display) > 0)
        press(key, number);
}

// As they were at the event that is being handled: by now the keys may be up again.
uint16_t X11HotKeys::modifiers() const
{
    if (m_state)
        return *m_state;
    xcb_connection_t *connection = m_display.connection();
    const auto now =
        XCB_REPLY(connection, query_pointer, xcb_query_pointer(connection, m_display.root()));
    return now ? now->mask : uint16_t{0};
}

void X11HotKeys::press(xcb_keycode_t key, int number)
{
    // A key that is held down repeats until another key is pressed. Its release may go to any
    // window that has the focus by then, so a timer asks the server for the keyboard's state.
    if (std::exchange(m_held, key) == key)
        return;
    m_releaseWatch.start();
    // Commands run event loops of their own, which must not happen inside an event filter.
    QMetaObject::invokeMethod(
        this,
        [this, number] {
            if (m_handler)
                m_handler(number);
        },
        Qt::QueuedConnection);
}

int X11HotKeys::numberOf(const Stroke &stroke, uint16_t state) const
{
    const int group = currentGroup(m_display, state);
    for (auto it = m_keys.cbegin(); it != m_keys.cend(); ++it) {
        if (m_keyboard.masksOf(it->keyboardModifiers()).contains(stroke.modifiers) &&
            m_keyboard.layout.isKey(stroke.key, group, it->key()))
            return it.key();
    }
    return -1;
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
