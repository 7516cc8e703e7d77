#pragma once

#include "base/clock.h"
#include "helper/columnsheet.h"
#include "helper/movement.h"
#include "helper/scrolledwindow.h"
#include "helper/scrolltravel.h"
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
        bool marked = false;  ///< `area` is what the user wants, and is taken as it is
        bool across = false;  ///< what scrolls sideways is taken too
    };
    struct Result {
        QImage picture{};     ///< null where there is none
        QString note{};       ///< why it may be less than all, or what else is to be known of it
        int lastRow = -1;     ///< more may follow below this one; -1 where nothing does
        int lastColumn = -1;  ///< the same to the right
    };

    explicit ScrollCapture(const Target &target);

    /// Runs it, with events running, until it is done or told to stop.
    Result run();
    /// Ends run() with what there is.
    void keep() { m_window.setStop(Stop::Keep); }
    /// Ends run() without a picture. The content still goes back to where it was.
    void discard() { m_window.setStop(Stop::Discard); }
    /// Ends run() at once, and leaves everything as it is.
    void abandon() { m_window.setStop(Stop::Abandon); }

    /// What there is so far, no larger than a box, for a look.
    QImage overview(QSize box) const
    {
        return m_sheet.isEmpty() ? m_stitcher.overview(box) : m_sheet.overview(box, m_stitcher);
    }

signals:
    /// What is going on, for the user.
    void progressed(const QString &text);
    /// No more is taken, for one reason or another.
    void puttingBack();

private:
    static constexpr int s_longest = 30000;              // pixels, either way
    static constexpr qint64 s_mostPixels = 400'000'000;  // in all
    static constexpr int s_near = 2;                     // rows

    using Stop = ScrolledWindow::Stop;
    using Turn = ScrolledWindow::Turn;
    using Axis = ScrolledWindow::Axis;

    /// What a view has brought.
    struct Taken {
        enum Kind {
            New,   ///< more of the content
            Same,  ///< nothing has scrolled
            Back,  ///< content that is known, further up
            Lost
        };
        Kind kind = Lost;
        Movement movement{};  ///< for New and Back
    };

    bool runs() const { return m_window.runs(); }
    void tellRows();
    QImage content() const { return m_window.content(); }
    QRect toldArea() const;  // in the window's picture

    Movement firstStep();
    void setArea(const QImage &before, const Movement &movement);
    QRect withoutOverlayBelow(const QRect &area) const;
    void waitForOverlay();
    bool hasGoneSideways(const QImage &before);
    bool leadsTooFar(const QImage &before);
    bool begin();
    void goDown();
    bool step(int &clicks);
    Taken take(const QImage &now, int expected = 0);
    bool refresh();
    void endColumn();
    bool goesOn();
    bool goBack(int clicks);
    void lookAgain();
    void takeOver(const QImage &view);
    void beMorePatient();
    void repairOverlap(const Movement &movement, const QImage &before, int clicks);
    QImage column();

    bool goLeft();
    bool setAreaAcross(const QImage &before, const QImage &after, const QRect &area);
    void takeBeside();
    void goToFirstRow(int lowest);
    Movement goRight();
    void goDownBeside(int lowest, const QRect &moved);
    bool takeExpected(int rows, const QRect &moved);
    Result sheet(const QString &note);

    bool putBack(const QImage &original);
    bool isNear(const QImage &wanted) const;
    void putBackUnseen();
    int goTo(int row);

    Clock &m_clock;
    const Target m_target;
    ScrolledWindow m_window;
    ScrollTravel m_travel;
    QImage m_first;     // the window with its content at the top; null where that is of no use
    QImage m_last;      // and at its end
    QImage m_accepted;  // what of the view the stitcher has got last
    ScrollStitcher m_stitcher;
    ColumnSheet m_sheet;            // the columns before the one that is in the stitcher
    std::optional<int> m_firstRow;  // of the content when it began, in the first column
    QRect m_areaAcross;             // what of the view goes sideways
    int m_contentBottom = 0;        // of the view, with what a bar over it covers
    QRect m_movedAcross;            // of the content, turned over
    bool m_isAcross = false;        // it scrolls sideways
    bool m_isAll = false;           // whatever is noted
    bool m_isCutAtRight = false;    // more columns may follow
    bool m_climbed = false;         // the content was not at its top
    bool m_hangs = false;           // it does not answer any more
    bool m_isTold = false;          // the area is the one that was said to scroll
    bool m_hasOwnAnchor = false;    // the wheel is turned elsewhere than where the user pointed
    // What is drawn anew may look different: something moves above it, or the colours have changed.
    bool m_looksDifferent = false;
    Stopwatch m_sinceProgress;
};
