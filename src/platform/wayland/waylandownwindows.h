#pragma once

#include "platform/ownwindows.h"
#include "platform/wayland/waylandconnection.h"
#include "platform/wayland/waylandwindows.h"

#include <QSet>

#include <memory>

/// A window of a Wayland program lies where the compositor wants it; only whole screens can be
/// asked for.
class WaylandOwnWindows : public OwnWindows
{
public:
    /// `windows` outlives this object.
    WaylandOwnWindows(std::shared_ptr<WaylandConnection> connection, WaylandWindows &windows)
        : m_connection(std::move(connection)), m_windows(windows)
    {
    }

    bool isComposited() override { return false; }
    void setCompositingHandler(std::function<void()> /*changed*/) override {}
    bool placesWindows() const override { return false; }
    QList<PanePlace> panes() override;
    void coverArea(QWidget *window, const QRect &area) override;
    void moveWindow(QWidget * /*window*/, QPoint /*to*/) override {}
    void keepOutOfTaskBar(QWidget * /*window*/) override {}
    void setOnScreen(QWidget *window, bool onScreen) override;
    void dropShadow(QWidget * /*window*/) override {}
    int numberOf(const QWidget * /*widget*/) override { return 0; }

private:
    std::shared_ptr<WaylandConnection> m_connection;
    WaylandWindows &m_windows;
    QSet<QWidget *> m_offScreen;  // only compared
};
