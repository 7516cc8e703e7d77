#pragma once

#include "platform/ownwindows.h"
#include "platform/x11/x11display.h"

#include <QAbstractNativeEventFilter>

class X11OwnWindows : public OwnWindows, public QAbstractNativeEventFilter
{
public:
    /// `display` outlives this object.
    explicit X11OwnWindows(X11Display &display);

    bool isComposited() override;
    void setCompositingHandler(std::function<void()> changed) override;
    QList<PanePlace> panes() override;
    void coverArea(QWidget *window, const QRect &area) override;
    void moveWindow(QWidget *window, QPoint to) override;
    void keepOutOfTaskBar(QWidget *window) override;
    void setOnScreen(QWidget *window, bool onScreen) override;
    void dropShadow(QWidget *window) override;
    int numberOf(const QWidget *widget) override;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    xcb_window_t topLevelOf(xcb_window_t window);

    X11Display &m_display;
    std::function<void()> m_compositingHandler{};
    int m_selectionEvent = 0;  ///< the event's number; 0 if it has not been requested
};
