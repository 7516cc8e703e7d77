#pragma once

#include <QPointF>

// Points and angles in the plane, in screen coordinates: x grows to the right, y downward, and
// angles grow clockwise. Values that are nearly equal count as equal, and angles near the axes snap
// to them, so that a nearly straight line comes out straight. The tolerances rely on single
// precision.

/// The nearest whole number; halves are rounded up.
int RoundTo(long double value);
/// True when the difference, in single precision, is under 0.00004.
bool EquFloat(float a, float b);
/// True when the difference, in single precision, is under `tolerance`.
bool EquFloat1(float a, float b, float tolerance);
double RadToDeg(double angle);
double DegToRad(double angle);
void SinCos(long double angle, long double &sine, long double &cosine);
float DistanceTo(const QPointF &a, const QPointF &b);
/// `point` turned about `origin` by an angle in radians.
QPointF RotateByRad(float angle, const QPointF &point, const QPointF &origin);
/// `point` turned about `origin` by an angle in degrees.
QPointF RotateByDeg(float angle, const QPointF &point, const QPointF &origin);
/// The direction of the line in degrees, from 0 up to but not including 360. 0 if both points are
/// equal.
double CalAngle_Deg(const QPointF &from, const QPointF &to);
/// The same in radians.
double CalAngle(const QPointF &from, const QPointF &to);
/// Whether two segments cross, with a tolerance of 0.1 at their ends. If so, `crossing` is the
/// point. If not, `crossing` may be the point where the lines would meet; for parallel lines it is
/// left alone.
bool LineCrossLine(const QPointF &a1, const QPointF &a2, const QPointF &b1, const QPointF &b2,
                   QPointF &crossing);
