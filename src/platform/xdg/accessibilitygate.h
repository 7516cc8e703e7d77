#pragma once

#include <QDBusPendingCall>
#include <QDeadlineTimer>

/// Stands before the toolkit's bridge to the programs that read the screen aloud. The bridge waits
/// for their registry at the first widget, for as long as it takes: one that is stuck would keep
/// the program from its start for most of a minute. This asks it first, with a limit.
class AccessibilityGate
{
public:
    /// Asks whether the bridge is wanted. Needs a QGuiApplication; before the first widget.
    AccessibilityGate();

    /// Lets the bridge in, or keeps it out for this run where nobody has answered within a second
    /// since the gate was made. Before the first widget.
    void decide();

private:
    int remaining() const;
    bool isAnswered();

    QDeadlineTimer m_limit;
    QDBusPendingCall m_status;
    QDBusPendingCall m_address;
};
