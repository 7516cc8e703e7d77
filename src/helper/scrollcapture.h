#pragma once

#include "helper/movement.h"
#include "helper/stitcher.h"

#include <QElapsedTimer>
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
/// What happens on the way - the window closes, is covered, changes its size, freezes, changes by
/// itself - ends the picture there.
class ScrollCapture : public QObject
{
    Q_OBJECT
public:
    struct Target {
        int window = 0;   ///< in the window list
        QRect area{};     ///< what is said to scroll, global; empty where nobody said
        QPoint anchor{};  ///< where the wheel is turned, global
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
    void discard() { m_stop = m_stop == Stop::Abandon ? m_stop : Stop::Discard; }
    /// Ends run() at once, and leaves everything as it is.
    void abandon() { m_stop = Stop::Abandon; }

signals:
    /// So many rows are done.
    void progressed(int rows);

private:
    enum class Stop { None, Keep, Discard, Abandon };
    enum class Turn {
        Moved,   ///< the view has changed, and is at rest
        Nothing  ///< nothing moved, or the window is not what it was
    };

    bool pause(int milliseconds);
    bool look(QImage &view);
    QImage cropped(const QImage &view) const;
    Turn turn(int clicks, int patience);
    void goToTop();
    QRect toldArea() const;  ///< in the window's picture
    Movement firstStep();
    bool begin();
    void goDown();
    bool step(int &clicks);
    bool goesOn();
    bool goBack(const QImage &wanted, int clicks);
    void putBack(const QImage &original);
    bool goTo(int row);
    void goDownTo(const QImage &wanted);
    bool isReachable() const;
    bool waitUntilReachable();
    void endWith(const QString &note);

    const Target m_target;
    QRect m_bounds;  // the window's, global
    QRect m_crop;    // what of its picture counts; all of it while nothing has moved
    QImage m_view;   // the window as it was seen last
    ScrollStitcher m_stitcher;
    double m_rowsPerClick = 0;
    Stop m_stop = Stop::None;
    bool m_ended = false;
    QString m_note;
    QElapsedTimer m_sinceProgress;
};
