#pragma once

#include "helper/contentpick.h"
#include "helper/helperjob.h"
#include "helper/scrollcapture.h"

#include <functional>
#include <memory>

class AreaOutline;
class HintPlate;

/// Lets the user point at a window, and takes it, or all that scrolls in it.
class ContentCapture : public HelperJob
{
    Q_OBJECT
public:
    ContentCapture();
    ~ContentCapture() override;

protected:
    void start() override;
    void abort() override;

private:
    void takeContent(const ContentPick::Choice &choice);
    void takeScrolledByHand(const ContentPick::Choice &choice);
    void openPanel();
    /// Runs what takes the content.
    template<typename Capture>
    ScrollCapture::Result run(Capture &capture, const WindowServer::Entry &window);
    void deliver(ScrollCapture::Result result);

    void followFront();
    void watchKeys(bool watch);
    void letKeysGo();

    bool m_aborted = false;
    ContentPick *m_overlay = nullptr;  // while it is open
    // Tell what runs to end: with what there is, or without, or at once; null while nothing does.
    std::function<void()> m_keep;
    std::function<void()> m_discard;
    std::function<void()> m_abandon;
    std::function<void()> m_tellAgain;
    std::unique_ptr<HintPlate> m_panel;
    std::unique_ptr<AreaOutline> m_outline;  // while the user scrolls
    uint m_process = 0;                      // of the window that scrolls
    unsigned m_front = 0;      // the window in front when that began; 0 while it is not known
    QString m_inFront;         // the other window that has the keys; empty while none has
    bool m_wantsKeys = false;  // no key has ended it yet
    bool m_watchesKeys = false;
};
