#pragma once

#include "platform/hotkeys.h"
#include "platform/x11/x11display.h"
#include "platform/x11/x11keyboard.h"

#include <QAbstractNativeEventFilter>
#include <QMap>
#include <QObject>
#include <QTimer>

#include <map>
#include <optional>
#include <utility>

class X11HotKeys : public QObject, public HotKeys, public QAbstractNativeEventFilter
{
public:
    /// `display` outlives this object.
    explicit X11HotKeys(X11Display &display);
    ~X11HotKeys() override;

    void setHandler(std::function<void(int)> handler) override;
    void add(int number, QKeyCombination keys) override;
    void remove(int number) override;
    QString keysOf(int number) const override;
    void hearInMenus(bool hears) override;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    /// A key with exactly these modifiers.
    struct Stroke {
        xcb_keycode_t key = 0;
        uint16_t modifiers = 0;
        bool operator<(const Stroke &other) const
        {
            return std::pair(key, modifiers) < std::pair(other.key, other.modifiers);
        }
    };
    /// A grab, of which the server may not have been asked yet whether it has come about.
    struct Held {
        std::optional<xcb_void_cookie_t> unasked{};
        bool isRefused = false;
    };

    void changeKeyboard();
    /// Without the locks.
    QList<Stroke> strokesOf(QKeyCombination keys) const;
    void grabKeys();
    bool isTaken(const Stroke &stroke) const;
    bool pressed(const xcb_key_press_event_t &key);
    void pressedRaw(xcb_keycode_t key);
    uint16_t modifiers() const;
    void press(xcb_keycode_t key, int number);
    int numberOf(const Stroke &stroke, uint16_t state) const;
    void forgetReleasedKey();

    X11Display &m_display;
    std::function<void(int)> m_handler;
    QMap<int, QKeyCombination> m_keys;  ///< by number
    X11Keyboard m_keyboard;
    mutable std::map<Stroke, Held> m_grabs;  ///< with the locks
    int m_keyboardEvent = -1;                ///< the type of the keyboard extension's events
    QTimer m_keyboardChange;                 ///< runs until the changed keyboard has been read
    xcb_keycode_t m_held = 0;                ///< the last hot key pressed; 0 once it is up
    QTimer m_releaseWatch;                   ///< runs while m_held is not 0
    uint8_t m_inputOpcode = 0;               ///< of raw events; 0 where they are not heard
    std::optional<uint16_t> m_state{};       ///< the modifiers as the extension has told them last
};
