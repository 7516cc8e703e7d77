#include "base/planegeometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

namespace {

// A reader would expect exact factors, but the rough ones are kept on purpose: shapes must come out
// as they always did.
constexpr double s_degreesPerRadian = 57.29578;
constexpr double s_radiansPerDegree = 0.0174533;
constexpr double s_equal = 0.00004;
constexpr double s_axis = 0.00001;
constexpr double s_axisRatio = 100000;
constexpr double s_noHeight = 0.001;
constexpr double s_snap = 0.99999;
constexpr double s_slack = 0.1;

bool within(double value, double limit) { return value > -limit && value < limit; }

/// The direction of a line along an axis, in quarter turns from 0 to 3.
std::optional<int> axisOf(double dx, double dy)
{
    if (within(dx, s_axis) || std::abs(dy) > std::abs(s_axisRatio * dx)) {
        if (within(dy, s_noHeight))
            return 0;
        return dy > 0 ? 1 : 3;
    }
    if (within(dy, s_axis) || std::abs(dx) > std::abs(s_axisRatio * dy))
        return dx > 0 ? 0 : 2;
    return {};
}

double slopeAngle(double dx, double dy)
{
    return std::atan2(static_cast<float>(dy), static_cast<float>(dx));
}

double mean(double a, double b) { return (a + b) / 2; }

struct Line {
    QPointF from;
    QPointF to;
    double angle = CalAngle_Deg(from, to);

    bool isHorizontal() const { return angle == 0 || angle == 180; }
    bool isVertical() const { return angle == 90 || angle == 270; }
    double slope() const { return (to.y() - from.y()) / (to.x() - from.x()); }
    double intercept() const { return from.y() - from.x() * slope(); }
    double meanX() const { return mean(from.x(), to.x()); }
    double meanY() const { return mean(from.y(), to.y()); }
    bool spansX(double x, double slack) const { return spans(x, from.x(), to.x(), slack); }
    bool spansY(double y, double slack) const { return spans(y, from.y(), to.y(), slack); }

private:
    static bool spans(double value, double a, double b, double slack)
    {
        return !(value < a - slack && value < b - slack) &&
               !(value > a + slack && value > b + slack);
    }
};

}  // namespace

int RoundTo(long double value)
{
    const long double whole = std::floor(value);
    return static_cast<int>(whole) + (value - whole >= 0.5L ? 1 : 0);
}

bool EquFloat(float a, float b) { return within(a - b, s_equal); }

bool EquFloat1(float a, float b, float tolerance)
{
    const float difference = a - b;
    return difference > -tolerance && difference < tolerance;
}

double RadToDeg(double angle) { return angle * s_degreesPerRadian; }

double DegToRad(double angle) { return angle * s_radiansPerDegree; }

void SinCos(long double angle, long double &sine, long double &cosine)
{
    const auto narrow = static_cast<float>(angle);
    sine = std::sin(narrow);
    cosine = std::cos(narrow);
}

float DistanceTo(const QPointF &a, const QPointF &b)
{
    const QPointF d = b - a;
    return static_cast<float>(std::sqrt(d.x() * d.x() + d.y() * d.y()));
}

QPointF RotateByRad(float angle, const QPointF &point, const QPointF &origin)
{
    if (within(angle, s_equal))
        return point;
    const float radius = DistanceTo(point, origin);
    const QPointF unit = within(radius, s_equal) ? QPointF(1, 0) : (point - origin) / radius;
    long double sine = 0;
    long double cosine = 0;
    SinCos(angle, sine, cosine);
    if (std::abs(sine) > s_snap) {
        sine = sine > 0 ? 1 : -1;
        cosine = 0;
    } else if (std::abs(cosine) > s_snap) {
        sine = 0;
        cosine = cosine > 0 ? 1 : -1;
    }
    const long double x = origin.x() + radius * (unit.x() * cosine - unit.y() * sine);
    const long double y = origin.y() + radius * (unit.x() * sine + unit.y() * cosine);
    return {static_cast<double>(x), static_cast<double>(y)};
}

QPointF RotateByDeg(float angle, const QPointF &point, const QPointF &origin)
{
    return RotateByRad(static_cast<float>(DegToRad(angle)), point, origin);
}

double CalAngle_Deg(const QPointF &from, const QPointF &to)
{
    const double dx = to.x() - from.x();
    const double dy = to.y() - from.y();
    if (const std::optional<int> axis = axisOf(dx, dy))
        return 90 * *axis;
    const double angle = RadToDeg(slopeAngle(dx, dy));
    return dy > 0 ? angle : angle + 360;
}

double CalAngle(const QPointF &from, const QPointF &to)
{
    const double dx = to.x() - from.x();
    const double dy = to.y() - from.y();
    if (const std::optional<int> axis = axisOf(dx, dy))
        return *axis * (std::numbers::pi / 2);
    const double angle = slopeAngle(dx, dy);
    return dy > 0 ? angle : angle + 2 * std::numbers::pi;
}

bool LineCrossLine(const QPointF &a1, const QPointF &a2, const QPointF &b1, const QPointF &b2,
                   QPointF &crossing)
{
    const Line a{a1, a2};
    const Line b{b1, b2};
    const bool bSloped = !b.isHorizontal() && !b.isVertical();
    if ((a.isHorizontal() && b.isHorizontal()) || (a.isVertical() && b.isVertical()))
        return false;
    if (a.isHorizontal()) {
        const double y = a.meanY();
        crossing = {bSloped ? (b2.x() * b.slope() + y - b2.y()) / b.slope() : b.meanX(), y};
    } else if (a.isVertical()) {
        const double x = a.meanX();
        crossing = {x, bSloped ? b.slope() * x + b2.y() - b.slope() * b2.x() : b.meanY()};
    } else if (b.isVertical()) {
        // A reader would expect the mean height, but the height at the line's first point is used,
        // on purpose.
        crossing = {b.meanX(), a.slope() * b1.x() + a.intercept()};
    } else if (b.isHorizontal()) {
        crossing = {(b1.y() - a.intercept()) / a.slope(), b.meanY()};
    } else {
        const double turn = std::abs(a.angle - b.angle);
        if (turn < s_slack || within(turn - 180, s_slack))
            return false;
        const double x = (b.intercept() - a.intercept()) / (a.slope() - b.slope());
        crossing = {x, a.slope() * x + a.intercept()};
    }
    if ((a.isHorizontal() || a.isVertical()) && bSloped && !a.spansX(crossing.x(), 0))
        return false;
    return a.spansX(crossing.x(), s_slack) && a.spansY(crossing.y(), s_slack) &&
           b.spansX(crossing.x(), s_slack) && b.spansY(crossing.y(), s_slack);
}
