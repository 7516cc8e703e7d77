#include "platform/applicationwatch.h"

#include "platform/services.h"

#include <memory>

#include <unistd.h>

namespace {

bool g_bActived = true;
unsigned g_PrePSN = 0;
long (*g_activecallback)(bool) = nullptr;

void setActive(bool active)
{
    g_bActived = active;
    if (g_activecallback)
        g_activecallback(active);
}

class TSWatchUserWorkspace
{
public:
    void start()
    {
        services().watch->start(
            {.activated = [this](long pid) { spaceDidActivateApplication(pid); },
             .deactivated = [this](long pid) { spaceDidDeactivateApplication(pid); }});
    }
    void stop() { services().watch->stop(); }

private:
    void spaceDidActivateApplication(long pid)
    {
        if (pid == getpid())
            setActive(true);
        else
            g_PrePSN = services().watch->frontWindow();
    }
    void spaceDidDeactivateApplication(long pid)
    {
        if (pid == getpid())
            setActive(false);
    }
};

std::unique_ptr<TSWatchUserWorkspace> g_watch;

}  // namespace

void StartWatchAppActive()
{
    g_watch = std::make_unique<TSWatchUserWorkspace>();
    g_watch->start();
}

void StopWatchAppActive()
{
    if (g_watch)
        g_watch->stop();
    g_watch.reset();
}

bool IsAppActive() { return g_bActived; }

void SetAppActiveChangeCallback(long (*callback)(bool)) { g_activecallback = callback; }

void SetPreAppActive() { services().watch->activate(g_PrePSN); }

void SetWindowNoShadown(QWidget *widget) { services().ownWindows->dropShadow(widget); }

int GetWindowId(QWidget *widget) { return services().ownWindows->numberOf(widget); }
