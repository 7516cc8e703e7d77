#include "shell/departure.h"

#include "base/clock.h"
#include "platform/desktoppictures.h"
#include "platform/services.h"

#include <QWidget>

#include <algorithm>

namespace {

// Milliseconds.
constexpr int s_limit = 500;
// A compositor that has much to do shows the last frame for a while, in which nothing moves either.
// Where it is not known what the windows looked like, this has to do.
constexpr int s_leastTime = 100;
constexpr int s_lookInterval = 15;
// What leaves at once, and what may fade: a compositor that has much to do makes pauses between the
// steps of that.
constexpr int s_restfulTime = 60;
constexpr int s_restfulTimeOfFades = 150;
// What is looked at of the desktop, so that a look takes no longer than a frame: any window that
// covers much of it is among that.
constexpr int s_strips = 16;
constexpr int s_stripHeight = 4;  // pixels

}  // namespace

void Departure::begin(const QList<const QWidget *> &windows)
{
    m_hasBegun = true;
    m_canLook = services().pictures->isLive() && services().ownWindows->isComposited();
    m_windows.clear();
    m_first = m_last = {};
    m_begin = m_looked = m_restful = m_clock.now();
    m_wasSeen = m_canLook && !windows.isEmpty();
    // Overlays, which no window manager knows of, fade where nobody sees it.
    const bool fades = std::any_of(windows.begin(), windows.end(), [](const QWidget *window) {
        return !window->windowFlags().testFlag(Qt::BypassWindowManagerHint);
    });
    m_restfulTime = fades ? s_restfulTimeOfFades : s_restfulTime;
    if (!m_wasSeen)
        return;
    for (const QWidget *window : windows)
        m_windows.append(services().ownWindows->numberOf(window));
    m_first = seen();
}

bool Departure::isUnderWay() const { return m_hasBegun && m_clock.now() - m_begin < s_limit; }

bool Departure::isOver()
{
    if (!isUnderWay())
        return true;
    if (!m_canLook || !haveGone())
        return false;
    const qint64 now = m_clock.now();
    if (m_last.isEmpty() || now - m_looked >= s_lookInterval)
        look(now);
    return m_first.isEmpty() && (m_wasSeen || now - m_begin >= s_leastTime) &&
           m_looked - m_restful >= m_restfulTime;
}

void Departure::wait()
{
    if (!isUnderWay())
        begin({});
    waitUntil(m_clock, s_limit, [this] { return isOver(); });
    m_hasBegun = false;
    m_first = m_last = {};
}

bool Departure::haveGone()
{
    if (m_windows.isEmpty())
        return true;
    const auto shown = services().windows->windows(WindowCatalogue::List::OnScreen, 0);
    const bool isThere = std::any_of(shown.begin(), shown.end(), [this](const auto &entry) {
        return m_windows.contains(entry.number);
    });
    if (!isThere)
        m_windows.clear();
    return !isThere;
}

QList<QImage> Departure::seen()
{
    const QRect box = desktopBox();
    QList<QImage> result;
    for (int i = 0; i < s_strips; ++i) {
        const int top = box.top() + (2 * i + 1) * box.height() / (2 * s_strips);
        result.append(
            services().pictures->ofDesktop({box.left(), top, box.width(), s_stripHeight}));
    }
    return result;
}

void Departure::look(qint64 now)
{
    const QList<QImage> shown = seen();
    m_looked = now;
    if (shown != m_first)
        m_first.clear();
    if (shown != m_last)
        m_restful = now;
    m_last = shown;
}
