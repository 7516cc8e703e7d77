#pragma once

#include <QPoint>
#include <QRect>
#include <QString>

#include <functional>

/// What the desktop's accessibility interface reports about other programs. The reports are only
/// hints: a program may leave something out or be wrong.
class Accessibility
{
public:
    /// A point in a window. All coordinates are global device pixels.
    struct Place {
        QPoint point{};
        QRect window{};    ///< including its frame
        uint process = 0;  ///< 0 if unknown
        QString title{};
    };

    virtual ~Accessibility() = default;

    /// Whether the session's accessibility switch is on. False if no service provides the switch.
    virtual bool isEnabled() = 0;
    /// Turns the switch on. A failure is ignored.
    virtual void enable() = 0;

    /// Looks for the vertically scrolling area at a place. `answer` gets the visible part of its
    /// content without scroll bars, in global device pixels, or an empty rectangle if nothing is
    /// known. It is called once, from the event loop, after about a second at most. A new question
    /// cancels the previous one.
    virtual void findScrollingArea(const Place &place,
                                   std::function<void(const QRect &)> answer) = 0;
    /// Cancels the question; its answer is not called any more.
    virtual void dropQuestion() = 0;
};
