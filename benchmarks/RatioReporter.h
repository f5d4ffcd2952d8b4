#pragma once

#include <benchmark/benchmark.h>

namespace Paired {

/** Prints one line for each comparison: the ratio, how sure it is, its bar, and how it stands to it. */
class RatioReporter : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &context) override;
    void ReportRuns(const std::vector<Run> &runs) override;

    /** Whether every comparison could be made and none exceeds its bar. */
    bool hasPassed() const;

private:
    void reportRun(const Run &run);

    bool m_hasPassed = true;
};

} // namespace Paired
