// Size texts. The path and text operations stand in files of their own.

#include <nox/util/Utilities.h>

#include <nox/util/ByteCount.h>

#include <iterator>
#include <utility>

namespace Nox {

namespace {

struct DecimalUnit {
    QLatin1Char letter;
    qint64 factor;
};

// In the order in which the end of a text is tested.
constexpr DecimalUnit decimalUnits[] = {
    {QLatin1Char('K'), 1'000},
    {QLatin1Char('M'), 1'000'000},
    {QLatin1Char('G'), 1'000'000'000},
    {QLatin1Char('T'), 1'000'000'000'000},
};

} // namespace

QString Utilities::numberToKmgtString(qint64 number, QString unit)
{
    unit = std::move(unit).toUpper();
    for (auto candidate = std::rbegin(decimalUnits); candidate != std::rend(decimalUnits); ++candidate) {
        const qint64 quotient = number / candidate->factor;
        if (quotient > 0 && (unit.isEmpty() || unit == candidate->letter))
            return QString::number(quotient) + candidate->letter;
    }
    return QString::number(qMax(number, qint64{0}));
}

qint64 Utilities::kmgtStringToNumber(QString text)
{
    qint64 factor = 1;
    for (const DecimalUnit &unit : decimalUnits) {
        if (text.endsWith(unit.letter, Qt::CaseInsensitive)) {
            text.remove(unit.letter, Qt::CaseInsensitive);
            factor = unit.factor;
            break;
        }
    }

    bool ok = false;
    const qint64 number = text.toLongLong(&ok);
    // Unsigned, since the product of a host's text may wrap and must not be undefined.
    return ok ? static_cast<qint64>(static_cast<quint64>(number) * static_cast<quint64>(factor)) : -1;
}

QString Utilities::fileSizeToString(qint64 size)
{
    if (size < 0)
        return QStringLiteral("--");
    return size > 0 ? numberToKmgtString(size, QString()) : QString();
}

qint64 Utilities::getBytes(QString text)
{
    return ByteCount::find(text);
}

QSize Utilities::stringToSizeX(QString text)
{
    const QStringList parts = text.split(QLatin1Char('x'));
    return parts.size() == 2 ? QSize(parts[0].toInt(), parts[1].toInt()) : QSize(-1, -1);
}

} // namespace Nox
