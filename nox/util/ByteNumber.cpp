#include <nox/util/ByteNumber.h>

#include <nox/util/UnitText.h>

namespace Nox {

ByteNumber::ByteNumber(qint64 value)
    : m_value(value)
{
}

ByteNumber::ByteNumber(QString text)
    : m_value(UnitText::toNumber(text.remove(QLatin1Char('B'), Qt::CaseInsensitive), 1024))
{
}

qint64 ByteNumber::value()
{
    return m_value;
}

QString ByteNumber::toString()
{
    m_value = qMax(m_value, qint64{0});
    return UnitText::fromNumber(m_value, 1024);
}

QString ByteNumber::toStringB()
{
    return toString() + QLatin1Char('B');
}

} // namespace Nox
