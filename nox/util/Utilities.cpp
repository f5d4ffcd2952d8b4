// Size texts. UtilitiesPaths.cpp and UtilitiesTexts.cpp hold the rest.

#include <nox/util/Utilities.h>

#include <nox/util/ByteCount.h>
#include <nox/util/UnitText.h>

#include <utility>

namespace Nox {

QString Utilities::numberToKmgtString(qint64 number, QString unit)
{
    return UnitText::fromNumber(number, 1000, std::move(unit).toUpper());
}

qint64 Utilities::kmgtStringToNumber(QString text)
{
    return UnitText::toNumber(std::move(text), 1000);
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
