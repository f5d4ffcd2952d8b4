#include <nox/jobs/TransferFigures.h>

namespace Nox {

TransferFigures::TransferFigures(qint64 total, qint64 processed, qint64 speed)
    : m_total(qMax<qint64>(0, total))
    , m_processed(qMax<qint64>(0, processed))
    , m_speed(qMax<qint64>(0, speed))
{
    if (m_total > 0)
        m_processed = qMin(m_processed, m_total);
}

TransferFigures TransferFigures::ofTime(qint64 total, qint64 processed, qint64 speed)
{
    TransferFigures figures(total, processed, speed);
    figures.m_unit = Unit::Time;
    return figures;
}

TransferFigures TransferFigures::withoutSpeed() const
{
    TransferFigures figures(*this);
    figures.m_speed = 0;
    return figures;
}

bool TransferFigures::isEmpty() const
{
    return m_total == 0 && m_processed == 0;
}

int TransferFigures::percent() const
{
    if (m_total == 0)
        return 0;
    if (m_processed == m_total)
        return 100;
    return qMin(99, static_cast<int>(100.0 * static_cast<double>(m_processed) / static_cast<double>(m_total)));
}

qint64 TransferFigures::secondsLeft() const
{
    if (m_total == 0 || m_speed == 0)
        return -1;
    const qint64 left = m_total - m_processed;
    return left / m_speed + (left % m_speed == 0 ? 0 : 1);
}

QString TransferFigures::countText(qint64 count, const QLocale &locale) const
{
    return m_unit == Unit::Time ? timeText(count / 1000)
                                : locale.formattedDataSize(count, 1, QLocale::DataSizeSIFormat);
}

QString TransferFigures::amountText(const QLocale &locale) const
{
    if (m_total > 0)
        return tr("%1 / %2").arg(countText(m_processed, locale), countText(m_total, locale));
    return m_processed > 0 ? countText(m_processed, locale) : QString();
}

QString TransferFigures::speedText(const QLocale &locale) const
{
    if (m_speed == 0)
        return {};
    if (m_unit == Unit::Time)
        return tr("%1x", "times as fast as it plays").arg(locale.toString(static_cast<double>(m_speed) / 1000, 'f', 1));
    return tr("%1/s").arg(countText(m_speed, locale));
}

QString TransferFigures::timeLeftText() const
{
    return timeText(secondsLeft());
}

QString TransferFigures::timeText(qint64 seconds)
{
    if (seconds < 0)
        return {};
    return QStringLiteral("%1:%2:%3")
        .arg(seconds / 3600)
        .arg(seconds / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

} // namespace Nox
