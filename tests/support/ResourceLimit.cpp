#include "tests/support/ResourceLimit.h"

#include <fstream>
#include <sys/resource.h>
#include <unistd.h>

namespace {

unsigned long exchange(int resource, unsigned long limit)
{
    rlimit current{};
    getrlimit(resource, &current);
    const auto before = current.rlim_cur;
    current.rlim_cur = limit;
    setrlimit(resource, &current);
    return before;
}

} // namespace

ResourceLimit::ResourceLimit(int resource, unsigned long limit)
    : m_resource(resource)
    , m_before(exchange(resource, limit))
{
}

ResourceLimit::~ResourceLimit()
{
    exchange(m_resource, m_before);
}

ResourceLimit ResourceLimit::moreMemory(unsigned long megabytes)
{
    unsigned long pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return {RLIMIT_AS, pages * static_cast<unsigned long>(sysconf(_SC_PAGESIZE)) + (megabytes << 20U)};
}

bool ResourceLimit::canLimitMemory()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return false;
#elif defined(__has_feature)
    return !__has_feature(address_sanitizer) && !__has_feature(thread_sanitizer);
#else
    return true;
#endif
}
