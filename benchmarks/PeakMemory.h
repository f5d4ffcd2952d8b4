#pragma once

#include <functional>

/** How much memory a piece of work takes. */
namespace PeakMemory {

/**
 * Runs @p prepare and then @p work in a child process, and returns by how many bytes the process's
 * resident memory has grown at the most while @p work ran. What @p prepare allocated and freed again is
 * given back to the system before. Returns 0 when the system does not tell.
 */
double growthOf(const std::function<void()> &prepare, const std::function<void()> &work);

} // namespace PeakMemory
