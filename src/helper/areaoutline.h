#pragma once

#include <QRect>
#include <QWidget>

#include <array>

/// A thin outline around a part of the screen. It consists of four windows outside of that part, so
/// it needs no translucent window, and clicks inside reach whatever is there.
class AreaOutline
{
public:
    AreaOutline();

    /// Shows the outline around `area`, which is in global device pixels, or moves it there.
    void show(const QRect &area);

private:
    std::array<QWidget, 4> m_sides;
};
