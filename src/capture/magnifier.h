#pragma once

#include "capture/magnifierrequest.h"

#include <QPoint>
#include <QPointer>

class DigDetail;
class QWidget;

/// Carries out the overlays' requests for the magnifier. There is at most one magnifier.
class Magnifier
{
public:
    struct Settings {
        bool wanted = false;
        int multiple = 8;
    };

    /// `parent` is a CaptureOverlay; a new magnifier opens above it and is deleted with it at the
    /// latest. `pos` is a global position in device pixels. `type` is one of DigDetail's types.
    void request(QWidget *parent, EShowMagOpr opr, QPoint pos, int type, const Settings &settings);

private:
    void close();
    void changeMode();
    void update(QPoint pos, int multiple);

    QPointer<DigDetail> m_panel;  // owned by the overlay
    int m_screen = 1;             // the screen that had the pointer at the last update
};
