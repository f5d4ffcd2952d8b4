#pragma once

#include <QtGlobal>

#include <limits>

/**
 * Saturating arithmetic. The tool's output may hold any number, which must give neither a wrapped result nor undefined
 * behaviour.
 */
namespace Nox::Saturation {

/** @p value truncated toward zero; beyond the range its nearest limit, 0 for NaN. */
template <typename Integer>
constexpr Integer fromDouble(double value)
{
    using Limits = std::numeric_limits<Integer>;
    // One more than the largest value. Unlike that value, it is always exact as a double.
    constexpr double upperBound = -static_cast<double>(Limits::min());
    if (value >= upperBound)
        return Limits::max();
    if (value < -upperBound)
        return Limits::min();
    return value == value ? static_cast<Integer>(value) : Integer{0};
}

/** Sum of two counts. */
constexpr qint64 sum(qint64 a, qint64 b)
{
    using Limits = std::numeric_limits<qint64>;
    if (b > 0 && a > Limits::max() - b)
        return Limits::max();
    if (b < 0 && a < Limits::min() - b)
        return Limits::min();
    return a + b;
}

/** Product of two 32-bit values. */
constexpr int product(int a, int b)
{
    const qint64 exact = qint64{a} * b;
    return static_cast<int>(
        qBound(qint64{std::numeric_limits<int>::min()}, exact, qint64{std::numeric_limits<int>::max()}));
}

} // namespace Nox::Saturation
