#pragma once

#include "helper/helperjob.h"
#include "helper/sessionoverlay.h"

#include <memory>

class HintPlate;
class ScrollCapture;

/// Lets the user point at a window, and takes it, or all that scrolls in it.
class SessionCapture : public HelperJob
{
    Q_OBJECT
public:
    SessionCapture();
    ~SessionCapture() override;

    /// Takes what the last one had to say off the screen: another grab begins.
    static void dropNote();

protected:
    void start() override;
    void abort() override;

private:
    void leaveNote(const QString &note, int rows, QPoint at);
    void takeContent(const SessionOverlay::Choice &choice);

    void followFront();
    void watchKeys(bool watch);
    void letKeysGo();

    bool m_aborted = false;
    SessionOverlay *m_overlay = nullptr;  // while it is open
    ScrollCapture *m_scroll = nullptr;    // while it runs
    std::unique_ptr<HintPlate> m_panel;
    uint m_process = 0;        // of the window that scrolls
    unsigned m_front = 0;      // the window in front when that began; 0 while it is not known
    bool m_wantsKeys = false;  // no key has ended it yet
    bool m_watchesKeys = false;
};
