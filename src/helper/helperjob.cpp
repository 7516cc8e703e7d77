#include "helper/helperjob.h"

#include "platform/services.h"

#include <QEventLoop>
#include <QTimer>

#include <algorithm>

#include <unistd.h>

namespace {

constexpr int s_round = 10;  // ms
constexpr int s_hideRounds = 100;

}  // namespace

void HelperJob::run()
{
    if (m_isDismissed)
        return;
    m_isRunning = true;
    start();
    m_isRunning = false;
    if (m_isDismissed)
        deleteLater();
}

// An event loop that start() runs would carry out a deletion that was put off.
void HelperJob::dismiss()
{
    disconnect();
    m_isDismissed = true;
    abort();
    if (!m_isRunning)
        deleteLater();
}

uint ownProcess() { return static_cast<uint>(getpid()); }

void waitUntilHidden()
{
    for (int round = 0; round < s_hideRounds; ++round) {
        const auto windows = services().windows->windows(WindowServer::List::OnScreen, 0);
        const bool shown = std::any_of(windows.begin(), windows.end(), [](const auto &window) {
            return window.process == ownProcess() && window.kind == WindowServer::Kind::Other;
        });
        if (!shown || !pauseFor(s_round))
            return;
    }
}

// A loop of its own, and not one step of the running one: this returns at once when the program
// has been told to quit.
bool pauseFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    return loop.exec() == 0;
}
