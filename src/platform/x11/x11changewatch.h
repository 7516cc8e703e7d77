#pragma once

#include "platform/pictures.h"
#include "platform/x11/x11display.h"

#include <QAbstractNativeEventFilter>
#include <QHash>

/// Hears from the server which of the watched windows have drawn.
class X11ChangeWatches : public QAbstractNativeEventFilter
{
public:
    /// `display` outlives this object.
    explicit X11ChangeWatches(X11Display &display);

    /// A watch of a window, which this object outlives. Null if the server can't report damage or
    /// the window is gone.
    std::unique_ptr<ChangeWatch> watch(xcb_window_t window);

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    class DamageWatch;

    X11Display &m_display;
    uint8_t m_damageEvent = 0;  ///< the event's number; 0 if the server can't report damage
    /// Whether damage was reported, by the id of the damage object.
    QHash<uint32_t, bool> m_changed{};
};
