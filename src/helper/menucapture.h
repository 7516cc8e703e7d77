#pragma once

#include "helper/dwellring.h"
#include "helper/helperjob.h"
#include "helper/hintplate.h"
#include "helper/menuwatch.h"

#include <memory>

/// Waits until the pointer rests on an open menu of any program, and captures the menu with its
/// open submenus at their positions, on a transparent background.
///
/// The program with the menu has grabbed pointer and keyboard, so no events arrive; the windows and
/// the pointer are polled instead.
class MenuCapture : public HelperJob
{
    Q_OBJECT
public:
    ~MenuCapture() override;

    void giveUp() override;

protected:
    void start() override;
    void abort() override;

private:
    void look();
    void lookSoon();
    void end();

    MenuWatch m_watch;
    bool m_isLooking = false;
    void placeHint(QPoint pointer);

    std::unique_ptr<DwellRing> m_ring;
    std::unique_ptr<HintPlate> m_hint;  // while it waits
};
