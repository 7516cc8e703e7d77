// The part of ScrollCapture that puts the content back where it was.

#include "helper/scrollcapture.h"

#include <cstdlib>

namespace {

constexpr int s_corrections = 4;
constexpr int s_settle = 150;

}  // namespace

// As near to where it was as the wheel leads: clicks count from wherever the content is, so what
// can't be met from its end may be met from its top. False where it can't be told to be there.
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
    // Stopped on its way up: as far down again, unless the top has cut that way short.
    if (m_travel.perClick() <= 0 && m_window.stop() != Stop::None) {
        putBackUnseen();
        if (isNear(wanted)) {
            m_travel.goToView(wanted);
            return true;
        }
    }
    m_travel.climb();
    // Where it did not go up in the beginning it began at the top.
    if (!m_climbed || (m_firstRow && goTo(*m_firstRow) < m_travel.perClick()))
        return true;
    m_travel.goToView(wanted);
    return m_looksDifferent || isNear(wanted);
}

// Whether a view that was seen before lies so near that the two share rows.
bool ScrollCapture::isNear(const QImage &wanted) const
{
    return findByEdges(content(), wanted).kind <= Movement::Kind::Moved ||
           findByEdges(wanted, content()).kind <= Movement::Kind::Moved;
}

// Where there is no time to look, or nothing to compare with: by as many clicks as it is away.
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

// To a row of the content. How far from it that leads, in rows; more than any content has where it
// is not known.
int ScrollCapture::goTo(int row)
{
    for (int i = 0; i < s_corrections; ++i) {
        const std::optional<int> at = m_stitcher.offsetOf(content());
        if (!at)
            return s_longest;
        const int clicks = m_travel.clicksFor(row - *at);
        if (clicks == 0)
            return std::abs(row - *at);
        // A program that hangs goes there when it comes to itself, if it is told nothing else.
        const int untold = clicks - (m_hangs ? m_window.unanswered() : 0);
        m_hangs = m_window.turn(untold, Patience::up) == Turn::Nothing &&
                  m_window.turn(0, Patience::slow) == Turn::Nothing;
        if (m_hangs)
            return 0;
    }
    return s_longest;
}
