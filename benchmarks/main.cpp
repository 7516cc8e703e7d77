// Each benchmark is compared to a plain implementation of the same work. The final table shows the
// ratios, because times depend on the machine and ratios on the program.

#include "comparison.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <vector>

#include "platform/services.h"

namespace {

std::vector<Comparison> &comparisons()
{
    static std::vector<Comparison> s_comparisons;
    return s_comparisons;
}

class TableReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.aggregate_name != "median")
                continue;
            // A benchmark that does not measure time stores its result in a counter.
            const auto value = run.counters.find("value");
            m_medians[run.run_name.function_name] =
                value == run.counters.end() ? run.GetAdjustedRealTime() : value->second.value;
        }
    }

    void printTable() const
    {
        std::printf("\n| What | Measured | Aim |\n|---|---|---|\n");
        for (const Comparison &line : comparisons()) {
            const auto measured = m_medians.find(line.measured);
            const auto against = m_medians.find(line.against);
            if (measured == m_medians.end() ||
                (!line.against.empty() && against == m_medians.end()))
                continue;
            double value = measured->second;
            std::string unit = line.unit;
            if (!line.against.empty()) {
                value = line.faster ? against->second / value : value / against->second;
                unit = line.faster ? "times faster" : "times";
            }
            std::printf("| %s | %.2f %s | %s |\n", line.what.c_str(), value, unit.c_str(),
                        line.limit.c_str());
        }
    }

private:
    std::map<std::string, double> m_medians;
};

}  // namespace

bool addComparison(Comparison comparison)
{
    comparisons().push_back(std::move(comparison));
    return true;
}

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    installServices(createServices());
    benchmark::Initialize(&argc, argv);
    TableReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printTable();
    installServices({});
    return 0;
}
