#pragma once

#include "helper/dwellring.h"
#include "helper/helperjob.h"
#include "helper/menuwatch.h"

#include <memory>

/// Waits until the pointer rests on an open menu of any program, and takes the menu with its open
/// submenus as they hang there, on a transparent ground.
///
/// The program with the menu holds pointer and keyboard meanwhile, so nothing here counts on
/// events: it looks at the windows and the pointer.
class MenuCapture : public HelperJob
{
    Q_OBJECT
public:
    ~MenuCapture() override;

protected:
    void start() override;
    void abort() override;

private:
    void look();
    void lookSoon();
    void end();

    MenuWatch m_watch;
    bool m_isLooking = false;
    std::unique_ptr<DwellRing> m_ring;
};
