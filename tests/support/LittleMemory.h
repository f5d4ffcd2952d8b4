#pragma once

/** While it lives, this process can take only a given amount of memory more than it has. */
class LittleMemory
{
public:
    explicit LittleMemory(unsigned long megabytes);
    ~LittleMemory();
    LittleMemory(const LittleMemory &) = delete;
    LittleMemory &operator=(const LittleMemory &) = delete;

    /** Sanitizers reserve more address space than a limit could leave to them. */
    static bool isPossible();

private:
    unsigned long m_limit;
};
