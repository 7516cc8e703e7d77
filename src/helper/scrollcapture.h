#pragma once

#include "base/clock.h"
#include "helper/movement.h"
#include "helper/stitcher.h"

#include <QImage>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QString>

#include <optional>

/// Takes all that scrolls in a window of another program, by turning the wheel over it as a user
/// would, and by nothing else than pictures: to the top, a picture, a step down, wait for rest,
/// append what is new, until nothing moves any more. Then back to where it was.
///
/// What happens on the way - the window closes, is covered, changes its size, hangs, changes by
/// itself - ends the picture there.
class ScrollCapture : public QObject
{
    Q_OBJECT
public:
    struct Target {
        int window = 0;       ///< in the window list
        QRect area{};         ///< what is said to scroll, global; empty where nobody said
        QPoint anchor{};      ///< a point of what scrolls, global
        bool marked = false;  ///< the user has said it, and means just that
        bool across = false;  ///< also what lies beside the view
    };
    struct Result {
        QImage picture{};  ///< null where there is none
        QString note{};    ///< why it may be less than all; empty where it is all
    };

    explicit ScrollCapture(const Target &target);

    /// Runs it, with events running, until it is done or told to stop.
    Result run();
    /// Ends run() with what there is.
    void keep() { m_stop = m_stop == Stop::None ? Stop::Keep : m_stop; }
    /// Ends run() without a picture. The content still goes back to where it was.
    void discard() { m_stop = m_stop == Stop::None ? Stop::Discard : m_stop; }
    /// What there is so far, no larger than a box, for a look.
    QImage overview(QSize box) const { return m_stitcher.overview(box); }
    /// Ends run() at once, and leaves everything as it is.
    void abandon() { m_stop = Stop::Abandon; }

signals:
    /// What is going on, for the user.
    void progressed(const QString &text);
    /// No more is taken, for one reason or another.
    void puttingBack();

private:
    enum class Stop { None, Keep, Discard, Abandon };
    enum class Turn {
        Moved,   ///< the view has changed, and is at rest
        Nothing  ///< nothing moved, or the window is not what it was
    };

    bool runs() const { return m_stop == Stop::None && !m_ended; }
    bool pause(int milliseconds);
    void endWith(const QString &note);
    void tellRows();

    bool look(QImage &view);
    QImage cropped(const QImage &view) const;
    QRect toldArea() const;  ///< in the window's picture
    bool isReachable();
    bool waitUntilReachable();
    bool waitForFreeHand();

    Turn turn(int clicks, int patience);
    bool climb();
    Movement firstStep();
    bool begin();
    void goDown();
    bool step(int &clicks);
    bool refresh();
    bool goesOn();
    bool goBack(int clicks);
    int usualStep() const;  // clicks
    void lookAgain();
    void takeOver(const QImage &view);
    void beMorePatient();
    void repairOverlap(const Movement &movement, const QImage &before, int clicks);

    void putBack(const QImage &original);
    bool goTo(int row);
    void goDownTo(const QImage &wanted);

    Clock &m_clock;
    const Target m_target;
    QRect m_bounds;     // the window's, global
    QPoint m_anchor;    // where the wheel is turned, in the window's picture
    QRect m_crop;       // what of its picture counts; all of it while nothing has moved
    QImage m_view;      // the window as it was seen last
    QImage m_accepted;  // what of it the stitcher has got last
    ScrollStitcher m_stitcher;
    double m_rowsPerClick = 0;
    bool m_climbed = false;  // the content was not at its top
    bool m_isSlow = false;   // the program was, in its first answer
    int m_rest = 0;          // ms without a change: the view is at rest
    bool m_sawLate = false;  // something came when the view seemed to be at rest
    bool m_hasFilm = false;  // something moves above the content
    Stop m_stop = Stop::None;
    bool m_ended = false;
    QString m_note;
    Stopwatch m_sinceProgress;
};
