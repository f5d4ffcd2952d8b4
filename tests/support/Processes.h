#pragma once

#include <QList>

/** Information of the kernel about processes. */
class Processes
{
public:
    Processes() = delete;

    /** Whether a process exists and is no zombie. */
    static bool isRunning(qint64 pid);

    /** The children of this process, zombies included. */
    static QList<qint64> children();

    /** Ends a process at once, if it runs. */
    static void end(qint64 pid);

    static qint64 residentBytes();

#if defined(__SANITIZE_ADDRESS__)
    static constexpr bool isMemoryMeasurable = false; // freed memory is kept back
#elif defined(__has_feature)
    static constexpr bool isMemoryMeasurable = !__has_feature(address_sanitizer);
#else
    static constexpr bool isMemoryMeasurable = true;
#endif
};
