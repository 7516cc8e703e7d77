#pragma once

#include <QObject>

#include <functional>

/// Handles the signals that ask a process to end: from a closing session, a terminal, or `kill`.
class EndSignals : public QObject
{
    Q_OBJECT

public:
    /// `handler` is called from the event loop at the first signal. A second signal ends the
    /// process at once. There may be only one such object in a process.
    explicit EndSignals(std::function<void()> handler);
    ~EndSignals() override;

private:
    std::function<void()> m_handler;
};
