#pragma once

#include <QObject>

#include <functional>

/// Time as waits count it, in milliseconds, and the one way to let it pass. It is handed to whoever
/// waits, so that a test's clock lets an hour pass at once.
class Clock
{
public:
    virtual ~Clock() = default;

    /// Milliseconds since a moment that stays the same while the program runs.
    virtual qint64 now() const = 0;

    /// Lets events run for a while. False, and at once, when the program has been told to end.
    virtual bool pause(int milliseconds) = 0;

    /// Calls `run` once from the event loop, unless `context` is gone by then.
    virtual void after(int milliseconds, QObject *context, std::function<void()> run) = 0;
};

/// The computer's own.
class SystemClock : public Clock
{
public:
    qint64 now() const override;
    bool pause(int milliseconds) override;
    void after(int milliseconds, QObject *context, std::function<void()> run) override;
};

/// Tells how long something takes.
class Stopwatch
{
public:
    /// Starts. `clock` outlives this object.
    explicit Stopwatch(const Clock &clock) : m_clock(&clock), m_start(clock.now()) {}

    void restart() { m_start = m_clock->now(); }
    qint64 elapsed() const { return m_clock->now() - m_start; }

private:
    const Clock *m_clock;
    qint64 m_start;
};

/// Sleeps for the whole time; no events are processed.
void gwsleep(unsigned long milliseconds);

/// Waits, with events running, until `condition` holds; it is asked before the first pause and
/// after each, every 10 ms. False when it did not hold within `limit` milliseconds, or the program
/// has been told to end.
bool waitUntil(Clock &clock, int limit, const std::function<bool()> &condition);
