#pragma once

#include "platform/screens.h"
#include "platform/x11/x11display.h"

class X11Screens : public Screens
{
public:
    /// `display` outlives this object.
    explicit X11Screens(X11Display &display);

    QList<Screen> all() override;

private:
    X11Display &m_display;
    bool m_hasRandr;
};
