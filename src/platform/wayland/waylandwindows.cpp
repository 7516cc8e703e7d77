#include "platform/wayland/waylandwindows.h"

#include <algorithm>
#include <utility>

void WaylandWindows::ask(Answer answer)
{
    QMetaObject::invokeMethod(
        this, [answer = std::move(answer)] { answer({}); }, Qt::QueuedConnection);
}

void WaylandWindows::read(std::function<void()> done)
{
    ask([this, done = std::move(done)](QList<WaylandWindow> windows) {
        if (!m_isFrozen)
            m_windows = std::move(windows);
        done();
    });
}

void WaylandWindows::thaw()
{
    m_isFrozen = false;
    m_windows.clear();
}

const QList<WaylandWindow> &WaylandWindows::all()
{
    if (!m_isFrozen && !std::exchange(m_isAsked, true))
        read([this] { m_isAsked = false; });
    return m_windows;
}

const WaylandWindow *WaylandWindows::find(int number)
{
    const QList<WaylandWindow> &windows = all();
    const auto found = std::find_if(windows.begin(), windows.end(), [number](const auto &window) {
        return window.entry.number == number;
    });
    return found == windows.end() ? nullptr : &*found;
}

const WaylandWindow *WaylandWindows::focused()
{
    const QList<WaylandWindow> &windows = all();
    const auto found = std::find_if(windows.begin(), windows.end(),
                                    [](const auto &window) { return window.isFocused; });
    return found == windows.end() ? nullptr : &*found;
}

QRectF WaylandWindows::boundsOf(int number)
{
    const WaylandWindow *window = find(number);
    return window ? toGlobal(window->entry.bounds) : QRectF();
}

QRegion WaylandWindows::visibleOf(int number)
{
    QRegion covered;
    for (const WaylandWindow &window : all()) {
        if (!window.isVisible)
            continue;
        const QRegion bounds = toGlobal(window.entry.bounds).toRect();
        if (window.entry.number == number)
            return bounds - covered;
        covered += bounds;
    }
    return {};
}

QRectF WaylandWindows::toGlobal(const QRectF &logical) const
{
    return m_connection->layout().toGlobal(logical);
}
