#include "MicroBenchmarks.h"

#include "Paired.h"

#include <nox/log/Logger.h>

#include <QLoggingCategory>

int main(int argc, char *argv[])
{
    // The library's notes and records are not what is measured, but for where the log is.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    Nox::Logger::init("/dev/null", Nox::LOG_FATAL, 0);

    // First, while the process is small: it is forked for the measurement.
    MicroBenchmarks::addMemory();
    MicroBenchmarks::addPages();
    MicroBenchmarks::addStatusTexts();
    MicroBenchmarks::addLists();
    MicroBenchmarks::addLog();
    return Paired::run(argc, argv);
}
