#pragma once

#include <QObject>

#include <functional>

/// The signals that ask a process to end: of a session that closes, a terminal, a `kill`.
class EndSignals : public QObject
{
    Q_OBJECT

public:
    /// `handler` runs from the event loop at the first signal. A second one ends the process at
    /// once. One at a time in a process.
    explicit EndSignals(std::function<void()> handler);
    ~EndSignals() override;

private:
    std::function<void()> m_handler;
};
