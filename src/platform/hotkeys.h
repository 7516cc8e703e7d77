#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>

#include <functional>

/// System-wide hot keys, which work whatever program has the keyboard. Each has a number, by which
/// the program knows what it starts.
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

    /// Registers a combination, in place of the one that the number may have. One that another
    /// program has registered never fires, without an error. A desktop that remembers keys goes on
    /// with those that it has.
    virtual void add(int number, QKeyCombination keys) = 0;
    /// The same for keys that the user has just chosen, whatever the desktop remembers.
    virtual void change(int number, QKeyCombination keys) { add(number, keys); }
    /// Does nothing for a number that has no combination.
    virtual void remove(int number) = 0;

    /// The keys that start it, as they are shown to the user, who may have changed them in the
    /// desktop's settings. Empty if it has none, or if another program has them.
    virtual QString keysOf(int number) const;

    /// Whether they are heard while an open menu of another program holds the keyboard as well,
    /// from which nothing else hears them. Does nothing on desktops that see to their keys
    /// themselves.
    virtual void hearInMenus(bool /*hears*/) {}

    enum class State {
        None,     ///< no keys are wanted
        Active,   ///< they start it
        Taken,    ///< another program has them
        Changed,  ///< others start it, which keysOf() knows
    };
    /// What has become of the keys that are wanted.
    State stateOf(int number) const;

    /// Sets the function that is called, from the event loop, when keysOf(), canAsk() or
    /// Ability::HotKeys has changed.
    virtual void setChangeHandler(const std::function<void()> & /*changed*/) {}
    /// Whether the desktop can give keys, but has not done so, because the user didn't want it.
    virtual bool canAsk() const { return false; }
    /// Has the desktop ask the user once more.
    virtual void ask() {}
};

/// The letter of a number's combination, which is pressed with Ctrl and Alt; 0 for a number that
/// has none.
char hotKeyLetter(int number);
/// Registers the combinations that the settings have; `callback` is called with (number, 0) for
/// each press. Combinations that another program has registered are left out without an error.
void initHotKey(long (*callback)(long, long));
/// Unregisters all of them.
void freeHotKey();

/// The numbers that can have keys, in order.
QList<int> hotKeyNumbers();
/// What a number has without a setting; empty for what is off until the user switches it on.
QKeySequence defaultHotKey(int number);
/// The keys with which that is switched on; empty for all others.
QKeySequence offeredHotKey(int number);
/// The keys that a number is to have, by the settings; empty for none.
QKeySequence hotKeyOf(int number);
/// Stores other keys for a number, of which only the first combination counts, and registers them
/// at once; empty for none.
void setHotKey(int number, const QKeySequence &keys);
/// Whether the user has other keys than those that it has by itself.
bool isHotKeyChanged(int number);
/// Lets `hears` have the presses of all hot keys, in place of what they start; empty ends that.
void catchHotKeys(std::function<void(int number)> hears);
