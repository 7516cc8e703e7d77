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

// The job is not deleted by deleteLater() while start() runs, because an event loop in start()
// would carry that out.
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
        const auto windows = services().windows->windows(WindowCatalogue::List::OnScreen, 0);
        return std::none_of(windows.begin(), windows.end(), [](const auto &window) {
            return window.process == ownProcess() && window.kind == WindowCatalogue::Kind::Other;
        });
    });
    // The frame of a window that was removed from the screen may remain for a moment, without
    // telling which process it belongs to.
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        if (qobject_cast<const QDialog *>(window))
            waitUntilGone(services().ownWindows->numberOf(window));
    }
}
