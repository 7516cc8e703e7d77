#include "platform/wayland/swaywindows.h"

#include "platform/wayland/swaytree.h"

#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <utility>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// Milliseconds, and how often they are waited for until an overlay has left the screen.
constexpr int s_restorePause = 20;
constexpr int s_restoreTries = 100;

}  // namespace

SwayWindows::SwayWindows(std::shared_ptr<WaylandConnection> connection)
    : WaylandWindows(std::move(connection))
{
    // Panels and questions have no title of their own: the toolkit calls them as the program. Tiled
    // they would make all other windows smaller.
    command(u"for_window [pid=%1 title=\"^%2$\"] floating enable"_s.arg(
        QString::number(getpid()), QGuiApplication::applicationDisplayName()));
}

void SwayWindows::ask(Answer answer)
{
    m_compositor.askForTree(
        [answer = std::move(answer)](const QByteArray &json) { answer(readSwayTree(json)); });
}

void SwayWindows::freeze()
{
    if (!m_isOwnSeen)
        known().removeIf(isOwn);
    WaylandWindows::freeze();
    m_isInFront = false;
    // Those that have been found so a second time, before they could be restored, stay remembered.
    for (const WaylandWindow &window : std::as_const(known())) {
        const int number = window.entry.number;
        m_fullscreen.removeIf([=](const auto &other) { return other.entry.number == number; });
        if (window.fullscreen != 0 && window.isVisible && !isOwn(window))
            m_fullscreen.append(window);
    }
}

void SwayWindows::thaw()
{
    WaylandWindows::thaw();
    if (!m_fullscreen.isEmpty())
        restoreFullscreen(s_restoreTries);
}

void SwayWindows::restoreFullscreen(int triesLeft)
{
    read([this, triesLeft] {
        if (isFrozen() || m_fullscreen.isEmpty())
            return;
        const bool isCovered =
            std::any_of(known().cbegin(), known().cend(),
                        [](const auto &window) { return isOwn(window) && window.fullscreen != 0; });
        if (isCovered && triesLeft > 0) {
            QTimer::singleShot(s_restorePause, this,
                               [this, triesLeft] { restoreFullscreen(triesLeft - 1); });
            return;
        }
        if (m_isInFront) {
            oweFullscreen(std::exchange(m_fullscreen, {}));
            return;
        }
        for (const WaylandWindow &window : std::exchange(m_fullscreen, {}))
            fill(window);
    });
}

void SwayWindows::fill(const WaylandWindow &window)
{
    command(u"[con_id=%1] fullscreen enable%2"_s.arg(QString::number(window.entry.number),
                                                     window.fullscreen > 1 ? u" global" : u""));
}

void SwayWindows::oweFullscreen(const QList<WaylandWindow> &windows)
{
    m_owed.append(windows);
    if (m_owed.isEmpty() || m_changes)
        return;
    m_changes = std::make_unique<SwayConnection>();
    m_changes->followWindows([this](const QByteArray &change) { repay(change); });
}

void SwayWindows::repay(const QByteArray &change)
{
    const QJsonObject told = QJsonDocument::fromJson(change).object();
    const QString kind = told["change"_L1].toString();
    const int number = told["container"_L1]["id"_L1].toInt();
    const auto owed = std::find_if(m_owed.begin(), m_owed.end(), [number](const auto &window) {
        return window.entry.number == number;
    });
    if (owed == m_owed.end() || isFrozen() || (kind != u"focus" && kind != u"close"))
        return;
    if (kind == u"focus")
        fill(*owed);
    m_owed.erase(owed);
    if (m_owed.isEmpty())
        m_changes.release()->deleteLater();
}

void SwayWindows::setOwnSeen(bool seen)
{
    m_isOwnSeen = seen;
    command(u"[pid=%1] opacity %2"_s.arg(getpid()).arg(seen ? 1 : 0));
}

void SwayWindows::focusOwn(QWindow *window)
{
    m_isInFront = true;
    WaylandWindows::focusOwn(window);
}

void SwayWindows::focus(const WaylandWindow &window, const QList<WaylandWindow> &all)
{
    QList<WaylandWindow> obstacles;
    for (const WaylandWindow &other : all) {
        if (other.isVisible && other.fullscreen != 0 && !isOwn(other))
            obstacles.append(other);
    }
    oweFullscreen(obstacles);
    if (!window.isFocused)
        command(u"[con_id=%1] focus"_s.arg(window.entry.number));
}
