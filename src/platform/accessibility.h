#pragma once

#include <QPoint>
#include <QRect>
#include <QString>

#include <functional>

/// What the desktop's accessibility interface tells of other programs. It is a hint: programs may
/// leave it out, or be wrong.
class Accessibility
{
public:
    /// A point of a window. Global device pixels.
    struct Place {
        QPoint point{};
        QRect window{};    ///< with its frame
        uint process = 0;  ///< 0 where it is not known
        QString title{};
    };

    virtual ~Accessibility() = default;

    /// Whether the session's accessibility switch is on. False where nobody keeps the switch.
    virtual bool isEnabled() = 0;
    /// Turns the switch on. A failure changes nothing.
    virtual void enable() = 0;

    /// Looks for the area that scrolls up and down at a place, and hands over what is visible of
    /// its content, without scroll bars: global device pixels, empty where nothing is known. The
    /// answer comes once, from the event loop, within about a second. A newer question drops the
    /// older one's answer.
    virtual void findScrollingArea(const Place &place,
                                   std::function<void(const QRect &)> answer) = 0;
    /// After this no answer comes any more.
    virtual void dropQuestion() = 0;
};
