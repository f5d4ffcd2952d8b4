#include "benchmarks/PeakMemory.h"

#include <cstdlib>
#include <fstream>
#include <string>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// A line such as "VmHWM:   12345 kB" of the kernel's account of this process, in bytes.
double statusBytes(const std::string &name)
{
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        double kibibytes = 0;
        if (word == name && status >> kibibytes)
            return kibibytes * 1024;
    }
    return 0;
}

double growthHere(const std::function<void()> &prepare, const std::function<void()> &work)
{
    prepare();
    static_cast<void>(::malloc_trim(0));
    // Five resets the mark of the highest resident size to the present one.
    std::ofstream("/proc/self/clear_refs") << "5" << std::flush;
    const double before = statusBytes("VmHWM:");
    work();
    return statusBytes("VmHWM:") - before;
}

} // namespace

double PeakMemory::growthOf(const std::function<void()> &prepare, const std::function<void()> &work)
{
    int ends[2] = {};
    if (::pipe(ends) != 0)
        return 0;
    const pid_t child = ::fork();
    if (child == 0) {
        const double growth = growthHere(prepare, work);
        const bool isWritten = ::write(ends[1], &growth, sizeof growth) == sizeof growth;
        ::_exit(isWritten ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    ::close(ends[1]);
    double growth = 0;
    if (::read(ends[0], &growth, sizeof growth) != sizeof growth)
        growth = 0;
    ::close(ends[0]);
    if (child > 0)
        ::waitpid(child, nullptr, 0);
    return growth;
}
