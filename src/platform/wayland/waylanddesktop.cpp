#include "platform/wayland/waylanddesktop.h"

#include "platform/nulldesktop.h"
#include "platform/services.h"
#include "platform/wayland/kwinhotkeys.h"
#include "platform/wayland/kwinroute.h"
#include "platform/wayland/kwinwindows.h"
#include "platform/wayland/portalcast.h"
#include "platform/wayland/portalhotkeys.h"
#include "platform/wayland/portalroute.h"
#include "platform/wayland/screencopyroute.h"
#include "platform/wayland/swaywindows.h"
#include "platform/wayland/waylandconnection.h"
#include "platform/wayland/waylandhands.h"
#include "platform/wayland/waylandownwindows.h"
#include "platform/wayland/waylandpictures.h"
#include "platform/wayland/waylandwindows.h"
#include "platform/xdg/portal.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <utility>

#include <unistd.h>

namespace {

// Milliseconds.
constexpr int s_frontLimit = 500;
constexpr int s_tokenLimit = 10000;
constexpr auto s_tokenVariable = "XDG_ACTIVATION_TOKEN";

class WaylandScreens : public Screens
{
public:
    explicit WaylandScreens(std::shared_ptr<WaylandConnection> connection)
        : m_connection(std::move(connection))
    {
    }

    QList<Screen> all() override
    {
        const ScreenLayout layout = m_connection->layout();
        QList<Screen> result;
        for (const ScreenLayout::Screen &screen : layout.screens())
            result.append({.area = screen.area, .scale = layout.scale(), .name = screen.name});
        // For the moment in which the last one has been taken away.
        if (result.isEmpty())
            result.append({.area = {0, 0, 1, 1}});
        return result;
    }

private:
    std::shared_ptr<WaylandConnection> m_connection;
};

class WaylandWindowCatalogue : public WindowCatalogue
{
public:
    explicit WaylandWindowCatalogue(WaylandWindows &windows) : m_windows(windows) {}

    QList<Entry> windows(List which, int relativeTo) override
    {
        QList<Entry> result;
        for (const WaylandWindow &window : m_windows.all()) {
            if (which != List::All && !window.isVisible)
                continue;
            Entry entry = window.entry;
            entry.client = static_cast<unsigned>(entry.number);
            entry.bounds = m_windows.toGlobal(entry.bounds);
            result.append(entry);
            if (which == List::AtAndAbove && entry.number == relativeTo)
                return result;
        }
        return which == List::AtAndAbove ? QList<Entry>() : result;
    }

private:
    WaylandWindows &m_windows;
};

// Nobody else's keys are heard here, so that only those count which a window of this program gets.
class WaylandKeyWatch : public QObject, public KeyWatch
{
public:
    WaylandKeyWatch() { qGuiApp->installEventFilter(this); }

    void start(const QList<Qt::Key> &keys, std::function<void(Qt::Key)> pressed) override
    {
        m_keys = keys;
        m_pressed = std::move(pressed);
        m_takes = true;
    }
    void listen(const QList<Qt::Key> &keys, std::function<void(Qt::Key)> pressed) override
    {
        start(keys, std::move(pressed));
        m_takes = false;
    }
    void stop() override { m_pressed = nullptr; }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (!m_pressed || event->type() != QEvent::KeyPress || !watched->isWindowType())
            return QObject::eventFilter(watched, event);
        const auto &press = *static_cast<QKeyEvent *>(event);
        const int key = press.key() == Qt::Key_Enter ? int(Qt::Key_Return) : press.key();
        if (press.isAutoRepeat() || !m_keys.contains(key))
            return false;
        QMetaObject::invokeMethod(
            this,
            [this, key] {
                if (m_pressed)
                    m_pressed(static_cast<Qt::Key>(key));
            },
            Qt::QueuedConnection);
        return m_takes;
    }

private:
    QList<Qt::Key> m_keys;
    std::function<void(Qt::Key)> m_pressed;
    bool m_takes = false;
};

// Of other applications no compositor tells anybody when they come to the front; it gives the front
// back to them by itself.
class WaylandApplicationWatch : public QObject, public ApplicationWatch
{
public:
    explicit WaylandApplicationWatch(WaylandWindows &windows) : m_windows(windows)
    {
        m_tokenLimit.setSingleShot(true);
        connect(&m_tokenLimit, &QTimer::timeout, this, [this] { useToken({}); });
    }

    void start(Handlers handlers) override
    {
        m_handlers = std::move(handlers);
        // Whoever started this program may have given it one. No other program is to inherit it.
        useToken(qgetenv(s_tokenVariable));
        qunsetenv(s_tokenVariable);
        connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
                [this] { tell(isActive()); });
        tell(isActive());
    }
    void stop() override
    {
        qGuiApp->disconnect(this);
        m_handlers = {};
    }
    unsigned frontWindow() override
    {
        const WaylandWindow *front = m_windows.focused();
        return front ? static_cast<unsigned>(front->entry.number) : 0;
    }
    uint frontProcess() override
    {
        const WaylandWindow *front = m_windows.focused();
        return front ? front->entry.process : 0;
    }
    void activate(unsigned /*window*/) override {}
    // The toolkit can only ask, and on another screen than the focus's that is not heard. It counts
    // as active at once, so that nobody waits in vain where the compositor refuses.
    void bringToFront(QWidget *window) override
    {
        if (QWindow *handle = window->window()->windowHandle()) {
            // A window that is not shown yet gets the token when it is.
            activate(*handle, handle->isExposed() ? takeToken() : QByteArray());
            m_windows.focusOwn(handle);
        }
        tell(true);
        QTimer::singleShot(s_frontLimit, this, [this] { tell(isActive()); });
    }
    void useToken(const QByteArray &token) override
    {
        m_token = token;
        qGuiApp->removeEventFilter(this);
        if (token.isEmpty())
            return;
        m_tokenLimit.start(s_tokenLimit);
        qGuiApp->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Expose) {
            auto *window = qobject_cast<QWindow *>(watched);
            if (window && window->isExposed() && window->type() != Qt::ToolTip)
                activate(*window, takeToken());
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QByteArray takeToken()
    {
        QByteArray token = m_token;
        useToken({});
        return token;
    }
    // The toolkit looks for the token in the environment.
    static void activate(QWindow &window, const QByteArray &token)
    {
        if (!token.isEmpty())
            qputenv(s_tokenVariable, token);
        window.requestActivate();
        qunsetenv(s_tokenVariable);
    }
    static bool isActive() { return QGuiApplication::applicationState() == Qt::ApplicationActive; }
    void tell(bool isInFront)
    {
        const auto &hears = isInFront ? m_handlers.activated : m_handlers.deactivated;
        if (hears)
            hears(getpid());
    }

    Handlers m_handlers;
    WaylandWindows &m_windows;
    QByteArray m_token;
    QTimer m_tokenLimit;
};

// A service with a share in the windows, which must outlive all services.
template<typename Service>
class WithWindows : private std::shared_ptr<WaylandWindows>, public Service
{
public:
    template<typename... More>
    explicit WithWindows(const std::shared_ptr<WaylandWindows> &windows, More &&...more)
        : std::shared_ptr<WaylandWindows>(windows), Service(std::forward<More>(more)..., *windows)
    {
    }
};

QString lackOfHotKeys()
{
    return QCoreApplication::translate("Abilities",
                                       "On this desktop keys are bound in its own settings.");
}

void withholdWhatLacks(Services &services, const WaylandConnection &connection,
                       const WaylandWindows &windows, bool hasHotKeys, bool isWatched)
{
    const auto lacks = [&](AbilitySet which, const char *reason) {
        services.abilities.withhold(which, QCoreApplication::translate("Abilities", reason));
    };
    if (!windows.havePictures())
        lacks(Ability::CoveredWindows,
              QT_TRANSLATE_NOOP("Abilities",
                                "This desktop keeps no pictures of windows that others "
                                "cover."));
    if (!hasHotKeys)
        services.abilities.withhold(Ability::HotKeys, lackOfHotKeys());
    if (!WaylandHands::canTurnWheels(connection))
        lacks(Ability::OtherWheels,
              QT_TRANSLATE_NOOP("Abilities", "This desktop lets no program turn the wheel."));
    if (!isWatched)
        lacks(Ability::Watching,
              QT_TRANSLATE_NOOP("Abilities", "This desktop lets no program watch its screens, so "
                                             "that nothing that scrolls can be taken."));
    if (!windows.areKnown())
        lacks(Ability::WindowList,
              QT_TRANSLATE_NOOP("Abilities", "This desktop tells no program of the windows of "
                                             "others."));
    if (!connection.screencopy() && !KWinRoute::isThere(QDBusConnection::sessionBus()))
        lacks(Ability::PointerShape,
              QT_TRANSLATE_NOOP("Abilities",
                                "This desktop tells no program what the pointer looks like."));
    lacks(Ability::Pins,
          QT_TRANSLATE_NOOP("Abilities", "This desktop lets no program keep a window "
                                         "above all others."));
    // The last word on what lacks is what the user is told.
    lacks(Ability::OpenMenus,
          QT_TRANSLATE_NOOP("Abilities", "This desktop tells no program of open menus. Take the "
                                         "whole screen with the countdown instead, and open the "
                                         "menu meanwhile."));
}

std::shared_ptr<WaylandWindows> windowsOf(const std::shared_ptr<WaylandConnection> &connection)
{
    if (SwayConnection::isThere())
        return std::make_shared<SwayWindows>(connection);
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (KWinRoute::isThere(bus))
        return std::make_shared<KWinWindows>(connection, bus);
    return std::make_shared<WaylandWindows>(connection);
}

WaylandPictures::Routes routesFor(const std::shared_ptr<WaylandConnection> &connection,
                                  const std::shared_ptr<Portal> &portal)
{
    WaylandPictures::Routes routes;
    if (connection->screencopy() && connection->shm())
        routes.push_back(std::make_unique<ScreencopyRoute>(connection));
    // Screencopy serves where it is there. What else is there may prove not to.
    if (!routes.empty())
        return routes;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (KWinRoute::isThere(bus))
        routes.push_back(std::make_unique<KWinRoute>(bus));
    if (portal)
        routes.push_back(std::make_unique<PortalRoute>(portal));
    return routes;
}

// Withheld until the portal gives some.
std::unique_ptr<HotKeys> hotKeysFor(const std::shared_ptr<Portal> &portal)
{
    if (!portal)
        return noHotKeys();
    return std::make_unique<PortalHotKeys>(portal, [](bool areThere) {
        if (areThere)
            services().abilities.grant(Ability::HotKeys);
        else
            services().abilities.withhold(Ability::HotKeys, lackOfHotKeys());
    });
}

}  // namespace

bool createWaylandDesktop(Services &services)
{
    if (!QGuiApplication::platformName().startsWith(u"wayland"))
        return false;
    const std::shared_ptr<WaylandConnection> connection = WaylandConnection::open();
    if (!connection)
        return false;
    const std::shared_ptr<Portal> portal = Portal::find();
    WaylandPictures::Routes routes = routesFor(connection, portal);
    if (routes.empty())
        return false;
    const auto windows = windowsOf(connection);
    services.screens = std::make_unique<WaylandScreens>(connection);
    services.pictures =
        std::make_unique<WithWindows<WaylandPictures>>(windows, connection, std::move(routes));
    services.windows = std::make_unique<WithWindows<WaylandWindowCatalogue>>(windows);
    services.ownWindows = std::make_unique<WithWindows<WaylandOwnWindows>>(windows, connection);
    services.hands = std::make_unique<WaylandHands>(connection);
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const bool hasHotKeys = KWinHotKeys::isThere(bus);
    services.hotKeys = hasHotKeys ? std::make_unique<KWinHotKeys>(bus) : hotKeysFor(portal);
    services.keys = std::make_unique<WaylandKeyWatch>();
    services.watch = std::make_unique<WithWindows<WaylandApplicationWatch>>(windows);
    // The others show what moves without being asked.
    const bool isWatched = connection->screencopy() ||
                           KWinRoute::isThere(QDBusConnection::sessionBus()) ||
                           PortalCast::isThere(*portal);
    withholdWhatLacks(services, *connection, *windows, hasHotKeys, isWatched);
    return true;
}
