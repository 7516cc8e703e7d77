#pragma once

#include <QFlags>
#include <QList>
#include <QString>

#include <utility>

/// What a desktop may let this program do, or not.
enum class Ability {
    Pictures = 1 << 0,        ///< what the screens show can be read
    WindowList = 1 << 1,      ///< the windows of other programs are known
    CoveredWindows = 1 << 2,  ///< a window can be read whatever covers it
    OpenMenus = 1 << 3,       ///< open menus of other programs are in the window list
    OtherWheels = 1 << 4,     ///< the wheel can be turned in other programs
    HotKeys = 1 << 5,         ///< keys that are pressed in other programs are heard
    Watching = 1 << 6,        ///< what the screens show can be read again and again as it moves
    PointerShape = 1 << 7,    ///< the pointer can be in pictures
    Pins = 1 << 8,            ///< a window can stay above all others, where it was put
};
Q_DECLARE_FLAGS(AbilitySet, Ability)
Q_DECLARE_OPERATORS_FOR_FLAGS(AbilitySet)

/// All of them have to do with other programs.
inline constexpr AbilitySet everyAbility =
    Ability::Pictures | Ability::WindowList | Ability::CoveredWindows | Ability::OpenMenus |
    Ability::OtherWheels | Ability::HotKeys | Ability::Watching | Ability::PointerShape |
    Ability::Pins;

/// What the desktop lets this program do: everything but what has been withheld. Commands ask
/// before they need it.
class Abilities
{
public:
    /// `reason` is for the user, in their language.
    void withhold(AbilitySet which, const QString &reason);
    /// The desktop lets it do that after all.
    void grant(AbilitySet which);

    /// Why not all of `needed` is there, as it was told last; empty where all is.
    QString lackOf(AbilitySet needed) const;

private:
    QList<std::pair<AbilitySet, QString>> m_withheld{};  // the latest first
};
