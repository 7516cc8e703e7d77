#pragma once

#include "platform/applicationwatch.h"
#include "platform/x11/x11display.h"

#include <QAbstractNativeEventFilter>

class X11ApplicationWatch : public ApplicationWatch, public QAbstractNativeEventFilter
{
public:
    /// `display` outlives this object.
    explicit X11ApplicationWatch(X11Display &display);

    void start(Handlers handlers) override;
    void stop() override;
    unsigned frontWindow() override { return m_front; }
    uint frontProcess() override { return m_pid > 0 ? static_cast<uint>(m_pid) : 0; }
    void activate(unsigned window) override;
    void bringToFront(QWidget *window) override;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    void update();
    void report(xcb_window_t front);
    xcb_window_t focusWindow();
    bool isInView(xcb_window_t window);
    QList<uint32_t> currentDesktop();  ///< empty if the window manager has no desktops
    bool isOnDesktop(xcb_window_t window, const QList<uint32_t> &desktop);
    void waitUntilManaged(xcb_window_t window);
    void focus(xcb_window_t window);
    long processOf(xcb_window_t window);

    X11Display &m_display;
    Handlers m_handlers;
    xcb_window_t m_front = XCB_NONE;  ///< the active window
    xcb_window_t m_waitedFor = XCB_NONE;
    long m_pid = 0;  ///< its process; 0 for none
};
