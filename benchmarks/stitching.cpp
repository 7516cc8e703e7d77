// Views of a page in a browser-sized window, scrolled by a few clicks of the wheel.

#include "comparison.h"
#include "memory.h"

#include "helper/scrollpage.h"
#include "helper/stitcher.h"

#include <benchmark/benchmark.h>

#include <cstring>

namespace {

constexpr QSize s_view(1920, 1000);
constexpr int s_step = 240;
constexpr int s_limit = 30000;
const Frame s_frame{.header = 80, .scrollBar = 15};

const QImage &page()
{
    static const QImage s_page = textPage(s_view.width() - s_frame.scrollBar, 4000);
    return s_page;
}

QImage view(int offset) { return s_frame.view(page(), offset, s_view); }

void movement(benchmark::State &state)
{
    const QImage before = view(100);
    const QImage after = view(100 + s_step);
    for (auto _ : state)
        if (findMovement(before, after).rows != s_step)
            state.SkipWithError("wrong distance");
}

// The distance at which most rows of the later picture equal those of the earlier one. Header and
// scroll bar are excluded here, which the program has to find out itself.
int plainMovement(const QImage &before, const QImage &after)
{
    const size_t width = sizeof(QRgb) * static_cast<size_t>(after.width() - s_frame.scrollBar);
    int best = 0;
    int bestCount = 0;
    for (int distance = 1; distance < after.height(); ++distance) {
        int count = 0;
        for (int y = s_frame.header; y + distance < after.height(); ++y)
            count +=
                std::memcmp(after.constScanLine(y), before.constScanLine(y + distance), width) == 0;
        if (count > bestCount) {
            bestCount = count;
            best = distance;
        }
    }
    return best;
}

void plainMovement(benchmark::State &state)
{
    const QImage before = view(100);
    const QImage after = view(100 + s_step);
    for (auto _ : state)
        if (plainMovement(before, after) != s_step)
            state.SkipWithError("wrong distance");
}

// Computes a view of a page that is too long to be in memory besides the result.
QImage endlessView(int offset)
{
    QImage picture = plainPage(s_view.width(), s_view.height());
    for (int y = 0; y < s_view.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < s_view.width(); ++x)
            line[x] = (static_cast<QRgb>(offset + y) * 2654435761U + static_cast<QRgb>(x)) >> 8;
    }
    return picture;
}

// The highest memory usage from the first view to the finished picture.
void stitchingMemory(benchmark::State &state)
{
    for (auto _ : state) {
        const double before = residentBytes();
        forgetHighestBytes();
        ScrollStitcher stitcher(s_limit);
        for (int offset = 0; !stitcher.isFull(); offset += s_step)
            stitcher.add(endlessView(offset));
        const QImage picture = stitcher.finish();
        if (picture.height() != s_limit)
            state.SkipWithError("not the whole page");
        state.counters["value"] =
            (highestBytes() - before) / static_cast<double>(picture.sizeInBytes());
    }
}

BENCHMARK(movement)->Unit(benchmark::kMillisecond)->Repetitions(5);
BENCHMARK(plainMovement)->Unit(benchmark::kMillisecond)->Repetitions(5);
BENCHMARK(stitchingMemory)->Iterations(1)->Repetitions(3);

[[maybe_unused]] const bool s_registered =
    addComparison({.what = "processor time of finding how far a view of 1920 x 1000 has scrolled, "
                           "with a sticky header "
                           "and a scroll bar",
                   .measured = "movement",
                   .processorTime = true,
                   .unit = "ms",
                   .limit = atMost(8)}) &&
    addComparison({.what = "the same, against comparing rows at every distance",
                   .measured = "movement",
                   .against = "plainMovement",
                   .faster = true,
                   .processorTime = true,
                   .limit = atLeast(2)}) &&
    addComparison({.what = "memory while stitching 30,000 rows",
                   .measured = "stitchingMemory",
                   .unit = "times the picture",
                   .limit = atMost(1.3)});

}  // namespace
