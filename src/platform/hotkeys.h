#pragma once

#include <functional>

/// System-wide key combinations of Ctrl+Alt and a letter, whatever program has the keyboard.
class HotKeys
{
public:
    virtual ~HotKeys() = default;

    /// Called with the number of the combination that was pressed, from the event loop, once a
    /// press: a key held down repeats nothing.
    virtual void setHandler(std::function<void(int)> handler) = 0;

    /// Asks for a combination. One that another program holds never fires. `letter` is a capital of
    /// A to Z.
    virtual void add(int number, char letter) = 0;
    virtual void remove(int number) = 0;
};

/// Registers the eight combinations and has `callback` called with (number, 0) for each press. A
/// combination that another program holds is silently absent.
void initHotKey(long (*callback)(long, long));
/// Gives all eight combinations up.
void freeHotKey();
