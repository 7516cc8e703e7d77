#include "platform/wayland/waylandwindows.h"

#include <QGuiApplication>
#include <QTimer>

#include <algorithm>
#include <utility>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// Milliseconds, and how often they are waited for until a window of this program is known.
constexpr int s_focusPause = 10;
constexpr int s_focusTries = 100;

// Of windows with equal titles a compositor may number some, as "Title <2>".
bool isCalled(const WaylandWindow &window, const QString &title)
{
    return window.entry.name == title || window.entry.name.startsWith(title + u" <"_s);
}

}  // namespace

void WaylandWindows::ask(Answer answer)
{
    const ScreenLayout layout = m_connection->layout();
    QList<WaylandWindow> screens;
    for (const ScreenLayout::Screen &screen : layout.screens()) {
        const int number = int(screens.size()) + 1;
        screens.append({.entry = {.number = number, .bounds = screen.logical, .name = screen.name},
                        .isVisible = true});
    }
    QMetaObject::invokeMethod(
        this, [answer = std::move(answer), screens] { answer(screens); }, Qt::QueuedConnection);
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

bool WaylandWindows::isOwn(const WaylandWindow &window)
{
    return window.entry.process == static_cast<uint>(getpid());
}

void WaylandWindows::focusOwn(QWindow *window)
{
    m_wanted = window;
    if (areKnown())
        focusWanted(s_focusTries);
}

// The window, or its title, may be so new that the compositor does not know it yet. No other would
// do, but for a question that has been opened meanwhile: that one takes the keys.
void WaylandWindows::focusWanted(int triesLeft)
{
    ask([this, triesLeft](const QList<WaylandWindow> &windows) {
        const QWindow *modal = QGuiApplication::modalWindow();
        const QWindow *target = modal ? modal : m_wanted.data();
        if (!target)
            return;
        // The toolkit calls a window without a title as the program.
        const QString title =
            target->title().isEmpty() ? QGuiApplication::applicationDisplayName() : target->title();
        const auto found = std::find_if(windows.begin(), windows.end(), [&](const auto &shown) {
            return isOwn(shown) && isCalled(shown, title);
        });
        if (found != windows.end())
            focus(*found, windows);
        else if (triesLeft > 0)
            QTimer::singleShot(s_focusPause, this,
                               [this, triesLeft] { focusWanted(triesLeft - 1); });
    });
}
