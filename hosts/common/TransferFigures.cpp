#include "hosts/common/TransferFigures.h"

namespace NoxHost {

namespace {

QString byteText(qint64 bytes, const QLocale &locale)
{
    return locale.formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}

} // namespace

TransferFigures::TransferFigures(qint64 total, qint64 done, qint64 speed)
    : m_total(qMax<qint64>(0, total))
    , m_done(qBound<qint64>(0, done, m_total))
    , m_speed(qMax<qint64>(0, speed))
{
}

qint64 TransferFigures::total() const
{
    return m_total;
}

qint64 TransferFigures::done() const
{
    return m_done;
}

qint64 TransferFigures::speed() const
{
    return m_speed;
}

int TransferFigures::percent() const
{
    if (m_total == 0)
        return 0;
    if (m_done == m_total)
        return 100;
    return qMin(99, static_cast<int>(100.0 * static_cast<double>(m_done) / static_cast<double>(m_total)));
}

qint64 TransferFigures::secondsLeft() const
{
    if (m_total == 0 || m_speed == 0)
        return -1;
    const qint64 left = m_total - m_done;
    return left / m_speed + (left % m_speed == 0 ? 0 : 1);
}

QString TransferFigures::amountText(const QLocale &locale) const
{
    return m_total == 0 ? QString() : tr("%1 / %2").arg(byteText(m_done, locale), byteText(m_total, locale));
}

QString TransferFigures::speedText(const QLocale &locale) const
{
    return m_speed == 0 ? QString() : tr("%1/s").arg(byteText(m_speed, locale));
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

} // namespace NoxHost
