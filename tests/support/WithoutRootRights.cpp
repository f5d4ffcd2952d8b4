#include "tests/support/WithoutRootRights.h"

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

WithoutRootRights::WithoutRootRights()
{
    setOverride(false);
}

WithoutRootRights::~WithoutRootRights()
{
    setOverride(true);
}

void WithoutRootRights::setOverride(bool on)
{
    __user_cap_header_struct header{};
    header.version = _LINUX_CAPABILITY_VERSION_3;
    __user_cap_data_struct data[_LINUX_CAPABILITY_U32S_3]{};
    constexpr auto mask = 1U << CAP_DAC_OVERRIDE;
    if (geteuid() != 0 || syscall(SYS_capget, &header, data) != 0)
        return;
    data[0].effective = on ? data[0].effective | (data[0].permitted & mask) : data[0].effective & ~mask;
    syscall(SYS_capset, &header, data);
}
