#pragma once

#include <QImage>
#include <QList>

class Clock;
class QWidget;

/// Tells when windows of this program that close have left the screen, so that no picture has
/// pixels of theirs: a compositor goes on showing them for some frames, or lets them fade. That is
/// seen from the pixels, which have changed then, and have come to rest. Where no compositor is, or
/// pictures can't be taken at any time, half a second has to do.
class Departure
{
public:
    /// `clock` outlives this object.
    explicit Departure(Clock &clock) : m_clock(clock) {}

    /// Begins while the windows, which are visible ones, are still there; without windows, with
    /// some that have just closed.
    void begin(const QList<const QWidget *> &windows);
    bool isUnderWay() const;
    /// Whether it is over. A call may take a look at the desktop, but not many do in a short time.
    bool isOver();
    /// Waits until it is over, with events running, half a second at the most. One that is not
    /// under way begins without windows.
    void wait();

private:
    bool haveGone();
    static QList<QImage> seen();
    void look(qint64 now);

    Clock &m_clock;
    bool m_hasBegun = false;
    bool m_canLook = false;
    QList<int> m_windows{};   // that have not gone yet, by their numbers in the list
    int m_restfulTime = 0;    // how long it has to be the same, in milliseconds
    bool m_wasSeen = false;   // what they looked like is known
    QList<QImage> m_first{};  // what was seen with them, until it has changed
    QList<QImage> m_last{};   // what was seen last
    qint64 m_begin = 0;
    qint64 m_looked = 0;   // when that was
    qint64 m_restful = 0;  // since when it has been the same
};
