#include "platform/xdg/endsignals.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array s_signals{SIGTERM, SIGHUP, SIGINT};

// A signal handler is allowed very few calls, so it only wakes the event loop.
std::array<int, 2> s_pipe{-1, -1};

void handle(int /*signal*/)
{
    const char byte = 0;
    // A full pipe is fine, because the event loop will wake up anyway.
    [[maybe_unused]] const ssize_t written = write(s_pipe[1], &byte, 1);
}

// A signal that was ignored stays ignored, as `nohup` requires.
void install(int signal)
{
    struct sigaction now {
    };
    if (sigaction(signal, nullptr, &now) != 0 || now.sa_handler == SIG_IGN)
        return;
    struct sigaction action {
    };
    action.sa_handler = handle;
    // The next signal has its default effect, so that a program that hangs while ending can be
    // killed.
    action.sa_flags = SA_RESTART | SA_RESETHAND;
    sigaction(signal, &action, nullptr);
}

}  // namespace

EndSignals::EndSignals(std::function<void()> handler) : m_handler(std::move(handler))
{
    if (pipe2(s_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    auto *notifier = new QSocketNotifier(s_pipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        m_handler();
    });
    for (const int signal : s_signals)
        install(signal);
}

// The pipe stays open, because a signal may still be on its way.
EndSignals::~EndSignals()
{
    for (const int signal : s_signals) {
        struct sigaction now {
        };
        if (sigaction(signal, nullptr, &now) == 0 && now.sa_handler == handle)
            std::signal(signal, SIG_DFL);
    }
}
