#pragma once

#include <Qt>

#include <array>

/// An arrow key and its direction: `axis` is 0 for x and 1 for y, `step` is 1 or -1 along that
/// axis.
struct ArrowKey {
    int key = 0;
    int axis = 0;
    int step = 0;
};

constexpr std::array<ArrowKey, 4> s_arrows{{
    {Qt::Key_Left, 0, -1},
    {Qt::Key_Right, 0, 1},
    {Qt::Key_Up, 1, -1},
    {Qt::Key_Down, 1, 1},
}};
