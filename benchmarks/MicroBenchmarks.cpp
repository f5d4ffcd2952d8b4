#include "benchmarks/MicroBenchmarks.h"

#include "benchmarks/Paired.h"

#include <nox/log/Logger.h>

#include <QLoggingCategory>

int main(int argc, char *argv[])
{
    // The library's notes and records are not what is measured, but for where the log is.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    Nox::Logger::init("/dev/null", Nox::LOG_FATAL, 0);

    // First, while the process is small: it is forked for the measurement.
    MicroBenchmarks::addMemory();
    // Then what makes long lists, which get fresh memory from the system each time, as in most hosts. Large
    // pages would leave so much free memory behind that a copy of a list would look cheap beside all else.
    MicroBenchmarks::addLists();
    MicroBenchmarks::addLog();
    MicroBenchmarks::addStatusTexts();
    MicroBenchmarks::addPages();
    return Paired::run(argc, argv);
}
