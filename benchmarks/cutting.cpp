#include "comparison.h"

#include "editing/cutting.h"

#include <QImage>
#include <QPainterPath>
#include <QRandomGenerator>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <numbers>

namespace {

constexpr QSize s_picture(3840, 2160);
// The plain method takes minutes for such a picture, so it is measured with sides that are this
// many times shorter, and its time is scaled by the area.
constexpr int s_shorter = 8;

QPainterPath ellipse()
{
    QPainterPath path;
    path.addEllipse(QRectF(QPointF(), s_picture));
    return path;
}

// Points on a circle, moved in or out slightly.
QPainterPath polygon()
{
    QPolygonF points;
    for (int corner = 0; corner < 8; ++corner) {
        const double angle = corner * std::numbers::pi / 4;
        const double reach = corner % 2 ? 0.48 : 0.35;
        points.append({s_picture.width() * (0.5 + reach * std::cos(angle)),
                       s_picture.height() * (0.5 + reach * std::sin(angle))});
    }
    QPainterPath path;
    path.addPolygon(points);
    return path;
}

// A closed line as drawn by a trembling hand.
QPainterPath freehand()
{
    QRandomGenerator random(7);
    QPolygonF points;
    for (int step = 0; step < 2000; ++step) {
        const double angle = step * 2 * std::numbers::pi / 2000;
        const double reach = 0.4 + 0.05 * std::sin(9 * angle) + 0.002 * random.generateDouble();
        points.append(QPointF(s_picture.width() * (0.5 + reach * std::cos(angle)),
                              s_picture.height() * (0.5 + reach * std::sin(angle)))
                          .toPoint());
    }
    QPainterPath path;
    path.addPolygon(points);
    return path;
}

void cut(benchmark::State &state, const QPainterPath &shape)
{
    QImage picture(s_picture, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::red);
    for (auto _ : state)
        cutToShape(picture, shape);
}

void cutPlainly(benchmark::State &state, const QPainterPath &shape)
{
    QImage picture(s_picture / s_shorter, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::red);
    const QPainterPath scaled = QTransform::fromScale(1.0 / s_shorter, 1.0 / s_shorter).map(shape);
    for (auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        for (int y = 0; y < picture.height(); ++y) {
            auto *line = reinterpret_cast<QRgb *>(picture.scanLine(y));
            for (int x = 0; x < picture.width(); ++x) {
                if (!scaled.contains(QPointF(x, y)))
                    line[x] = 0;
            }
        }
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
        state.SetIterationTime(taken.count() * s_shorter * s_shorter);
    }
}

void cutEllipse(benchmark::State &state) { cut(state, ellipse()); }
void cutPolygon(benchmark::State &state) { cut(state, polygon()); }
void cutFreehand(benchmark::State &state) { cut(state, freehand()); }
void cutEllipsePlainly(benchmark::State &state) { cutPlainly(state, ellipse()); }
void cutPolygonPlainly(benchmark::State &state) { cutPlainly(state, polygon()); }
void cutFreehandPlainly(benchmark::State &state) { cutPlainly(state, freehand()); }

// clang-format off
BENCHMARK(cutEllipse)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();
BENCHMARK(cutPolygon)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();
BENCHMARK(cutFreehand)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();
BENCHMARK(cutEllipsePlainly)->Unit(benchmark::kMillisecond)->Repetitions(3)->Iterations(2)->UseManualTime();
BENCHMARK(cutPolygonPlainly)->Unit(benchmark::kMillisecond)->Repetitions(3)->Iterations(2)->UseManualTime();
BENCHMARK(cutFreehandPlainly)->Unit(benchmark::kMillisecond)->Repetitions(3)->Iterations(2)->UseManualTime();
// clang-format on

[[maybe_unused]] const bool s_registered =
    addComparison(
        {.what = "cutting a grab of 3840 x 2160 to an ellipse, against `contains` at every pixel",
         .measured = "cutEllipse",
         .against = "cutEllipsePlainly",
         .faster = true,
         .limit = atLeast(100)}) &&
    addComparison({.what = "the same to a polygon of 8 points",
                   .measured = "cutPolygon",
                   .against = "cutPolygonPlainly",
                   .faster = true,
                   .limit = atLeast(100)}) &&
    addComparison({.what = "the same to a freehand line of 2,000 points",
                   .measured = "cutFreehand",
                   .against = "cutFreehandPlainly",
                   .faster = true,
                   .limit = atLeast(100)});

}  // namespace
