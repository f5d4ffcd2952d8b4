#include "hosts/common/GrowthMeter.h"

namespace NoxHost {

namespace {

constexpr qint64 windowMs = 5000; // a speed that people can read, and that does not outlive a stop

} // namespace

void GrowthMeter::add(qint64 bytes, qint64 now)
{
    m_samples.append({bytes, now});
    while (m_samples.size() > 2 && now - m_samples.constFirst().second > windowMs)
        m_samples.removeFirst();
}

TransferFigures GrowthMeter::figures() const
{
    if (m_samples.isEmpty())
        return {};
    const auto &[oldBytes, oldTime] = m_samples.constFirst();
    const auto &[newBytes, newTime] = m_samples.constLast();
    const qint64 elapsed = newTime - oldTime;
    const double speed =
        elapsed > 0 ? 1000.0 * static_cast<double>(newBytes - oldBytes) / static_cast<double>(elapsed) : 0;
    return {0, newBytes, static_cast<qint64>(qMax(0.0, speed))};
}

} // namespace NoxHost
