#include "helper/helperjob.h"

#include "platform/desktoppictures.h"
#include "platform/services.h"

#include <QApplication>
#include <QDialog>

#include <algorithm>

#include <unistd.h>

namespace {

constexpr int s_hideLimit = 1000;  // ms

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
    waitUntil(*services().clock, s_hideLimit, [] {
        const auto windows = services().windows->windows(WindowServer::List::OnScreen, 0);
        return std::none_of(windows.begin(), windows.end(), [](const auto &window) {
            return window.process == ownProcess() && window.kind == WindowServer::Kind::Other;
        });
    });
    // Of a window that has been taken off the screen the frame may be left for a moment, and says
    // nothing of whose it is.
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        if (qobject_cast<const QDialog *>(window))
            waitUntilGone(services().windows->numberOf(window));
    }
}
