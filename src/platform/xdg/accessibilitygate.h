#pragma once

#include <QDBusPendingCall>
#include <QDeadlineTimer>

/// Decides whether the toolkit's accessibility bridge may start. With the first widget the bridge
/// asks the accessibility registry and waits without a limit, so a registry that hangs would delay
/// the start by most of a minute. This class asks first, with a limit.
class AccessibilityGate
{
public:
    /// Sends the questions. Needs a QGuiApplication; must be created before the first widget.
    AccessibilityGate();

    /// Lets the bridge start. Keeps it out of this run if nobody has answered within a second of
    /// the constructor. Must be called before the first widget is created.
    void decide();

private:
    int remaining() const;
    bool isAnswered();

    QDeadlineTimer m_limit;
    QDBusPendingCall m_status;
    QDBusPendingCall m_address;
};
