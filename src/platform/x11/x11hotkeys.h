#pragma once

#include "platform/hotkeys.h"
#include "platform/x11/x11display.h"
#include "platform/x11/x11keyboard.h"

#include <QAbstractNativeEventFilter>
#include <QMap>
#include <QObject>
#include <QTimer>

class X11HotKeys : public QObject, public HotKeys, public QAbstractNativeEventFilter
{
public:
    /// `display` outlives this object.
    explicit X11HotKeys(X11Display &display);
    ~X11HotKeys() override;

    void setHandler(std::function<void(int)> handler) override;
    void add(int number, char letter) override;
    void remove(int number) override;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    void changeKeyboard();
    void grabKeys();
    void grabKeysWith(uint16_t modifiers, const QList<xcb_keycode_t> &needed);
    bool pressed(const xcb_key_press_event_t &key);
    void forgetReleasedKey();

    X11Display &m_display;
    std::function<void(int)> m_handler;
    QMap<int, char> m_letters;  ///< the letters by number
    X11Keyboard m_keyboard;
    QList<xcb_keycode_t> m_grabbed;
    int m_keyboardEvent = -1;  ///< the type of the keyboard extension's events
    QTimer m_keyboardChange;   ///< runs until the changed keyboard has been read
    xcb_keycode_t m_held = 0;  ///< the last hot key pressed; 0 once it is up
    QTimer m_releaseWatch;     ///< runs while m_held is not 0
};
