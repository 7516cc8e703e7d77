#pragma once

#include <QRect>
#include <QWidget>

#include <array>

/// A thin outline around a part of the screen, in four windows that lie outside of it: no window
/// that shines through is needed for it, and clicks in the part reach what lies there.
class AreaOutline
{
public:
    AreaOutline();

    /// Shows it around `area`, global device pixels, or moves it there.
    void show(const QRect &area);

private:
    std::array<QWidget, 4> m_sides;
};
