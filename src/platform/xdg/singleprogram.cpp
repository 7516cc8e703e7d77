#include "platform/xdg/singleprogram.h"

#include "config/texthelpers.h"

#include <QDeadlineTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_patience = 1500;       // milliseconds
constexpr unsigned long s_pause = 20;  // milliseconds

}  // namespace

SingleProgram::SingleProgram(const QString &folder, ApplicationBus::Handlers handlers)
    : m_lock(folder + u".lock"_s), m_bus(std::move(handlers))
{
}

// The other program may be on its way up, with no name on the bus yet, or on its way down: a start
// right after "Quit" is meant to leave a program.
bool SingleProgram::claim()
{
    const QDeadlineTimer deadline(s_patience);
    for (;;) {
        switch (m_lock.acquire()) {
        case ProgramLock::State::Held:
            m_bus.claim();
            return true;
        case ProgramLock::State::Impossible:
            if (m_bus.claim() != ApplicationBus::Claim::OwnedByAnother)
                return true;
            ApplicationBus::activateOwner();
            return false;
        case ProgramLock::State::Taken:
            if (ApplicationBus::activateOwner() || deadline.hasExpired())
                return false;
        }
        gwsleep(s_pause);
    }
}
