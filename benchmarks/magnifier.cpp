#include "comparison.h"

#include "capture/magnifier.h"
#include "capture/polygonoverlay.h"
#include "config/applicationrecord.h"

#include <QApplication>
#include <QFileInfo>

#include <benchmark/benchmark.h>

#include <ctime>
#include <memory>
#include <vector>

namespace {

constexpr int s_windows = 20;

// A pointer move over an overlay with several windows behind it: grab, scaling, texts and painting.
// The pointer stays away from the magnifier, as it usually does.
void magnifierRefresh(benchmark::State &state)
{
    g_ResourceFileName =
        QFileInfo(QStringLiteral(BENCH_PROGRAM)).path() + QStringLiteral("/SnapWorkbench.xml");
    std::vector<std::unique_ptr<QWidget>> windows;
    for (int i = 0; i < s_windows; ++i) {
        windows.push_back(std::make_unique<QWidget>());
        windows.back()->setGeometry(40 * i, 20 * i, 900, 700);
        windows.back()->show();
    }
    Magnifier magnifier;
    const Magnifier::Settings settings{.wanted = true};
    dlgFreeHand overlay;
    overlay.show();
    magnifier.request(&overlay, eMagOpen, {}, 2, settings);
    int x = 0;
    for (auto _ : state) {
        const std::clock_t before = std::clock();
        x = (x + 1) % 100;
        magnifier.request(&overlay, eMagUpdate, {300 + x, 300}, 2, settings);
        QCoreApplication::processEvents();
        state.SetIterationTime(static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC);
    }
    magnifier.request(&overlay, eMagClose, {}, 2, settings);
}

BENCHMARK(magnifierRefresh)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(200)
    ->Repetitions(5);

[[maybe_unused]] const bool s_registered =
    addComparison({.what = "processor time of one magnifier refresh, 20 windows open",
                   .measured = "magnifierRefresh",
                   .unit = "ms",
                   .limit = atMost(2)});

}  // namespace
