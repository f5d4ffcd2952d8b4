#pragma once

#include <QString>

#include <iterator>

/** Counts with a unit letter such as 12M, for the powers of 1000 and of 1024. */
namespace Nox::UnitText {

/** The letters in the order of their powers, which is also the order in which the end of a text is tested. */
inline constexpr char16_t letters[] = {u'K', u'M', u'G', u'T'};

/** Reads a whole count with or without a unit letter in any case; -1 when it cannot be read. */
inline qint64 toNumber(QString text, quint64 base)
{
    quint64 factor = 1;
    quint64 power = 1;
    for (const char16_t letter : letters) {
        power *= base;
        if (text.endsWith(QChar(letter), Qt::CaseInsensitive)) {
            text.remove(QChar(letter), Qt::CaseInsensitive);
            factor = power;
            break;
        }
    }
    bool ok = false;
    const qint64 number = text.toLongLong(&ok);
    // Unsigned, because the product may wrap around and must not be undefined.
    return ok ? static_cast<qint64>(static_cast<quint64>(number) * factor) : -1;
}

/**
 * The count in the largest unit that gives at least 1, cut to a whole number; "0" for a negative count.
 * @param unit empty, or the only unit letter that may be used
 */
inline QString fromNumber(qint64 number, qint64 base, const QString &unit = QString())
{
    qint64 factor = base * base * base * base;
    for (auto letter = std::rbegin(letters); letter != std::rend(letters); ++letter, factor /= base) {
        const qint64 quotient = number / factor;
        if (quotient > 0 && (unit.isEmpty() || unit == QChar(*letter)))
            return QString::number(quotient) + QChar(*letter);
    }
    return QString::number(qMax(number, qint64{0}));
}

} // namespace Nox::UnitText
