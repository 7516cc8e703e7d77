#pragma once

#include "platform/accessibility.h"

#include <QString>

#include <memory>

class AccessibleSearch;

/// The accessibility interface on its own bus, whose address the session bus has. Nothing in it
/// waits for another program but the switch, and that not for long.
class BusAccessibility : public Accessibility
{
public:
    BusAccessibility();
    ~BusAccessibility() override;

    bool isEnabled() override;
    void enable() override;
    void findScrollingArea(const Place &place, std::function<void(const QRect &)> answer) override;
    void dropQuestion() override;

    /// The accessibility bus as it was last found. A session may start another one.
    struct Bus {
        QString name{};  ///< under which the toolkit keeps the connection
        QString address{};
    };

private:
    Bus m_bus{};
    std::unique_ptr<AccessibleSearch> m_search{};
};
