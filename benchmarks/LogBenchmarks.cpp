#include "benchmarks/MicroBenchmarks.h"
#include "benchmarks/Paired.h"

#include <nox/log/Logger.h>

#include <benchmark/benchmark.h>

#include <cstdarg>
#include <cstdio>
#include <string>

namespace {

constexpr size_t capacity = 128000;
constexpr int runs = 20'000;

// With the arguments as a list, as in a logger.
[[gnu::noinline, gnu::format(printf, 1, 2)]] void formatOnly(const char *format, ...)
{
    char message[capacity];
    va_list arguments;
    va_start(arguments, format);
    static_cast<void>(std::vsnprintf(message, sizeof message, format, arguments));
    va_end(arguments);
    benchmark::DoNotOptimize(message);
}

Paired::Sides droppedRecord(const std::string &text)
{
    const auto log = [text] {
        return Paired::processorTimeOf([&text] {
            for (int i = 0; i < runs; ++i)
                Nox::Logger::log(Nox::LOG_DEBUG, "", "YdExtractor.cpp", "ydReadOutputData", 99, "url %s ",
                                 text.c_str());
        });
    };
    const auto format = [text] {
        return Paired::processorTimeOf([&text] {
            for (int i = 0; i < runs; ++i)
                formatOnly("url %s ", text.c_str());
        });
    };
    return {log, format};
}

} // namespace

void MicroBenchmarks::addLog()
{
    Paired::add({"log: dropped record / vsnprintf, 30 bytes", 2.0, 60,
                 [] { return droppedRecord("https://example.org/watch?v=ab"); }});
    Paired::add(
        {"log: dropped record / vsnprintf, 4 kB", 2.0, 60, [] { return droppedRecord(std::string(4096, 'x')); }});
}
