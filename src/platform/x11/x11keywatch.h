#pragma once

#include "platform/keywatch.h"
#include "platform/x11/x11display.h"

#include <QAbstractNativeEventFilter>
#include <QHash>
#include <QObject>
#include <QTimer>

class X11KeyWatch : public QObject, public KeyWatch, public QAbstractNativeEventFilter
{
public:
    /// `display` outlives this object.
    explicit X11KeyWatch(X11Display &display);
    ~X11KeyWatch() override;

    void start(const QList<Qt::Key> &keys, std::function<void(Qt::Key)> pressed) override;
    void listen(const QList<Qt::Key> &keys, std::function<void(Qt::Key)> pressed) override;
    void stop() override;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    void readCodes(const QList<Qt::Key> &keys);
    void press(xcb_keycode_t code);
    void tell(xcb_keycode_t code);
    void look();

    X11Display &m_display;
    QHash<xcb_keycode_t, Qt::Key> m_keys;
    QList<uint16_t> m_locks;  ///< all combinations of the lock keys
    QList<xcb_keycode_t> m_held;
    std::function<void(Qt::Key)> m_pressed;
    QTimer m_look;  ///< runs while the keys are withheld from other programs
    uint8_t m_inputOpcode = 0;
    bool m_isListening = false;
};
