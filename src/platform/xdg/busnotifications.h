#pragma once

#include "platform/notifications.h"

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

#include <optional>

/// Notifications by the desktop's service for them on the session bus. Nothing here waits.
class BusNotifications : public QObject, public Notifications
{
    Q_OBJECT

public:
    static constexpr int s_mostKept = 4;       ///< notifications whose actions are kept
    static constexpr int s_longestSide = 256;  ///< of the picture that is sent, in pixels

    /// Without a bus it is the session's, from the first notification on.
    explicit BusNotifications(std::optional<QDBusConnection> bus = {}) : m_bus(std::move(bus)) {}

    void show(const Notification &notification, std::function<void(bool isShown)> shown) override;

private slots:
    void hearAction(uint id, const QString &key);
    void hearClosed(uint id, uint reason);
    void hearToken(uint id, const QString &token);

private:
    struct Shown {
        uint id = 0;
        Notification notification{};
    };

    void ask(const QString &method, const QVariantList &arguments,
             const std::function<void(const QDBusMessage &answer)> &answered);
    void send(const Notification &notification, const QStringList &abilities,
              const std::function<void(bool isShown)> &shown);
    void keep(uint id, const Notification &notification);
    void listen();
    Shown *find(uint id);

    std::optional<QDBusConnection> m_bus;
    bool m_listens = false;
    QList<Shown> m_shown{};  ///< the oldest first
};
