#pragma once

#include <QImage>
#include <QList>
#include <QString>

#include <functional>

/// Short messages that the desktop shows whatever window is in front.
class Notifications
{
public:
    struct Action {
        QString text{};               ///< for the user
        std::function<void()> run{};  ///< from the event loop, at most once for each press
    };
    struct Notification {
        QString title{};
        QString text{};                 ///< as plain as it is
        QImage picture{};               ///< of any size; may be null
        QList<Action> actions{};        ///< left out where the desktop has no buttons for them
        std::function<void()> click{};  ///< of the notification itself, where the desktop tells
    };

    virtual ~Notifications() = default;

    /// `shown` hears, from the event loop, whether the desktop shows it. What the actions hold is
    /// let go when the notification is closed, or some others have followed it.
    virtual void show(const Notification &notification,
                      std::function<void(bool isShown)> shown) = 0;
};
