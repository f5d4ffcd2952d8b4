#include <nox/util/ByteCount.h>

#include <nox/util/Saturation.h>
#include <nox/util/TextScan.h>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace Nox {

namespace {

// The power of 1024 of a unit letter, or -1.
int unitPower(QStringView text, qsizetype position)
{
    constexpr QStringView letters(u"BKMGTPEZY");
    if (position < text.size()) {
        for (int power = 0; power < letters.size(); ++power) {
            if (letters[power] == text[position])
                return power;
        }
    }
    return -1;
}

} // namespace

float ByteCount::toFloat(QStringView number)
{
    std::array<char, 32> characters; // NOLINT(cppcoreguidelines-pro-type-member-init): only what is written is read
    if (number.size() <= static_cast<qsizetype>(characters.size())) {
        char *end = characters.data();
        for (const QChar character : number)
            *end++ = character.toLatin1();
        double value = 0.0;
        const auto [rest, error] = std::from_chars(characters.data(), end, value);
        if (error == std::errc() && rest == end && value <= static_cast<double>(std::numeric_limits<float>::max()))
            return static_cast<float>(value);
    }
    return number.toString().toFloat();
}

qint64 ByteCount::find(QStringView text)
{
    qsizetype start = 0;
    while (start < text.size()) {
        if (!text[start].isDigit()) {
            ++start;
            continue;
        }
        const qsizetype end = TextScan::skipNumber(text, start);
        if (const int power = unitPower(text, end); power >= 0) {
            const auto number = static_cast<double>(toFloat(text.mid(start, end - start)));
            return Saturation::fromDouble<qint64>(std::ldexp(number, power * 10));
        }
        start = TextScan::skipDigits(text, start);
    }
    return -1;
}

} // namespace Nox
