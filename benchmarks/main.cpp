// Every benchmark stands beside the plain way of doing the same work, and the closing table tells
// their ratios: the times themselves are a machine's, the ratios are the program's. A ratio that is
// not kept, or a benchmark that gave none, makes this end with code 1.

#include "comparison.h"

#include "platform/services.h"

#include <QApplication>
#include <QLocale>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace {

std::vector<Comparison> &comparisons()
{
    static std::vector<Comparison> s_comparisons;
    return s_comparisons;
}

// Three digits at the least, as many as a reader takes in.
QString number(double value)
{
    const int decimals = value >= 100 ? 0 : value >= 10 ? 1 : 2;
    return QLocale(QLocale::English).toString(value, 'f', decimals);
}

QString unitOf(const Comparison &line)
{
    if (line.against.empty())
        return QString::fromStdString(line.unit);
    return line.faster ? QStringLiteral("times faster") : QStringLiteral("times");
}

QString aimOf(const Comparison &line)
{
    const Limit &limit = line.limit;
    if (limit.kind == Limit::Kind::None)
        return QStringLiteral("none");
    const QString side =
        limit.kind == Limit::Kind::AtMost ? QStringLiteral("at most") : QStringLiteral("at least");
    // As it is written in the code: 20, 1.3.
    return QStringLiteral("%1 %2 %3")
        .arg(side, QLocale(QLocale::English).toString(limit.value, 'g', 6), unitOf(line));
}

bool isKept(const Limit &limit, double value)
{
    switch (limit.kind) {
    case Limit::Kind::AtMost:
        return value <= limit.value;
    case Limit::Kind::AtLeast:
        return value >= limit.value;
    case Limit::Kind::None:
        break;
    }
    return true;
}

class TableReporter : public benchmark::ConsoleReporter
{
public:
    TableReporter() : ConsoleReporter(OO_None) {}

    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            m_run.insert(run.run_name.function_name);
            if (run.aggregate_name != "median")
                continue;
            // A benchmark that does not measure time stores its result in a counter.
            const auto value = run.counters.find("value");
            m_medians[run.run_name.function_name] =
                value == run.counters.end()
                    ? Median{run.GetAdjustedRealTime(), run.GetAdjustedCPUTime()}
                    : Median{value->second.value, value->second.value};
        }
    }

    /// Prints a line for each comparison whose benchmarks were run, and what went wrong. True where
    /// nothing did.
    bool printTable() const
    {
        QStringList failures;
        std::printf("\n| What | Measured | Aim |\n|---|---|---|\n");
        for (const Comparison &line : comparisons()) {
            if (!m_run.count(line.measured) ||
                (!line.against.empty() && !m_run.count(line.against)))
                continue;
            const QString what = QString::fromStdString(line.what);
            const std::optional<double> value = valueOf(line);
            if (!value) {
                failures.append(QStringLiteral("%1: no figure").arg(what));
                continue;
            }
            const QString row = QStringLiteral("| %1 | %2 %3 | %4 |")
                                    .arg(what, number(*value), unitOf(line), aimOf(line));
            std::printf("%s\n", qPrintable(row));
            if (!isKept(line.limit, *value))
                failures.append(QStringLiteral("%1: %2 %3, and the aim is %4")
                                    .arg(what, number(*value), unitOf(line), aimOf(line)));
        }
        std::fflush(stdout);
        for (const QString &failure : std::as_const(failures))
            std::fprintf(stderr, "Not kept: %s\n", qPrintable(failure));
        return failures.isEmpty();
    }

private:
    struct Median {
        double value = 0;
        double processorTime = 0;
    };

    std::optional<double> medianOf(const Comparison &line, const std::string &name) const
    {
        const auto found = m_medians.find(name);
        if (found == m_medians.end())
            return std::nullopt;
        return line.processorTime ? found->second.processorTime : found->second.value;
    }

    std::optional<double> valueOf(const Comparison &line) const
    {
        const std::optional<double> measured = medianOf(line, line.measured);
        if (!measured || line.against.empty())
            return measured;
        const std::optional<double> against = medianOf(line, line.against);
        if (!against)
            return std::nullopt;
        return line.faster ? *against / *measured : *measured / *against;
    }

    std::set<std::string> m_run;  // a benchmark that failed has a run and no median
    std::map<std::string, Median> m_medians;
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
    const bool isKept = reporter.printTable();
    installServices({});
    return isKept ? 0 : 1;
}
