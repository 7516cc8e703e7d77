#pragma once

#include "base/clock.h"
#include "helper/scrolledwindow.h"

#include <QImage>

/// How long a turn of the wheel is waited for, in milliseconds.
namespace Patience {
inline constexpr int up = 400;  ///< for a first sign of movement
inline constexpr int down = 500;
inline constexpr int leastDown = 150;
inline constexpr int slow = 3000;  ///< of a program that has needed long before
inline constexpr int glow = 1500;  ///< that some programs show at the end of their content
}  // namespace Patience

/// Whether what has changed may be a caret, a row that has lit up, or a scroll bar.
bool isSpot(const QRect &part);

/// Leads what a window shows from one place of its content to another, by the wheel and by what is
/// seen on the way. All of it goes along the axis that the window has at that time.
class ScrollTravel
{
public:
    explicit ScrollTravel(ScrolledWindow &window);

    /// Pixels that a click of the wheel leads on; 0 where that is not known yet.
    double perClick() const { return isAcross() ? m_columnsPerClick : m_rowsPerClick; }
    void setPerClick(double pixels) { (isAcross() ? m_columnsPerClick : m_rowsPerClick) = pixels; }
    /// The clicks that come nearest to a distance in pixels.
    int clicksFor(int distance) const;
    /// The clicks of a step that leaves enough of the last view in sight.
    int usualStep() const;
    /// The program needs long for its answers.
    void setSlow() { m_isSlow = true; }

    /// To the start of the content, also when the capture has been told to stop. True when the
    /// content went there from elsewhere.
    bool climb();
    /// By how many clicks all climbs went up, those included that the content's top has cut short.
    int clicksUp() const { return m_clicksUp; }
    /// Whether more has happened since `before` than a glow at the end of the content, which goes
    /// by. Where that can't be seen one more `click` tells.
    bool hasScrolled(const QImage &before, int click);
    /// By so many clicks, whatever is seen meanwhile.
    void goBy(int clicks);
    /// To the start that is so many pixels away, also where nothing is to be seen on the way.
    void goToStart(int distance);
    /// What looks as if only spots had changed has scrolled here, by whole rows of icons: only what
    /// is the same but for a caret or a row is at its place from now on.
    void setExact() { m_isExact = true; }
    bool isExact() const { return m_isExact; }
    /// Whether the content is where it was in a picture of it.
    bool isAt(const QImage &wanted) const;
    /// To a view that was seen before. Where nothing is known of the distance it is taken to lie
    /// below, or to the right, and that way is gone click by click.
    void goToView(const QImage &wanted);

private:
    bool isAcross() const { return m_window.axis() == ScrolledWindow::Axis::Across; }

    Clock &m_clock;
    ScrolledWindow &m_window;
    double m_rowsPerClick = 0;
    double m_columnsPerClick = 0;
    int m_clicksUp = 0;
    bool m_isSlow = false;
    bool m_isExact = false;
};
