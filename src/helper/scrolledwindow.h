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

/// A window of another program whose content is scrolled. It is observed by pictures of it, and
/// scrolled by turning the wheel as a user would. This class knows whether the window can be
/// reached, whether its view is at rest, and whether the capture must end.
class ScrolledWindow : public QObject
{
    Q_OBJECT
public:
    enum class Stop {
        None,
        Keep,
        Discard,
        Abandon  ///< ends at once and leaves everything as it is
    };
    enum class Turn {
        Moved,   ///< the view has changed and is at rest
        Nothing  ///< nothing moved, or the window can't be used any more
    };
    /// The direction of scrolling. For Across, content() is transposed, so that horizontal
    /// movements look like vertical ones.
    enum class Axis { Down, Across };

    /// `number` is the window's number in the list. The wheel is turned at `anchor`, which is
    /// global.
    ScrolledWindow(int number, QPoint anchor);
    ~ScrolledWindow() override;

    /// Whether the capture continues: it was not stopped and has not ended.
    bool runs() const { return m_stop == Stop::None && !m_ended; }
    Stop stop() const { return m_stop; }
    /// Stops the capture. Only Abandon replaces an earlier stop.
    void setStop(Stop stop);
    /// Ends the capture with a note for the user.
    void endWith(const QString &note);
    /// Adds a note without ending the capture; only the first note is kept.
    void noteThat(const QString &note);
    /// Why the picture may be incomplete; empty if there is nothing to tell.
    QString note() const { return m_note; }

    /// Takes a picture of the window. It does not contain windows in front of it, such as this
    /// program's notices and panels. Returns false if the window is gone or has changed its size;
    /// the capture has ended then, and view() is unchanged.
    bool look();
    /// The last picture of the window. All rectangles of this class are in its coordinates.
    const QImage &view() const { return m_view; }
    /// The part of the picture within crop(), transposed for Across.
    QImage content() const { return contentOf(m_view); }
    QImage contentOf(const QImage &view) const;

    /// Converts a global rectangle to the picture's coordinates.
    QRect fromGlobal(const QRect &area) const;
    /// The picture's rectangle without the window manager's frame.
    QRect inside() const;
    /// The part of the picture that is the content; all of it at first.
    const QRect &crop() const { return m_crop; }
    void setCrop(const QRect &crop) { m_crop = crop; }
    /// Unlike the constructor's, this anchor is in the picture's coordinates.
    void setAnchor(QPoint anchor) { m_anchor = anchor; }
    Axis axis() const { return m_axis; }
    void setAxis(Axis axis) { m_axis = axis; }
    /// Whether horizontal scrolling uses the vertical wheel with Shift.
    void setShifted(bool shifted) { m_shifted = shifted; }

    /// Turns the wheel by `clicks`, down or to the right if positive; 0 only waits. Waits until the
    /// view has moved and is at rest. `patience` limits the wait for the first sign of movement, in
    /// milliseconds.
    Turn turn(int clicks, int patience);
    /// A patience in milliseconds, from `least` to `most`, that suits the answers of the program so
    /// far.
    int patience(int least, int most) const;
    /// Whether a turn of the wheel would reach this window and no other.
    bool isReachable();
    /// Waits until nothing is in front of the window's anchor. Returns false if the capture must
    /// end.
    bool waitUntilReachable();
    /// The same for putting the content back. It also waits for a minimised window, and accepts
    /// another size of the window from now on. Returns false if the window does not return.
    bool waitForReturn();
    /// Whether the window does not exist any more.
    bool isGone() const;
    /// The sum of clicks since the view has last moved: a program that hangs will scroll by them
    /// later.
    int unanswered() const { return m_unanswered; }

    /// How long the view must stay unchanged to be at rest, in milliseconds. The actual time may be
    /// shorter if the window's drawing is watched.
    int rest() const { return m_rest; }
    void setRest(int milliseconds) { m_rest = milliseconds; }
    /// Whether something changed in the view after it had seemed to be at rest.
    bool sawLate() const { return m_sawLate; }

    /// Whether two contents differ only near the pointer or near the anchor, where a row may be
    /// highlighted.
    bool isUnderPointer(const QImage &before, const QImage &after) const;

    /// Moves the pointer off the content, where it would highlight rows. unparkPointer() moves it
    /// back unless it has been moved since.
    void parkPointer(const QRect &content);
    void unparkPointer();

signals:
    /// A text for the user: what is happening or what to do.
    void told(const QString &text);

private:
    enum class Reach { Free, Gone, Covered };

    QPoint fromGlobal(QPoint point) const;
    QPoint toGlobal(QPoint inPicture) const;
    bool pause();
    std::optional<QRect> boundsNow() const;
    Reach reach();
    bool waitForFreeHand();
    void turnWheel(int clicks);
    void returnPointer();
    void waitUnheard();
    bool beginTurn(int clicks);
    Turn turnAndWait(int clicks, int patience);
    int restFor(qint64 longestGap) const;

    Clock &m_clock;
    const int m_number;
    QRect m_bounds;  // global
    QSize m_size;    // of the picture, which a screen with larger pixels makes smaller than that
    QMargins m_frame;
    QPoint m_anchor;  // in the window's picture
    QRect m_crop;
    QImage m_view;
    Axis m_axis = Axis::Down;
    bool m_shifted = false;
    std::unique_ptr<ChangeWatch> m_changes;  // null if changes are not reported
    int m_rest;
    qint64 m_slowestAnswer = -1;  // milliseconds; -1 if there was no answer yet
    int m_unanswered = 0;         // clicks
    qint64 m_longestRound = 0;    // milliseconds of looking and waiting, in the last turn
    bool m_sawLate = false;
    QString m_coveredBy;
    QPoint m_turnedAt;    // where the wheel was last turned, global
    QPoint m_pointerWas;  // the pointer's position before that
    bool m_isPointerAway = false;
    int m_darkTurns = 0;  // consecutive turns after which nothing was highlighted at the pointer
    QPoint m_pointerBefore;
    QPoint m_parkedAt;
    bool m_isParked = false;
    Stop m_stop = Stop::None;
    bool m_ended = false;
    QString m_note;
};
