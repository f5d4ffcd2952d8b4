#include "tests/support/LittleMemory.h"

#include <fstream>
#include <sys/resource.h>
#include <unistd.h>

namespace {

unsigned long exchangeLimit(unsigned long limit)
{
    rlimit memory{};
    getrlimit(RLIMIT_AS, &memory);
    const auto before = memory.rlim_cur;
    memory.rlim_cur = limit;
    setrlimit(RLIMIT_AS, &memory);
    return before;
}

unsigned long usedBytes()
{
    unsigned long pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<unsigned long>(sysconf(_SC_PAGESIZE));
}

} // namespace

LittleMemory::LittleMemory(unsigned long megabytes)
    : m_limit(exchangeLimit(usedBytes() + (megabytes << 20U)))
{
}

LittleMemory::~LittleMemory()
{
    exchangeLimit(m_limit);
}

bool LittleMemory::isPossible()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return false;
#elif defined(__has_feature)
    return !__has_feature(address_sanitizer) && !__has_feature(thread_sanitizer);
#else
    return true;
#endif
}
