#pragma once

#include "platform/accessibility.h"

#include <QString>

#include <memory>

class AccessibleSearch;

/// The accessibility interface over D-Bus. It has a bus of its own, whose address is asked for on
/// the session bus. Only the switch waits for another program, and only briefly.
class BusAccessibility : public Accessibility
{
public:
    BusAccessibility();
    ~BusAccessibility() override;

    bool isEnabled() override;
    void enable() override;
    void findScrollingArea(const Place &place, std::function<void(const QRect &)> answer) override;
    void dropQuestion() override;

    /// The accessibility bus that was found last. The session may start a new one.
    struct Bus {
        QString name{};  ///< the toolkit's name for the connection
        QString address{};
    };

private:
    Bus m_bus{};
    std::unique_ptr<AccessibleSearch> m_search{};
};
