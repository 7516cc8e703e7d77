#include "editing/zoom.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double s_step = 1.4;
constexpr double s_growth = 0.4;
constexpr double s_smallestWidth = 50;  // of a picture as shown
constexpr double s_largestWidth = 3000;
constexpr double s_widthSlack = 0.001;
constexpr double s_notchesToDouble = 3;
constexpr double s_notchSlack = 1e-4;

}  // namespace

float zoomedIn(float scale, int width)
{
    const auto larger = static_cast<float>(scale + s_growth * scale);
    const double limit = std::max(s_largestWidth, static_cast<double>(width));
    const bool isBeyond = width * static_cast<double>(larger) - limit > s_widthSlack;
    return std::max(scale, isBeyond ? static_cast<float>(limit / width) : larger);
}

float zoomedOut(float scale, int width)
{
    const auto smaller = static_cast<float>(scale / s_step);
    return width * static_cast<double>(smaller) - s_smallestWidth < s_widthSlack
               ? static_cast<float>(s_smallestWidth / width)
               : smaller;
}

float zoomWithin(float wanted, int width)
{
    const auto least = static_cast<float>(std::min(1.0, s_smallestWidth / width));
    return std::clamp(wanted, least, s_largestZoom);
}

float zoomedBy(float scale, double notches, int width)
{
    double level = std::log2(static_cast<double>(scale)) * s_notchesToDouble + notches;
    // Steps that lead back end where they began.
    if (std::abs(level - std::round(level)) < s_notchSlack)
        level = std::round(level);
    auto wanted = static_cast<float>(std::exp2(level / s_notchesToDouble));
    if ((scale < 1 && wanted > 1) || (scale > 1 && wanted < 1))
        wanted = 1;
    wanted = zoomWithin(wanted, width);
    // The buttons go further than the wheel.
    return notches > 0 ? std::max(wanted, scale) : std::min(wanted, scale);
}

float zoomToFit(QSize picture, QSize room)
{
    const float across = static_cast<float>(room.width()) / static_cast<float>(picture.width());
    const float down = static_cast<float>(room.height()) / static_cast<float>(picture.height());
    return std::min({across, down, s_largestZoom});
}
