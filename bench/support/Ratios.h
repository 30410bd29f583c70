#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

/// The benchmarks of one program: each is measured beside its floor, the least that the same work
/// can cost, and shown as a ratio to it. Subjects and floors run in turns in random order, so that
/// a busy machine slows both. The table shows processor time, which other programs disturb least,
/// and the ratio by the clock beside it.
class Ratios
{
public:
    using Function = void (*)(benchmark::State &);

    /// One measured function. Its range(0) is the size.
    struct Measured
    {
        std::string name;
        Function function;
    };

    /// Manual: the function tells its times itself, because the work is another process's.
    enum class Clock { Usual, Manual };

    /// The sizes stand ten times apart, so that growth shows; TSM_BENCH_SIZES ("10000 100000")
    /// replaces them. \a repetitions are for the medians.
    explicit Ratios(std::vector<int> sizes, int repetitions = 7, Clock clock = Clock::Usual,
        int iterations = 0);

    /// A row of the table. \a aim is the ratio that the subject should stay within; 0 for none. A
    /// floor may serve several rows, and a subject may be a floor.
    void compare(const Measured &subject, const Measured &floor, double aim = 0);

    /// Measures, prints the usual output and then the table, as Markdown; the program's result.
    int run(int argc, char *argv[]);

private:
    struct Row
    {
        std::string subject;
        std::string floor;
        double aim;
    };

    void measure(const Measured &measured);

    std::vector<int> m_sizes;
    int m_repetitions;
    Clock m_clock;
    int m_iterations;
    std::vector<Measured> m_measured;
    std::vector<Row> m_rows;
};
