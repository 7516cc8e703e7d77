// The part of ScrollCapture that puts the content back.

#include "helper/scrollcapture.h"

#include <cstdlib>

namespace {

constexpr int s_corrections = 4;
constexpr int s_settle = 150;

}  // namespace

// Puts the content back as close to its original place as the wheel allows. Clicks count from the
// present place, so a place that can't be reached from the end may be reached from the top. Returns
// false if it can't be confirmed.
bool ScrollCapture::putBack(const QImage &original)
{
    if (!m_window.waitForReturn())
        return m_window.isGone();
    if (original.size() != m_window.view().size()) {
        putBackUnseen();
        return true;
    }
    m_window.turn(0, s_settle);
    if (m_isAcross) {
        m_window.setAxis(Axis::Across);
        m_travel.climb();
        m_window.setAxis(Axis::Down);
    }
    const QImage wanted = m_window.contentOf(original);
    if (m_travel.isExact()) {
        m_travel.goToView(wanted);
        return true;
    }
    if (m_travel.isAt(wanted) || (m_firstRow && goTo(*m_firstRow) == 0))
        return true;
    // If stopped on the way up, scrolls down by the same number of clicks; the content's top may
    // have cut that way short, so the view is compared.
    if (m_travel.perClick() <= 0 && m_window.stop() != Stop::None) {
        putBackUnseen();
        if (isNear(wanted)) {
            m_travel.goToView(wanted);
            return true;
        }
    }
    m_travel.climb();
    // If the content did not move up at the beginning, it was at the top.
    if (!m_climbed || (m_firstRow && goTo(*m_firstRow) < m_travel.perClick()))
        return true;
    m_travel.goToView(wanted);
    return m_looksDifferent || isNear(wanted);
}

// Whether a view that was seen before is so close that both views share rows.
bool ScrollCapture::isNear(const QImage &wanted) const
{
    return findByEdges(content(), wanted).kind <= Movement::Kind::Moved ||
           findByEdges(wanted, content()).kind <= Movement::Kind::Moved;
}

// Scrolls back by the number of clicks, without comparing views, if there is no time or nothing to
// compare with.
void ScrollCapture::putBackUnseen()
{
    m_window.setAxis(Axis::Down);
    int clicks = 0;
    if (m_travel.perClick() <= 0)
        clicks = m_travel.clicksUp();
    else if (m_firstRow && m_sheet.isEmpty())
        clicks = m_travel.clicksFor(*m_firstRow - m_stitcher.offset()) - m_window.unanswered();
    if (clicks != 0)
        m_window.turn(clicks, Patience::down);
}

// Scrolls to a row of the content. Returns the remaining distance in rows, or s_longest if it is
// unknown.
int ScrollCapture::goTo(int row)
{
    for (int i = 0; i < s_corrections; ++i) {
        const std::optional<int> at = m_stitcher.offsetOf(content());
        if (!at)
            return s_longest;
        const int clicks = m_travel.clicksFor(row - *at);
        if (clicks == 0)
            return std::abs(row - *at);
        // A program that hangs will execute the pending turns later, so these are subtracted.
        const int untold = clicks - (m_hangs ? m_window.unanswered() : 0);
        m_hangs = m_window.turn(untold, Patience::up) == Turn::Nothing &&
                  m_window.turn(0, Patience::slow) == Turn::Nothing;
        if (m_hangs)
            return 0;
    }
    return s_longest;
}
