#pragma once

#include <QObject>

#include <functional>

/// The time by which waits are measured, in milliseconds, and the one way to wait. Whoever waits is
/// given a clock, so that a test's clock can let an hour pass at once.
class Clock
{
public:
    virtual ~Clock() = default;

    /// Milliseconds since a fixed moment, which stays the same while the program runs.
    virtual qint64 now() const = 0;

    /// Runs events for so long. Returns false, at once, if the program has been told to end.
    virtual bool pause(int milliseconds) = 0;

    /// Calls `run` once from the event loop, unless `context` is gone by then.
    virtual void after(int milliseconds, QObject *context, std::function<void()> run) = 0;
};

/// The system's clock.
class SystemClock : public Clock
{
public:
    qint64 now() const override;
    bool pause(int milliseconds) override;
    void after(int milliseconds, QObject *context, std::function<void()> run) override;
};

/// Measures how long something takes.
class Stopwatch
{
public:
    /// Starts measuring. `clock` must outlive this object.
    explicit Stopwatch(const Clock &clock) : m_clock(&clock), m_start(clock.now()) {}

    void restart() { m_start = m_clock->now(); }
    qint64 elapsed() const { return m_clock->now() - m_start; }

private:
    const Clock *m_clock;
    qint64 m_start;
};

/// Sleeps for the whole time without processing events.
void gwsleep(unsigned long milliseconds);

/// Waits, with events running, until `condition` holds; it is checked at once and then every 10 ms.
/// Returns false if it did not hold within `limit` milliseconds, or if the program has been told to
/// end.
bool waitUntil(Clock &clock, int limit, const std::function<bool()> &condition);
