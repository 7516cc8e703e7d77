#pragma once

#include "capture/magnifierrequest.h"

#include <QPoint>
#include <QPointer>

class DigDetail;
class QWidget;

/// Carries out what the overlays ask of the magnifier. There is one at the most.
class Magnifier
{
public:
    struct Settings {
        bool wanted = false;
        int multiple = 8;
    };

    /// `parent` is the overlay, above which a new magnifier opens and with which it goes at the
    /// latest; `pos` is global, in device pixels; `type` is DigDetail's.
    void request(QWidget *parent, EShowMagOpr opr, QPoint pos, int type, const Settings &settings);

private:
    void close();
    void changeMode();
    void update(QPoint pos, int multiple);

    QPointer<DigDetail> m_panel;  // owned by the overlay
    int m_screen = 1;             // the one that the pointer was on when it was last placed
};
