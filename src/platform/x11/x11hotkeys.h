#pragma once

#include "platform/hotkeys.h"
#include "platform/x11/x11display.h"

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
    void readKeyboard();
    void grab(char letter);
    void ungrab(char letter);
    void pressed(xcb_keycode_t keycode);
    void forgetReleasedKeys();

    X11Display &m_display;
    std::function<void(int)> m_handler;
    QMap<int, char> m_letters;  ///< by number
    QMap<char, QList<xcb_keycode_t>> m_keycodes;
    uint16_t m_modifiers = 0;     ///< Ctrl and Alt
    QList<uint16_t> m_locks;      ///< every combination of the lock keys
    QList<xcb_keycode_t> m_held;  ///< hot keys that are still down
    QTimer m_releaseWatch;        ///< runs while one is
};
