#include "support/Ratios.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>

#include <sys/resource.h>

namespace {

struct Times
{
    double real = 0; ///< Medians in milliseconds.
    double cpu = 0;
};

/// The usual output, of which the medians are kept.
class Reporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.error_occurred)
                failed = true;
            if (run.aggregate_name == "median")
                medians[run.run_name.function_name + '/' + run.run_name.args] = {
                    run.GetAdjustedRealTime(), run.GetAdjustedCPUTime()};
        }
    }

    std::map<std::string, Times> medians;
    bool failed = false;
};

std::string aimText(double aim)
{
    char text[16] = "";
    if (aim > 0)
        std::snprintf(text, sizeof text, "%.1f", aim);
    return text;
}

} // namespace

Ratios::Ratios(std::vector<int> sizes, int repetitions, Clock clock, int iterations)
    : m_sizes(std::move(sizes))
    , m_repetitions(repetitions)
    , m_clock(clock)
    , m_iterations(iterations)
{
    if (const char *wanted = std::getenv("TSM_BENCH_SIZES")) {
        std::istringstream words(wanted);
        m_sizes.clear();
        for (int size = 0; words >> size;)
            m_sizes.push_back(size);
    }
}

void Ratios::compare(const Measured &subject, const Measured &floor, double aim)
{
    measure(subject);
    measure(floor);
    m_rows.push_back({subject.name, floor.name, aim});
}

void Ratios::measure(const Measured &measured)
{
    const bool known = std::any_of(m_measured.begin(), m_measured.end(),
        [&](const Measured &other) { return other.name == measured.name; });
    if (known)
        return;
    m_measured.push_back(measured);
    auto *benchmark = benchmark::RegisterBenchmark(measured.name.c_str(), measured.function);
    for (const int size : m_sizes)
        benchmark->Arg(size);
    benchmark->Unit(benchmark::kMillisecond)->Repetitions(m_repetitions)->ReportAggregatesOnly();
    if (m_clock == Clock::Manual)
        benchmark->UseManualTime();
    if (m_iterations > 0)
        benchmark->Iterations(m_iterations);
    else
        benchmark->MinTime(0.05);
}

int Ratios::run(int argc, char *argv[])
{
    std::vector<char *> arguments(argv, argv + argc);
    char interleaved[] = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, interleaved);
    int count = argc + 1;
    arguments.push_back(nullptr);
    benchmark::Initialize(&count, arguments.data());
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    std::printf("\n| what | beside | size | ms | floor | ratio | aim | by the clock | growth |\n"
                "|---|---|---:|---:|---:|---:|---:|---:|---:|\n");
    for (const Row &row : m_rows) {
        double smaller = 0;
        for (const int size : m_sizes) {
            const auto timesOf = [&](const std::string &name) {
                return reporter.medians[name + '/' + std::to_string(size)];
            };
            const Times subject = timesOf(row.subject);
            const Times floor = timesOf(row.floor);
            if (subject.real <= 0 || floor.real <= 0)
                continue; // filtered out on the command line
            char clock[16] = "";
            if (m_clock == Clock::Usual)
                std::snprintf(clock, sizeof clock, "%.2f", subject.real / floor.real);
            const auto shown = [this](const Times &times) {
                return m_clock == Clock::Usual ? times.cpu : times.real;
            };
            const double time = shown(subject);
            char growth[16] = "";
            if (smaller > 0)
                std::snprintf(growth, sizeof growth, "%.1f", time / smaller);
            std::printf("| %s | %s | %d | %.3g | %.3g | %.2f | %s | %s | %s |\n",
                row.subject.c_str(), row.floor.c_str(), size, time, shown(floor),
                time / shown(floor), aimText(row.aim).c_str(), clock, growth);
            smaller = time;
        }
    }
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("\nmost memory in use: %ld MB\n", usage.ru_maxrss / 1024);
    return reporter.failed ? 1 : 0;
}
