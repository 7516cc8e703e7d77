#pragma once

#include "helper/contentpick.h"
#include "helper/helperjob.h"
#include "helper/scrollcapture.h"

#include <functional>
#include <memory>

class AreaOutline;
class HintPlate;

/// Lets the user point at a window, and captures the window or its scrolling content.
class ContentCapture : public HelperJob
{
    Q_OBJECT
public:
    ContentCapture();
    ~ContentCapture() override;

    void keep() override;
    void giveUp() override;

protected:
    void start() override;
    void abort() override;

private:
    void takeContent(const ContentPick::Choice &choice);
    void takeScrolledByHand(const ContentPick::Choice &choice);
    void openPanel();
    void tellBeside(const QString &text);
    void waitForWindow(const WindowCatalogue::Entry &window);
    void waitForRest(int window);
    /// Runs a capture of the content until it ends.
    template<typename Capture>
    ScrollCapture::Result run(Capture &capture, const WindowCatalogue::Entry &window);
    void deliver(ScrollCapture::Result result);

    void followFront();
    void watchKeys(bool watch);
    void letKeysGo();

    bool m_aborted = false;
    bool m_isGivenUp = false;          // before there is anything to close
    ContentPick *m_overlay = nullptr;  // null unless it is open
    // Tell the running capture to end: with a picture, without one, or at once. Null while none
    // runs.
    std::function<void()> m_keep;
    std::function<void()> m_discard;
    std::function<void()> m_abandon;
    std::function<void()> m_tellAgain;
    std::unique_ptr<HintPlate> m_panel;      // null where it can't lie beside what scrolls
    std::unique_ptr<AreaOutline> m_outline;  // exists while the user scrolls
    uint m_process = 0;                      // process of the window that scrolls
    unsigned m_front = 0;      // the active window when the capture began; 0 while unknown
    QString m_inFront;         // name of the other window that has the keys; empty if none
    bool m_wantsKeys = false;  // no key has ended the capture yet
    bool m_watchesKeys = false;
};
