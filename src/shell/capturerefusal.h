#pragma once

#include "platform/abilities.h"
#include "shell/grabflow.h"

/// What a grab needs of the desktop.
constexpr AbilitySet neededFor(GrabCommand command)
{
    switch (command) {
    case GrabCommand::Show:
        return {};
    case GrabCommand::Windows:
    case GrabCommand::Active:
        return Ability::Pictures | Ability::WindowList;
    case GrabCommand::Window:
        return Ability::Pictures | Ability::Watching;
    case GrabCommand::Menu:
        return Ability::Pictures | Ability::WindowList | Ability::CoveredWindows |
               Ability::OpenMenus;
    default:
        return Ability::Pictures;
    }
}

/// Why the desktop lets that grab not begin, in words for the user; empty where it does. To be
/// asked before each.
QString captureRefusal(GrabCommand command);
