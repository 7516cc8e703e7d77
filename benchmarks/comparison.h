#pragma once

#include <string>

/// What a figure is held to.
struct Limit {
    enum class Kind {
        None,     ///< told, and held to nothing
        AtMost,   ///< the smaller, the better
        AtLeast,  ///< the larger, the better
    };
    Kind kind = Kind::None;
    double value = 0;
};

constexpr Limit atMost(double value) { return {Limit::Kind::AtMost, value}; }
constexpr Limit atLeast(double value) { return {Limit::Kind::AtLeast, value}; }

/// A line of the final table: the ratio of one benchmark's median to that of another, or the median
/// itself if there is no other.
struct Comparison {
    std::string what{};
    std::string measured{};      ///< a benchmark's name
    std::string against{};       ///< a benchmark's name; empty for an absolute number
    bool faster = false;         ///< tell how many times faster, and not how many times as much
    bool processorTime = false;  ///< of times, that of this thread, and not what a clock shows
    std::string unit{};          ///< of an absolute number
    Limit limit{};
};

/// Registers a line of the table; called before main.
bool addComparison(Comparison comparison);
