#pragma once

#include "base/clock.h"
#include "helper/scrolledwindow.h"

#include <QImage>

/// Times to wait after a turn of the wheel, in milliseconds.
namespace Patience {
inline constexpr int up = 400;  ///< for the first sign of movement
inline constexpr int down = 500;
inline constexpr int leastDown = 150;
inline constexpr int slow = 3000;  ///< for programs that have needed long before
/// For an effect that some programs show at the end of the content.
inline constexpr int glow = 1500;
}  // namespace Patience

/// Whether a changed part may be a caret, a highlighted row or a scroll bar.
bool isSpot(const QRect &part);

/// Scrolls a window from one place of its content to another, by the wheel and by comparing views.
/// All functions use the window's present axis.
class ScrollTravel
{
public:
    explicit ScrollTravel(ScrolledWindow &window);

    /// Pixels per click of the wheel; 0 if unknown.
    double perClick() const { return isAcross() ? m_columnsPerClick : m_rowsPerClick; }
    void setPerClick(double pixels) { (isAcross() ? m_columnsPerClick : m_rowsPerClick) = pixels; }
    /// The number of clicks that comes closest to a distance in pixels.
    int clicksFor(int distance) const;
    /// The number of clicks that keeps enough of the last view visible.
    int usualStep() const;
    /// From now on, waits longer because the program answers slowly.
    void setSlow() { m_isSlow = true; }

    /// Scrolls to the start of the content, even if the capture has been told to stop. Returns
    /// whether the content was elsewhere before.
    bool climb();
    /// The total number of clicks upward, including those beyond the content's top.
    int clicksUp() const { return m_clicksUp; }
    /// Whether more has changed since `before` than a glow at the end of the content, which
    /// disappears by itself. If this can't be seen, scrolls by one more `click`.
    bool hasScrolled(const QImage &before, int click);
    /// Scrolls by this number of clicks without comparing views.
    void goBy(int clicks);
    /// Scrolls to the start, which is `distance` pixels away, even if nothing distinct is visible
    /// on the way.
    void goToStart(int distance);
    /// For content that scrolls by whole rows of icons, where two views may seem to differ only in
    /// spots: from now on isAt() accepts only views that are equal except for a caret or a row.
    void setExact() { m_isExact = true; }
    bool isExact() const { return m_isExact; }
    /// Whether the content is at the same place as in the picture `wanted`.
    bool isAt(const QImage &wanted) const;
    /// Scrolls to a view that was seen before. If the distance is unknown, searches downward or to
    /// the right, click by click.
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
