#pragma once

#include <functional>
#include <stdexcept>
#include <string>

/**
 * Comparisons of two pieces of work by the ratio of their costs.
 *
 * Both are measured in turn, many times, in changing order, so that whatever else the machine does hits
 * both. Each pair of measurements gives one ratio; their median counts. The ratios in the middle of the
 * sorted row span an interval that holds the true median with 95 % probability, whatever the distribution;
 * a bar is exceeded when that whole interval lies above it.
 */
namespace Paired {

/** One measurement: does the work and returns what it cost, mostly seconds. */
using Measure = std::function<double()>;

/** The two sides of a comparison. The ratio is that of the subject to the baseline. */
struct Sides {
    Measure subject;
    Measure baseline;
};

/** A comparison. */
struct Comparison {
    std::string name;
    double bar;                  ///< the ratio that must not be exceeded
    int pairs;                   ///< number of measurements of each side
    std::function<Sides()> make; ///< prepares the data, when the comparison's turn has come
};

/** Adds a comparison to those that run() makes. */
void add(Comparison comparison);

/** Gives up the running comparison: its two sides do not do the same work. */
class Mismatch : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/** Processor time of this thread, in seconds: what other programs do meanwhile does not count. */
double processorTime();

/** Time that has passed, in seconds. */
double wallTime();

/** Processor time that @p work takes. */
template <typename Work>
double processorTimeOf(Work work)
{
    const double begin = processorTime();
    work();
    return processorTime() - begin;
}

/** Passed time that @p work takes. */
template <typename Work>
double wallTimeOf(Work work)
{
    const double begin = wallTime();
    work();
    return wallTime() - begin;
}

/**
 * Makes the comparisons and prints a table of their ratios. Takes Google Benchmark's options, such as
 * --benchmark_filter=REGEX and --benchmark_out=FILE.
 * @return 0, or 1 when a bar is exceeded or a comparison could not be made
 */
int run(int argc, char *argv[]);

} // namespace Paired
