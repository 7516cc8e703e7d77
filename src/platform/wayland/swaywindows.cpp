#include "platform/wayland/swaywindows.h"

#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegion>
#include <QWindow>

#include <algorithm>
#include <utility>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// Milliseconds, and how often they are waited for until an overlay has left the screen.
constexpr int s_restorePause = 20;
constexpr int s_restoreTries = 100;
// The same until a window of this program is known there.
constexpr int s_focusPause = 10;
constexpr int s_focusTries = 100;

bool isOwn(const SwayTree::Window &window)
{
    return window.entry.process == static_cast<uint>(getpid());
}

}  // namespace

SwayWindows::SwayWindows(std::shared_ptr<WaylandConnection> connection)
    : m_connection(std::move(connection)), m_areKnown(SwayConnection::isThere())
{
    // Panels and questions have no title of their own: the toolkit calls them as the program. Tiled
    // they would make all other windows smaller.
    if (m_areKnown)
        command(u"for_window [pid=%1 title=\"^%2$\"] floating enable"_s.arg(
            QString::number(getpid()), QGuiApplication::applicationDisplayName()));
}

void SwayWindows::read(std::function<void()> done)
{
    if (!m_areKnown) {
        QMetaObject::invokeMethod(this, std::move(done), Qt::QueuedConnection);
        return;
    }
    m_compositor.askForTree([this, done = std::move(done)](const QByteArray &json) {
        if (!m_isFrozen)
            m_tree = SwayTree::read(json);
        done();
    });
}

void SwayWindows::freeze()
{
    if (!m_isOwnSeen)
        m_tree.windows.removeIf(isOwn);
    m_isFrozen = true;
    m_isInFront = false;
    // Those that have been found so a second time, before they could be restored, stay remembered.
    for (const SwayTree::Window &window : std::as_const(m_tree.windows)) {
        const int number = window.entry.number;
        m_fullscreen.removeIf([=](const auto &other) { return other.entry.number == number; });
        if (window.fullscreen != 0 && window.isVisible && !isOwn(window))
            m_fullscreen.append(window);
    }
}

void SwayWindows::thaw()
{
    m_isFrozen = false;
    m_tree = {};
    if (!m_fullscreen.isEmpty())
        restoreFullscreen(s_restoreTries);
}

void SwayWindows::restoreFullscreen(int triesLeft)
{
    read([this, triesLeft] {
        if (m_isFrozen || m_fullscreen.isEmpty())
            return;
        const bool isCovered =
            std::any_of(m_tree.windows.begin(), m_tree.windows.end(),
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
        for (const SwayTree::Window &window : std::exchange(m_fullscreen, {}))
            fill(window);
    });
}

void SwayWindows::fill(const SwayTree::Window &window)
{
    command(u"[con_id=%1] fullscreen enable%2"_s.arg(QString::number(window.entry.number),
                                                     window.fullscreen > 1 ? u" global" : u""));
}

void SwayWindows::oweFullscreen(const QList<SwayTree::Window> &windows)
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
    if (owed == m_owed.end() || m_isFrozen || (kind != u"focus" && kind != u"close"))
        return;
    if (kind == u"focus")
        fill(*owed);
    m_owed.erase(owed);
    if (m_owed.isEmpty())
        m_changes.release()->deleteLater();
}

const SwayTree &SwayWindows::tree()
{
    if (!m_isFrozen && !std::exchange(m_isAsked, true))
        read([this] { m_isAsked = false; });
    return m_tree;
}

QRectF SwayWindows::boundsOf(int number)
{
    const SwayTree::Window *window = tree().windowOf(number);
    return window ? toGlobal(window->entry.bounds) : QRectF();
}

void SwayWindows::setOwnSeen(bool seen)
{
    m_isOwnSeen = seen;
    command(u"[pid=%1] opacity %2"_s.arg(getpid()).arg(seen ? 1 : 0));
}

void SwayWindows::focusOwn(QWindow *window)
{
    m_isInFront = true;
    m_wanted = window;
    focusWanted(s_focusTries);
}

// The window, or its title, may be so new that the compositor does not know it yet. No other would
// do, but for a question that has been opened meanwhile: that one takes the keys.
void SwayWindows::focusWanted(int triesLeft)
{
    m_compositor.askForTree([this, triesLeft](const QByteArray &json) {
        const QWindow *modal = QGuiApplication::modalWindow();
        const QWindow *target = modal ? modal : m_wanted.data();
        if (!target)
            return;
        // The toolkit calls a window without a title as the program.
        const QString title =
            target->title().isEmpty() ? QGuiApplication::applicationDisplayName() : target->title();
        const SwayTree tree = SwayTree::read(json);
        const auto found =
            std::find_if(tree.windows.begin(), tree.windows.end(), [&](const auto &shown) {
                return isOwn(shown) && shown.entry.name == title;
            });
        if (found == tree.windows.end()) {
            if (triesLeft > 0)
                QTimer::singleShot(s_focusPause, this,
                                   [this, triesLeft] { focusWanted(triesLeft - 1); });
            return;
        }
        QList<SwayTree::Window> obstacles;
        for (const SwayTree::Window &other : tree.windows) {
            if (other.isVisible && other.fullscreen != 0 && !isOwn(other))
                obstacles.append(other);
        }
        oweFullscreen(obstacles);
        if (!found->isFocused)
            command(u"[con_id=%1] focus"_s.arg(found->entry.number));
    });
}

QRegion SwayWindows::visibleOf(int number)
{
    QRegion covered;
    for (const SwayTree::Window &window : tree().windows) {
        if (!window.isVisible)
            continue;
        const QRegion bounds = toGlobal(window.entry.bounds).toRect();
        if (window.entry.number == number)
            return bounds - covered;
        covered += bounds;
    }
    return {};
}

QRectF SwayWindows::toGlobal(const QRectF &logical) const
{
    return m_connection->layout().toGlobal(logical);
}
