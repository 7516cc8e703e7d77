#pragma once

#include "platform/hands.h"
#include "platform/x11/x11display.h"

class X11Hands : public Hands
{
public:
    /// `display` outlives this object.
    explicit X11Hands(X11Display &display);

    QPoint pointer() override;
    void movePointer(QPoint to) override;
    bool isHandBusy() override;
    void turnWheel(QPoint at, int clicks, Wheel wheel) override;
    int openMenus() override;
    void pressEscape() override;

private:
    bool isKeyboardHeld();
    void fake(uint8_t type, uint8_t detail);

    X11Display &m_display;
    bool m_hasTest;
};
