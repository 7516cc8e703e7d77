#pragma once

#include "base/clock.h"

#include <QImage>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QString>

#include <memory>
#include <optional>

class ChangeWatch;

/// A window of another program whose content is scrolled: seen by its own pictures, and turned by
/// the wheel as a user would. Knows when it can't be reached, when it is at rest, and when there is
/// no going on.
class ScrolledWindow : public QObject
{
    Q_OBJECT
public:
    enum class Stop {
        None,
        Keep,
        Discard,
        Abandon  ///< at once, and everything is left as it is
    };
    enum class Turn {
        Moved,   ///< the view has changed, and is at rest
        Nothing  ///< nothing moved, or the window is not what it was
    };
    /// Which way the wheel scrolls. Across, content() is turned over its diagonal, so that whoever
    /// looks at it sees it scroll up and down.
    enum class Axis { Down, Across };

    /// `number` is the window's in the list; `anchor` where the wheel is turned over it, global.
    ScrolledWindow(int number, QPoint anchor);
    ~ScrolledWindow() override;

    /// Whether it goes on: nobody has stopped it, and nothing has ended it.
    bool runs() const { return m_stop == Stop::None && !m_ended; }
    Stop stop() const { return m_stop; }
    void setStop(Stop stop);
    void endWith(const QString &note);
    /// Keeps a note without ending anything; the first one counts.
    void noteThat(const QString &note);
    /// Why there may be less than all; empty if there is nothing to say.
    QString note() const { return m_note; }

    /// Looks at the window as it is now. What lies over it, a notice or a panel of this program, is
    /// not seen. False where there is nothing to see any more: then it has ended, and view() is
    /// what it was.
    bool look();
    /// What was seen last. In this picture's coordinates are all rectangles here.
    const QImage &view() const { return m_view; }
    /// What of it counts.
    QImage content() const { return contentOf(m_view); }
    QImage contentOf(const QImage &view) const;

    /// Where the view shows a place of the screen.
    QRect fromGlobal(const QRect &area) const { return area.translated(-m_bounds.topLeft()); }
    /// The view without the frame that a window manager has drawn around it.
    QRect inside() const;
    const QRect &crop() const { return m_crop; }
    void setCrop(const QRect &crop) { m_crop = crop; }
    void setAnchor(QPoint anchor) { m_anchor = anchor; }
    Axis axis() const { return m_axis; }
    void setAxis(Axis axis) { m_axis = axis; }
    /// Whether Shift is what makes the wheel scroll across.
    void setShifted(bool shifted) { m_shifted = shifted; }

    /// Turns the wheel, down or to the right for more than 0 and not at all for 0, and waits until
    /// the view has moved and come to rest. `patience` is for the first sign of that, ms.
    Turn turn(int clicks, int patience);
    /// A patience for programs that have answered before: no longer than `most`.
    int patience(int least, int most) const;
    /// Whether a turn of the wheel would reach the window, and no other.
    bool isReachable();
    /// Waits for what has come in front of it to go. False when the capture ends here.
    bool waitUntilReachable();
    /// The same for the way back, also for a window that was minimised, or has another size now,
    /// which is taken for its own from here on. False when it does not come.
    bool waitForReturn();
    /// There is no such window any more.
    bool isGone() const;
    /// By how much the wheel was turned since the view has moved last: a program that hangs does
    /// that when it comes to itself.
    int unanswered() const { return m_unanswered; }

    /// How long the view has to stay as it is to be at rest, ms. It is never taken to be at rest
    /// sooner than it was seen to pause.
    int rest() const { return m_rest; }
    void setRest(int milliseconds) { m_rest = milliseconds; }
    /// Something came into the view when it seemed to be at rest.
    bool sawLate() const { return m_sawLate; }

    /// Whether two contents differ only where the wheel was turned, or where the pointer is: a row
    /// lit up there, or went out.
    bool isUnderPointer(const QImage &before, const QImage &after) const;

    /// Takes the pointer off the content, where rows would light up under it, and puts it back
    /// unless it has been moved since.
    void parkPointer(const QRect &content);
    void unparkPointer();

signals:
    /// What the user is to know, or to do, now.
    void told(const QString &text);

private:
    enum class Reach { Free, Gone, Covered };

    bool pause();
    std::optional<QRect> boundsNow() const;
    Reach reach();
    bool waitForFreeHand();
    bool turnWheel(int clicks);
    void returnPointer();
    void waitUnheard();
    bool beginTurn(int clicks);
    Turn turnAndWait(int clicks, int patience);
    int restFor(qint64 longestGap) const;

    Clock &m_clock;
    const int m_number;
    QRect m_bounds;  // global
    QMargins m_frame;
    QPoint m_anchor;  // in the window's picture
    QRect m_crop;
    QImage m_view;
    Axis m_axis = Axis::Down;
    bool m_shifted = false;
    std::unique_ptr<ChangeWatch> m_changes;  // null where nobody tells of changes
    int m_rest;
    qint64 m_slowestAnswer = -1;  // ms; -1 while there was none
    int m_unanswered = 0;         // clicks
    qint64 m_longestRound = 0;    // ms, of looking and waiting, in the last turn
    bool m_sawLate = false;
    QString m_coveredBy;
    QPoint m_turnedAt;    // global; where the wheel was turned last
    QPoint m_pointerWas;  // before that
    bool m_isPointerAway = false;
    int m_darkTurns = 0;  // in a row, after which nothing lit up under the pointer
    QPoint m_pointerBefore;
    QPoint m_parkedAt;
    bool m_isParked = false;
    Stop m_stop = Stop::None;
    bool m_ended = false;
    QString m_note;
};
