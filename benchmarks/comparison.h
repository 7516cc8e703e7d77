#pragma once

#include <string>

/// A line of the final table: the ratio of one benchmark's median to that of another, or the median
/// itself if there is no other.
struct Comparison {
    std::string what{};
    std::string measured{};  ///< a benchmark's name
    std::string against{};   ///< a benchmark's name; empty for an absolute number
    bool faster = false;     ///< prints how many times faster instead of how many times as much
    std::string unit{};      ///< of the median itself
    std::string limit{};     ///< the limit that is aimed at
};

/// Registers a line of the table; called before main.
bool addComparison(Comparison comparison);
