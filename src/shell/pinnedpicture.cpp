#include "shell/pinnedpicture.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double s_zoomStep = 1.1;
constexpr double s_opacityStep = 0.1;
// Zooming there and back leads to 1 again, and not to what rounding has left of it.
constexpr double s_nearlyOne = 0.04;

}  // namespace

QSize PinnedPicture::shownSize() const
{
    const auto length = [this](int pixels) {
        return std::max(1, static_cast<int>(std::lround(pixels * zoom)));
    };
    return {length(picture.width()), length(picture.height())};
}

double PinnedPicture::steppedZoom(int steps, QSize most) const
{
    double result = zoom * std::pow(s_zoomStep, steps);
    if (std::abs(result - 1) < s_nearlyOne)
        result = 1;
    if (steps > 0) {
        const double room = std::min(double(most.width()) / picture.width(),
                                     double(most.height()) / picture.height());
        result = std::min(result, std::max(zoom, room));
    }
    return std::clamp(result, s_leastZoom, s_mostZoom);
}

double PinnedPicture::steppedOpacity(int steps) const
{
    const double tenths = std::round(opacity / s_opacityStep) + steps;
    return std::clamp(tenths * s_opacityStep, s_leastOpacity, 1.0);
}

void PinnedPicture::zoomAt(double newZoom, QPoint point)
{
    const QPointF at = QPointF(point - place) / zoom;
    zoom = newZoom;
    place = point - (at * zoom).toPoint();
}
