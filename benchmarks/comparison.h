#pragma once

#include <string>

/// A line of the closing table: how the median of one benchmark stands to that of another, or,
/// without another, the median itself.
struct Comparison {
    std::string what{};
    std::string measured{};  ///< a benchmark's name
    std::string against{};   ///< a benchmark's name; empty for an absolute number
    bool faster = false;     ///< tell how many times faster, and not how many times as much
    std::string unit{};      ///< of an absolute number
    std::string limit{};     ///< what is aimed at
};

/// Registers a line; called before main.
bool addComparison(Comparison comparison);
