#pragma once

/** The comparisons that nox_bench makes, subject by subject. */
namespace MicroBenchmarks {

void addMemory();
void addPages();
void addStatusTexts();
void addLists();
void addLog();

} // namespace MicroBenchmarks
