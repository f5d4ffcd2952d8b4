#pragma once

/** A limit of the system for this process while this object exists. */
class ResourceLimit
{
public:
    ResourceLimit(int resource, unsigned long limit); ///< a resource of setrlimit()
    ~ResourceLimit();
    ResourceLimit(const ResourceLimit &) = delete;
    ResourceLimit &operator=(const ResourceLimit &) = delete;

    static ResourceLimit moreMemory(unsigned long megabytes);

    /** False under a sanitizer, which reserves much address space. */
    static bool canLimitMemory();

private:
    int m_resource;
    unsigned long m_before;
};
