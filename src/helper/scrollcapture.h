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

/// Captures the scrolling content of another program's window. It turns the wheel as a user would
/// and looks only at pictures of the window: it scrolls to the top, takes a picture, scrolls down a
/// step, waits until the view is at rest, appends what is new, and repeats until nothing moves.
/// Then it scrolls back to the original position.
///
/// If something interferes (the window closes, is covered, changes its size, hangs, or its content
/// changes), the picture ends there.
class ScrollCapture : public QObject
{
    Q_OBJECT
public:
    struct Target {
        int window = 0;       ///< number in the window list
        QRect area{};         ///< the area that is reported to scroll, global; empty if unknown
        QPoint anchor{};      ///< a point in the scrolling area, global
        bool marked = false;  ///< the user has marked `area`, which is used unchanged
        bool across = false;  ///< also captures what scrolls horizontally
    };
    struct Result {
        QImage picture{};     ///< null if there is none
        QString note{};       ///< why the picture may be incomplete, or another message
        int lastRow = -1;     ///< content may be missing below this row; -1 if none is
        int lastColumn = -1;  ///< content may be missing to the right of this column; -1 if none is
    };

    explicit ScrollCapture(const Target &target);

    /// Runs, with events running, until it has finished or is stopped.
    Result run();
    /// Ends run() with the picture taken so far.
    void keep() { m_window.setStop(Stop::Keep); }
    /// Ends run() without a picture. The content is still put back.
    void discard() { m_window.setStop(Stop::Discard); }
    /// Ends run() at once and leaves the content where it is.
    void abandon() { m_window.setStop(Stop::Abandon); }

    /// A preview of the picture so far, no larger than `box`.
    QImage overview(QSize box) const
    {
        return m_sheet.isEmpty() ? m_stitcher.overview(box) : m_sheet.overview(box, m_stitcher);
    }

signals:
    /// The state as a text for the user.
    void progressed(const QString &text);
    /// No more content is captured, for whatever reason.
    void puttingBack();

private:
    static constexpr int s_longest = 30000;              // pixels in each direction
    static constexpr qint64 s_mostPixels = 400'000'000;  // in total
    static constexpr int s_near = 2;                     // rows

    using Stop = ScrolledWindow::Stop;
    using Turn = ScrolledWindow::Turn;
    using Axis = ScrolledWindow::Axis;

    /// The result of taking a view.
    struct Taken {
        enum Kind {
            New,   ///< new content
            Same,  ///< nothing has scrolled
            Back,  ///< known content, further up
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
    QImage m_first;     // the window with its content at the top; null if not usable
    QImage m_last;      // the window with its content at the end
    QImage m_accepted;  // the content of the view that the stitcher got last
    ScrollStitcher m_stitcher;
    ColumnSheet m_sheet;            // the columns before the one in the stitcher
    std::optional<int> m_firstRow;  // the row of the first column that was at the top originally
    QRect m_areaAcross;             // the part of the view that scrolls horizontally
    int m_contentBottom = 0;      // the content's last row in the view, including what a bar covers
    QRect m_movedAcross;          // the part of the content that moved, transposed
    bool m_isAcross = false;      // the content scrolls horizontally
    bool m_isAll = false;         // the picture is complete, whatever the note says
    bool m_isCutAtRight = false;  // more columns may follow
    bool m_climbed = false;       // the content was not at its top originally
    bool m_hangs = false;         // the program does not answer any more
    bool m_isTold = false;        // the area is the reported one
    bool m_hasOwnAnchor = false;  // the wheel is turned at another point than the user's
    // Content that scrolls back may look different, because something above it moves or the colours
    // have changed.
    bool m_looksDifferent = false;
    Stopwatch m_sinceProgress;
};
