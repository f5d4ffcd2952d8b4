#include "benchmarks/Paired.h"

#include "benchmarks/RatioReporter.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <utility>
#include <vector>

namespace Paired {

namespace {

double secondsOf(clockid_t clock)
{
    timespec time{};
    static_cast<void>(::clock_gettime(clock, &time)); // these clocks are always there
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// The measurements of one comparison.
struct Samples {
    std::vector<double> subject;
    std::vector<double> baseline;

    void take(const Sides &sides)
    {
        const bool isSubjectFirst = subject.size() % 2 == 0;
        if (isSubjectFirst)
            subject.push_back(sides.subject());
        baseline.push_back(sides.baseline());
        if (!isSubjectFirst)
            subject.push_back(sides.subject());
    }

    std::vector<double> sortedRatios() const
    {
        std::vector<double> ratios;
        ratios.reserve(subject.size());
        std::transform(subject.begin(), subject.end(), baseline.begin(), std::back_inserter(ratios),
                       [](double a, double b) { return a / b; });
        std::sort(ratios.begin(), ratios.end());
        return ratios;
    }
};

void report(benchmark::State &state, const Samples &samples, double bar)
{
    const std::vector<double> ratios = samples.sortedRatios();
    const auto count = static_cast<double>(ratios.size());
    // The number of ratios below the true median is binomial: half of them, plus or minus 1.96 standard deviations.
    const double spread = 0.98 * std::sqrt(count);
    const auto at = [&ratios, count](double position) {
        return ratios[static_cast<size_t>(std::clamp(position, 0.0, count - 1))];
    };
    state.counters["ratio"] = median(ratios);
    state.counters["low"] = at(std::floor(count / 2 - spread));
    state.counters["high"] = at(std::ceil(count / 2 + spread) - 1);
    state.counters["bar"] = bar;
    state.counters["subject"] = median(samples.subject);
    state.counters["baseline"] = median(samples.baseline);
}

void compare(benchmark::State &state, const Comparison &comparison)
{
    try {
        const Sides sides = comparison.make();
        // Not measured: the first run of each side also loads and allocates what is needed only once.
        sides.baseline();
        sides.subject();
        Samples samples;
        for ([[maybe_unused]] auto iteration : state) {
            samples.take(sides);
            state.SetIterationTime(samples.subject.back());
        }
        report(state, samples, comparison.bar);
    } catch (const Mismatch &mismatch) {
        state.SkipWithError(mismatch.what());
    }
}

} // namespace

double processorTime()
{
    return secondsOf(CLOCK_THREAD_CPUTIME_ID);
}

double wallTime()
{
    return secondsOf(CLOCK_MONOTONIC);
}

void add(Comparison comparison)
{
#ifndef __clang_analyzer__ // does not see that the object is stored
    const std::string name = comparison.name;
    const int pairs = comparison.pairs;
    const auto work = [comparison = std::move(comparison)](benchmark::State &state) { compare(state, comparison); };
    benchmark::RegisterBenchmark(name.c_str(), work)->Iterations(pairs)->UseManualTime();
#else
    static_cast<void>(comparison);
    static_cast<void>(compare);
#endif
}

int run(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    RatioReporter reporter;
    const size_t count = benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return count > 0 && reporter.hasPassed() ? 0 : 1;
}

} // namespace Paired
