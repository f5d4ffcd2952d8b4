#include "benchmarks/MicroBenchmarks.h"

#include "benchmarks/Paired.h"

#include <nox/log/Logger.h>

#include <QLoggingCategory>

int main(int argc, char *argv[])
{
    // Without the library's debug messages and log records.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    Nox::Logger::init("/dev/null", Nox::LOG_FATAL, 0);

    // First, because it forks the process, which is still small.
    MicroBenchmarks::addMemory();
    // Before the large pages, whose freed memory would make a copy of a list cheaper than in most hosts.
    MicroBenchmarks::addLists();
    MicroBenchmarks::addLog();
    MicroBenchmarks::addStatusTexts();
    MicroBenchmarks::addPages();
    return Paired::run(argc, argv);
}
