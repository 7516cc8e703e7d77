#pragma once

#include "platform/xdg/applicationbus.h"
#include "platform/xdg/programlock.h"

/// Makes sure that the user has only one process of this program, or brings the running one to the
/// front.
///
/// The lock decides, because the system grants it to one process at a time, with or without a bus.
/// The bus name decides only if no file can be locked.
class SingleProgram
{
public:
    enum class Claim {
        First,
        Activated,   ///< another process runs and has been asked to come to the front
        Unanswered,  ///< another process runs and does not answer
    };

    /// `folder` is the user's data folder, with a trailing separator.
    SingleProgram(const QString &folder, ApplicationBus::Handlers handlers);

    /// Another process is given `paths` of files to open. Waits for some seconds at most. Needs the
    /// clock of the installed services.
    Claim claim(const QStringList &paths);

    ApplicationBus &bus() { return m_bus; }

private:
    ProgramLock m_lock;
    ApplicationBus m_bus;
};
