#include "comparison.h"

#include "config/applicationrecord.h"
#include "config/settings.h"

#include <QFileInfo>
#include <QObject>

#include <benchmark/benchmark.h>

namespace {

// Reads an attribute of the last button in the tree, so that the search is as long as possible.
void buttonAttribute(benchmark::State &state)
{
    g_ResourceFileName =
        QFileInfo(QStringLiteral(BENCH_PROGRAM)).path() + QStringLiteral("/SnapWorkbench.xml");
    QObject window;
    window.setObjectName(QStringLiteral("DigDetail"));
    const QString section = QStringLiteral("BtnColorFlag");
    for (auto _ : state)
        benchmark::DoNotOptimize(GetBtnAttr(&window, section, 4));
}

BENCHMARK(buttonAttribute)->Unit(benchmark::kMicrosecond)->Repetitions(5);

[[maybe_unused]] const bool s_registered =
    addComparison({.what = "one `GetBtnAttr` in the full tree",
                   .measured = "buttonAttribute",
                   .unit = "microseconds",
                   .limit = atMost(20)});

}  // namespace
