#include "platform/xdg/singleprogram.h"

#include "platform/services.h"

using namespace Qt::StringLiterals;

namespace {

// On a busy machine a process that was just started may need this long to answer.
constexpr int s_patience = 3000;  // milliseconds

}  // namespace

SingleProgram::SingleProgram(const QString &folder, ApplicationBus::Handlers handlers)
    : m_lock(folder + u".lock"_s), m_bus(std::move(handlers))
{
}

// The other process may be starting and have no bus name yet, or be ending: a start right after
// "Quit" must leave a running program.
SingleProgram::Claim SingleProgram::claim(const QStringList &paths)
{
    Claim result = Claim::Unanswered;
    waitUntil(*services().clock, s_patience, [&] {
        const ProgramLock::State lock = m_lock.acquire();
        const bool isFirst = lock != ProgramLock::State::Taken &&
                             (m_bus.claim() != ApplicationBus::Claim::OwnedByAnother ||
                              lock == ProgramLock::State::Held);
        if (isFirst)
            result = Claim::First;
        else if (ApplicationBus::activateOwner(paths))
            result = Claim::Activated;
        return result != Claim::Unanswered;
    });
    return result;
}
