#pragma once

#include "platform/xdg/applicationbus.h"
#include "platform/xdg/programlock.h"

/// Makes this process the user's only one of the program, or brings the one that runs to the front.
///
/// The lock decides, since the system grants it to one process at any moment, with or without a
/// bus; the name on the bus decides only where nothing can be locked.
class SingleProgram
{
public:
    enum class Claim {
        First,
        Activated,   ///< another program runs, and has been asked to come to the front
        Unanswered,  ///< another program runs, and does not answer
    };

    /// `folder` is the user's data folder, with a trailing separator.
    SingleProgram(const QString &folder, ApplicationBus::Handlers handlers);

    /// Waits some seconds at the most. Needs the clock of the services.
    Claim claim();

    ApplicationBus &bus() { return m_bus; }

private:
    ProgramLock m_lock;
    ApplicationBus m_bus;
};
