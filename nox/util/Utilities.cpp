// Size texts. The path and text operations stand in files of their own.

#include <nox/util/Utilities.h>

#include <nox/util/Saturation.h>
#include <nox/util/TextScan.h>

#include <QStringView>

#include <cmath>
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

// Power of 1024 that a unit letter stands for, or -1.
qsizetype unitPower(QStringView text, qsizetype position)
{
    constexpr QStringView letters(u"BKMGTPEZY");
    return position < text.size() ? letters.indexOf(text[position]) : -1;
}

qint64 scaled(QStringView number, qsizetype power)
{
    const float value = number.toString().toFloat();
    return Saturation::fromDouble<qint64>(std::ldexp(static_cast<double>(value), static_cast<int>(power) * 10));
}

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
    const QStringView view(text);
    qsizetype start = 0;
    while (start < view.size()) {
        if (!view[start].isDigit()) {
            ++start;
            continue;
        }
        const qsizetype end = TextScan::skipNumber(view, start);
        if (const qsizetype power = unitPower(view, end); power >= 0)
            return scaled(view.mid(start, end - start), power);
        start = TextScan::skipDigits(view, start);
    }
    return -1;
}

QSize Utilities::stringToSizeX(QString text)
{
    const QStringList parts = text.split(QLatin1Char('x'));
    return parts.size() == 2 ? QSize(parts[0].toInt(), parts[1].toInt()) : QSize(-1, -1);
}

} // namespace Nox
