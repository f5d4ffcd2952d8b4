#pragma once

#include <cstddef>
#include <cstdint>

/** A long row of numbers without order, the same in every run, so that every run measures the same data. */
class Numbers
{
public:
    /** A number below @p end. */
    size_t below(size_t end)
    {
        m_state = m_state * 6364136223846793005U + 1442695040888963407U;
        return static_cast<size_t>(m_state >> 33) % end;
    }

private:
    std::uint64_t m_state = 1;
};
