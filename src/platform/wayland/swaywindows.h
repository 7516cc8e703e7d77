#pragma once

#include "platform/wayland/swayconnection.h"
#include "platform/wayland/waylandwindows.h"

#include <QTimer>

#include <memory>

/// The windows of sway and its kin. Windows that fill a screen when it is frozen are remembered:
/// they don't any more when an overlay has done so, and thaw() lets them again.
class SwayWindows : public WaylandWindows
{
    Q_OBJECT
public:
    explicit SwayWindows(std::shared_ptr<WaylandConnection> connection);

    bool areKnown() const override { return true; }
    void freeze() override;
    void thaw() override;
    void focusOwn(QWindow *window) override;
    /// They become transparent. Those that are transparent are no windows to others.
    void setOwnSeen(bool seen) override;

protected:
    void ask(Answer answer) override;
    void focus(const WaylandWindow &window, const QList<WaylandWindow> &all) override;

private:
    void restoreFullscreen(int triesLeft);
    void oweFullscreen(const QList<WaylandWindow> &windows);
    void repay(const QByteArray &change);
    void fill(const WaylandWindow &window);
    void command(const QString &text) { m_compositor.command(text); }

    SwayConnection m_compositor;
    QList<WaylandWindow> m_fullscreen;  // when it was frozen
    // Those that a window of this program has come in front of: they fill the screen again when the
    // user goes back to them. Only as long as there are any is the compositor listened to.
    QList<WaylandWindow> m_owed;
    std::unique_ptr<SwayConnection> m_changes;
    bool m_isInFront = false;  // this program has asked to be, since it was frozen
    bool m_isOwnSeen = true;
};
