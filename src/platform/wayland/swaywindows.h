#pragma once

#include "platform/wayland/swayconnection.h"
#include "platform/wayland/swaytree.h"
#include "platform/wayland/waylandconnection.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>

class QWindow;

/// The windows of sway and its kin, as they were when they were last read. What the compositor has
/// to say comes late, so that each look asks for the next one, and gives what is known.
class SwayWindows : public QObject
{
    Q_OBJECT
public:
    explicit SwayWindows(std::shared_ptr<WaylandConnection> connection);

    /// Whether the compositor tells of its windows at all.
    bool areKnown() const { return m_areKnown; }

    /// Reads them. `done` is called once, from the event loop, also if nothing could be read.
    void read(std::function<void()> done);
    /// What has been read stays, until thaw(), after which nothing is known until it has been read
    /// again. Windows that fill a screen are remembered: they don't any more when an overlay has
    /// done so, and thaw() lets them again.
    void freeze();
    void thaw();

    const SwayTree &tree();
    /// Global device pixels; empty if there is no such window.
    QRectF boundsOf(int number);
    /// What no other window covers, in global device pixels; empty if its work space isn't shown.
    QRegion visibleOf(int number);
    QRectF toGlobal(const QRectF &logical) const;
    /// Gives the focus to a window of this program, as soon as the compositor knows it.
    void focusOwn(QWindow *window);
    /// All windows of this program become transparent, or are seen again. Those that are
    /// transparent are no windows to others.
    void setOwnSeen(bool seen);

private:
    void restoreFullscreen(int triesLeft);
    void focusWanted(int triesLeft);
    void oweFullscreen(const QList<SwayTree::Window> &windows);
    void repay(const QByteArray &change);
    void fill(const SwayTree::Window &window);
    void command(const QString &text) { m_compositor.command(text); }

    std::shared_ptr<WaylandConnection> m_connection;
    SwayConnection m_compositor;
    SwayTree m_tree;
    QList<SwayTree::Window> m_fullscreen;  // when it was frozen
    // Those that a window of this program has come in front of: they fill the screen again when the
    // user goes back to them. Only as long as there are any is the compositor listened to.
    QList<SwayTree::Window> m_owed;
    std::unique_ptr<SwayConnection> m_changes;
    QPointer<QWindow> m_wanted;  // which is to get the focus
    bool m_isInFront = false;    // this program has asked to be, since it was frozen
    bool m_isOwnSeen = true;
    bool m_areKnown;
    bool m_isFrozen = false;
    bool m_isAsked = false;
};
