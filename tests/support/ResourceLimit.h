#pragma once

#include <sys/resource.h>

/** A limit of the system for this process while this object exists. */
class ResourceLimit
{
public:
    ResourceLimit(int resource, rlim_t limit) ///< a resource of setrlimit()
        : m_resource(resource)
    {
        getrlimit(resource, &m_before);
        const rlimit lower{limit, m_before.rlim_max};
        setrlimit(resource, &lower);
    }
    ~ResourceLimit() { setrlimit(m_resource, &m_before); }
    ResourceLimit(const ResourceLimit &) = delete;
    ResourceLimit &operator=(const ResourceLimit &) = delete;

private:
    int m_resource;
    rlimit m_before{};
};
