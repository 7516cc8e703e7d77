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
    /// `folder` is the user's data folder, with a trailing separator.
    SingleProgram(const QString &folder, ApplicationBus::Handlers handlers);

    /// False when another program runs, which has then been asked to come to the front.
    bool claim();

    ApplicationBus &bus() { return m_bus; }

private:
    ProgramLock m_lock;
    ApplicationBus m_bus;
};
