#pragma once

#include <QList>
#include <Qt>

#include <functional>

/// Keys that this program hears while another one has the keyboard, for as long as it waits for
/// something there: the other program doesn't get them meanwhile. One that holds the keyboard for
/// itself, as an open menu does, gets them too.
class KeyWatch
{
public:
    virtual ~KeyWatch() = default;

    /// From now on `pressed` is called from the event loop, once a press. Escape and Return
    /// only; the keypad's Enter counts as Return. A watch that was on ends.
    virtual void start(const QList<Qt::Key> &keys, std::function<void(Qt::Key)> pressed) = 0;
    /// The same, but the other program gets the keys as well.
    virtual void listen(const QList<Qt::Key> &keys, std::function<void(Qt::Key)> pressed) = 0;
    virtual void stop() = 0;
};
