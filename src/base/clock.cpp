#include "base/clock.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

namespace {

constexpr int s_round = 10;  // ms

}  // namespace

qint64 SystemClock::now() const { return QDeadlineTimer::current().deadline(); }

// Uses an event loop of its own instead of processing pending events, since a loop ends at once
// when the program quits.
bool SystemClock::pause(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    return loop.exec() == 0;
}

void SystemClock::after(int milliseconds, QObject *context, std::function<void()> run)
{
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, context, std::move(run));
}

void gwsleep(unsigned long milliseconds) { QThread::msleep(milliseconds); }

bool waitUntil(Clock &clock, int limit, const std::function<bool()> &condition)
{
    const qint64 end = clock.now() + limit;
    while (!condition()) {
        if (clock.now() >= end || !clock.pause(s_round))
            return false;
    }
    return true;
}
