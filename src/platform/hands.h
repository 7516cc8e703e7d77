#pragma once

#include <QPoint>

/// What the user's hands do to the pointer, and what this program does in their place. All
/// coordinates are global device pixels.
class Hands
{
public:
    virtual ~Hands() = default;

    /// The pointer's position.
    virtual QPoint pointer() = 0;
    /// Whether that is known while it is over other programs. Else it is where it was last seen.
    virtual bool isPointerKnown() const { return true; }
    /// Does nothing where the desktop lets no program do that.
    virtual void movePointer(QPoint to) = 0;

    /// Whether the user holds a mouse button or a modifier key such as Ctrl.
    virtual bool isHandBusy() = 0;
    enum class Wheel {
        Down,           ///< the vertical wheel; positive clicks scroll down
        Right,          ///< the horizontal wheel; positive clicks scroll to the right
        DownWithShift,  ///< the vertical wheel with Shift, which many programs treat as horizontal
    };
    /// Moves the pointer to `at` and turns the mouse wheel there as the user would. The pointer
    /// must stay until the other program has answered: some window managers delay the wheel events
    /// and deliver them to the pointer's position at that time. Does nothing
    /// where Ability::OtherWheels is lacking.
    virtual void turnWheel(QPoint at, int clicks, Wheel wheel) = 0;

    /// How many menus are open that keep the keyboard from all other programs. A program that
    /// keeps it for something else, as a screen locker does, has none. 0 where that can't be told.
    virtual int openMenus() { return 0; }
    /// Presses Escape as the user would who holds no other key: modifiers that are down count as
    /// released from then on. Only for desktops that tell of open menus.
    virtual void pressEscape() {}
};
