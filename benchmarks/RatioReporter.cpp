#include "benchmarks/RatioReporter.h"

#include <cstdio>
#include <string>

namespace Paired {

namespace {

// Why the benchmark failed, or null. Google Benchmark 1.8 renamed the fields; the first is that of 1.7.
template <typename Run>
auto failure(const Run &run) -> decltype(&run.error_message)
{
    return run.error_occurred ? &run.error_message : nullptr;
}

template <typename Run>
auto failure(const Run &run) -> decltype(&run.skip_message)
{
    return run.skipped ? &run.skip_message : nullptr;
}

} // namespace

bool RatioReporter::ReportContext(const Context &context)
{
    static_cast<void>(context);
    static_cast<void>(
        std::printf("%-44s %7s %17s %7s   %11s %11s\n", "", "ratio", "95 % interval", "bar", "subject", "baseline"));
    return true;
}

void RatioReporter::ReportRuns(const std::vector<Run> &runs)
{
    for (const Run &run : runs)
        reportRun(run);
}

bool RatioReporter::hasPassed() const
{
    return m_hasPassed;
}

void RatioReporter::reportRun(const Run &run)
{
    const std::string name = run.run_name.function_name;
    if (const std::string *message = failure(run)) {
        m_hasPassed = false;
        static_cast<void>(std::printf("%-44s %s\n", name.c_str(), message->c_str()));
        return;
    }
    const auto counter = [&run](const char *key) { return run.counters.at(key).value; };
    const double bar = counter("bar");
    const char *verdict = "";
    if (counter("low") > bar) {
        verdict = "EXCEEDED";
        m_hasPassed = false;
    } else if (counter("ratio") > bar) {
        verdict = "above, but within noise";
    }
    static_cast<void>(std::printf("%-44s %7.3f  [%6.3f, %6.3f] %7.2f   %11.4g %11.4g   %s\n", name.c_str(),
                                  counter("ratio"), counter("low"), counter("high"), bar, counter("subject"),
                                  counter("baseline"), verdict));
    static_cast<void>(std::fflush(stdout));
}

} // namespace Paired
