#pragma once

#include <QList>
#include <Qt>

#include <functional>

/// Hears keys while another program has the keyboard focus and this program waits for something
/// there. The other program doesn't get these keys, unless it has grabbed the keyboard, as for an
/// open menu.
class KeyWatch
{
public:
    virtual ~KeyWatch() = default;

    /// Calls `pressed` from the event loop for each press of one of `keys`. Only Escape and Return
    /// are supported; the keypad's Enter counts as Return. Ends an earlier watch.
    virtual void start(const QList<Qt::Key> &keys, std::function<void(Qt::Key)> pressed) = 0;
    /// Like start(), but the other program gets the keys as well.
    virtual void listen(const QList<Qt::Key> &keys, std::function<void(Qt::Key)> pressed) = 0;
    virtual void stop() = 0;
};
