#include "platform/xdg/singleprogram.h"

#include "platform/services.h"

using namespace Qt::StringLiterals;

namespace {

// A first program that has only just been started may need it on a busy machine.
constexpr int s_patience = 3000;  // milliseconds

}  // namespace

SingleProgram::SingleProgram(const QString &folder, ApplicationBus::Handlers handlers)
    : m_lock(folder + u".lock"_s), m_bus(std::move(handlers))
{
}

// The other program may be on its way up, with no name on the bus yet, or on its way down: a start
// right after "Quit" is meant to leave a program.
SingleProgram::Claim SingleProgram::claim()
{
    Claim result = Claim::Unanswered;
    waitUntil(*services().clock, s_patience, [&] {
        const ProgramLock::State lock = m_lock.acquire();
        const bool isFirst = lock != ProgramLock::State::Taken &&
                             (m_bus.claim() != ApplicationBus::Claim::OwnedByAnother ||
                              lock == ProgramLock::State::Held);
        if (isFirst)
            result = Claim::First;
        else if (ApplicationBus::activateOwner())
            result = Claim::Activated;
        return result != Claim::Unanswered;
    });
    return result;
}
