#include <nox/util/ByteNumber.h>

#include <iterator>

namespace Nox {

namespace {

struct Unit {
    QLatin1Char letter;
    int shift;
};

// In the order in which the end of a text is tested.
constexpr Unit units[] = {
    {QLatin1Char('K'), 10}, {QLatin1Char('M'), 20}, {QLatin1Char('G'), 30}, {QLatin1Char('T'), 40}};

} // namespace

ByteNumber::ByteNumber(qint64 value)
    : m_value(value)
{
}

ByteNumber::ByteNumber(QString text)
    : m_value(-1)
{
    text.remove(QLatin1Char('B'), Qt::CaseInsensitive);

    int shift = 0;
    for (const Unit &unit : units) {
        if (text.endsWith(unit.letter, Qt::CaseInsensitive)) {
            text.remove(unit.letter, Qt::CaseInsensitive);
            shift = unit.shift;
            break;
        }
    }

    bool ok = false;
    const qint64 number = text.toLongLong(&ok);
    if (ok)
        m_value = static_cast<qint64>(static_cast<quint64>(number) << shift);
}

qint64 ByteNumber::value()
{
    return m_value;
}

QString ByteNumber::toString()
{
    for (auto unit = std::rbegin(units); unit != std::rend(units); ++unit) {
        const qint64 quotient = m_value / (qint64{1} << unit->shift);
        if (quotient > 0)
            return QString::number(quotient) + unit->letter;
    }
    if (m_value < 0)
        m_value = 0;
    return QString::number(m_value);
}

QString ByteNumber::toStringB()
{
    return toString() + QLatin1Char('B');
}

} // namespace Nox
