#pragma once

#include <QList>

/** Information of the kernel about processes. */
namespace Processes {

/** Whether a process exists and is no zombie. */
bool isRunning(qint64 pid);

/** The children of this process, zombies included. */
QList<qint64> children();

/** Ends a process at once, if it runs. */
void end(qint64 pid);

qint64 residentBytes();

#if defined(__SANITIZE_ADDRESS__)
constexpr bool isMemoryMeasurable = false; // freed memory is kept back
#elif defined(__has_feature)
constexpr bool isMemoryMeasurable = !__has_feature(address_sanitizer);
#else
constexpr bool isMemoryMeasurable = true;
#endif

} // namespace Processes
