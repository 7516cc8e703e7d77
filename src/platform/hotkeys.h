#pragma once

#include <QString>

#include <functional>

/// System-wide hot keys of Ctrl+Alt and a letter, which work whatever program has the keyboard.
class HotKeys
{
public:
    virtual ~HotKeys() = default;

    /// Sets the function that gets the number of a pressed combination. It is called from the event
    /// loop, once for each press: a key that is held down does not repeat.
    virtual void setHandler(std::function<void(int)> handler) = 0;

    /// What a combination starts, for desktops that have a list of them.
    struct Name {
        QString id{};     ///< stays the same in all versions and languages; empty if nothing
                          ///< would start, so that no keys are needed
        QString title{};  ///< for the user
    };
    /// Sets the function that knows the names. Before the first add().
    virtual void setNames(const std::function<Name(int number)> & /*nameOf*/) {}

    /// Registers a combination. `letter` is a capital letter from A to Z. A combination that
    /// another program has registered never fires, without an error.
    virtual void add(int number, char letter) = 0;
    /// Does nothing for a number that has no combination.
    virtual void remove(int number) = 0;

    /// The keys that start it, as they are shown to the user, who may have changed them in the
    /// desktop's settings. Empty if another program has them.
    virtual QString keysOf(int number) const;

    /// Sets the function that is called, from the event loop, when keysOf(), canAsk() or
    /// Ability::HotKeys has changed.
    virtual void setChangeHandler(const std::function<void()> & /*changed*/) {}
    /// Whether the desktop can give keys, but has not done so, because the user didn't want it.
    virtual bool canAsk() const { return false; }
    /// Has the desktop ask the user once more.
    virtual void ask() {}
};

/// The letter of a number's combination; 0 for a number that has none.
char hotKeyLetter(int number);
/// Registers the eight combinations; `callback` is called with (number, 0) for each press.
/// Combinations that another program has registered are left out without an error.
void initHotKey(long (*callback)(long, long));
/// Unregisters all eight combinations.
void freeHotKey();
