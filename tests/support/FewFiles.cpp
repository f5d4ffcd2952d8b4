#include "tests/support/FewFiles.h"

#include <sys/resource.h>

namespace {

unsigned long exchangeLimit(unsigned long limit)
{
    rlimit files{};
    getrlimit(RLIMIT_NOFILE, &files);
    const auto before = files.rlim_cur;
    files.rlim_cur = limit;
    setrlimit(RLIMIT_NOFILE, &files);
    return before;
}

} // namespace

FewFiles::FewFiles()
    : m_limit(exchangeLimit(3))
{
}

FewFiles::~FewFiles()
{
    exchangeLimit(m_limit);
}
