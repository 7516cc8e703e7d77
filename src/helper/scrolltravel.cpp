#include "helper/scrolltravel.h"

#include "helper/movement.h"
#include "helper/pixelrows.h"
#include "platform/services.h"

#include <algorithm>
#include <cmath>

namespace {

using Stop = ScrolledWindow::Stop;
using Turn = ScrolledWindow::Turn;

constexpr int s_leastPatienceUp = 250;  // milliseconds
constexpr int s_climbLimit = 60000;
constexpr int s_restless = 4000;  // a turn took this long, so a video may be playing
// Restless turns at the top that prove a video rather than scrolling.
constexpr int s_films = 2;
// Clicks of the wheel.
constexpr int s_firstClimb = 10;
constexpr int s_longestClimb = 80;
constexpr int s_longestStep = 40;
constexpr int s_longestWayBack = 300;  // steps
constexpr int s_spot = 48;             // pixels; larger than a row or a scroll bar
// The part of the view that a step may scroll; the rest is needed for matching.
constexpr double s_stepPart = 0.7;

// Whether so much has changed, and so little of it is still in place, that it is no glow at the
// content's end.
bool differWidely(const QImage &before, const QImage &after)
{
    if (before.size() != after.size())
        return true;
    const QImage earlier = withPixels(before);
    const QImage later = withPixels(after);
    int rows = 0;
    for (int y = 0; y < later.height(); ++y) {
        const auto [first, last] = differingColumns(earlier, later, y);
        rows += last - first >= s_spot;
    }
    const QRect part = differingPart(earlier, later);
    return rows * 2 > later.height() && !isInPlace(earlier.copy(part), later.copy(part));
}

}  // namespace

bool isSpot(const QRect &part) { return part.width() <= s_spot || part.height() <= s_spot; }

ScrollTravel::ScrollTravel(ScrolledWindow &window) : m_clock(*services().clock), m_window(window) {}

int ScrollTravel::clicksFor(int distance) const
{
    return perClick() > 0 ? static_cast<int>(std::lround(distance / perClick())) : 0;
}

bool ScrollTravel::climb()
{
    const Stop stop = m_window.stop();
    Stopwatch clock(m_clock);
    const QImage start = m_window.content();
    int clicks = s_firstClimb;
    for (int films = 0;
         m_window.stop() == stop && clock.elapsed() < s_climbLimit && films < s_films;) {
        Stopwatch sinceTurn(m_clock);
        const int patience =
            m_isSlow ? Patience::slow : m_window.patience(s_leastPatienceUp, Patience::up);
        const QImage before = m_window.content();
        if (!m_window.waitUntilReachable())
            break;
        const bool isAnswered = m_window.turn(-clicks, patience) == Turn::Moved;
        if (!isAcross() && (isAnswered || m_window.stop() != stop))
            m_clicksUp += clicks;
        if (!isAnswered || !hasScrolled(before, -1))
            break;
        films += sinceTurn.elapsed() >= s_restless;
        clicks = std::min(2 * clicks, s_longestClimb);
    }
    // A turn that was interrupted may have scrolled the content.
    return m_window.stop() != stop || !isAt(start);
}

bool ScrollTravel::hasScrolled(const QImage &before, int click)
{
    if (differWidely(before, m_window.content()))
        return true;
    if (!isAt(before) && !isInPlace(before, m_window.content()))
        return true;
    m_window.turn(0, Patience::glow);
    const QImage settled = m_window.content();
    if (isAt(before))
        return false;
    if (m_window.turn(click, Patience::up) == Turn::Moved && !isAcross())
        m_clicksUp -= click;
    const QImage now = m_window.content();
    const Movement movement = click < 0 ? findMovement(now, settled) : findMovement(settled, now);
    return movement.kind == Movement::Kind::Moved;
}

int ScrollTravel::usualStep() const
{
    const QRect &crop = m_window.crop();
    if (perClick() <= 0)
        return 1;
    const int length = isAcross() ? crop.width() : crop.height();
    return std::clamp(static_cast<int>(s_stepPart * length / perClick()), 1, s_longestStep);
}

void ScrollTravel::goBy(int clicks)
{
    while (clicks != 0 && m_window.waitUntilReachable()) {
        const int part = std::clamp(clicks, -s_longestClimb, s_longestClimb);
        m_window.turn(part, Patience::up);
        clicks -= part;
    }
}

void ScrollTravel::goToStart(int distance)
{
    goBy(-clicksFor(distance));
    if (distance > 0)
        climb();
}

bool ScrollTravel::isAt(const QImage &wanted) const
{
    const QImage now = m_window.content();
    if (m_isExact)
        return now.size() == wanted.size() && isSpot(differingPart(now, wanted));
    return now == wanted || findByEdges(wanted, now).kind == Movement::Kind::Still;
}

void ScrollTravel::goToView(const QImage &wanted)
{
    const Stop stop = m_window.stop();
    int longest = s_longestStep;
    int last = 0;
    bool isKnown = false;
    for (int i = 0; i < s_longestWayBack && m_window.stop() == stop && !isAt(wanted); ++i) {
        const QImage before = m_window.content();
        const Movement below = findByEdges(before, wanted);
        const bool isBelow = below.kind == Movement::Kind::Moved;
        const Movement above = isBelow ? Movement{} : findByEdges(wanted, before);
        const bool isAbove = above.kind == Movement::Kind::Moved;
        // The views shared rows before and no longer do, so this is as close as it gets.
        if (isKnown && !isBelow && !isAbove)
            return;
        isKnown = isBelow || isAbove;
        int clicks = std::min(usualStep(), longest);
        // The content's end may cut a click short exactly there.
        if (isBelow)
            clicks = std::max(clicksFor(below.rows), 1);
        else if (isAbove)
            clicks = -std::max(clicksFor(above.rows), 1);
        if (m_window.turn(clicks, Patience::up) == Turn::Nothing || clicks == -last)
            return;
        last = clicks;
        if (isKnown && perClick() > 0)
            continue;
        const Movement step = findByEdges(before, m_window.content());
        if (perClick() <= 0 && step.kind == Movement::Kind::Moved)
            setPerClick(1.0 * step.rows / clicks);
        // The step may have passed the view.
        if (!isKnown && clicks > 1 && step.kind != Movement::Kind::Moved) {
            m_window.turn(-clicks, Patience::up);
            longest = 1;
        }
    }
}
