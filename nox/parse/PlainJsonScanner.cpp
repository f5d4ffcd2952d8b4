#include <nox/parse/PlainJsonScanner.h>

#include <nox/util/TextEscape.h>
#include <nox/util/Utilities.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Nox {

namespace {

constexpr int deepestNesting = 64;  // the reader goes deeper
constexpr int exactDigits = 15;     // decimal digits that a double always holds
constexpr int harmlessDigits = 100; // of a number that no reader refuses, with an exponent of two digits

// What a backslash may stand in front of, apart from "u", and what the two stand for.
constexpr char16_t escapeLetters[] = u"\"\\/bfnrt";
constexpr char16_t escapeCharacters[] = u"\"\\/\b\f\n\r\t";

// The characters that end the plain part of a string, by code.
constexpr std::array<bool, 128> makeStops()
{
    std::array<bool, 128> result{};
    for (const char16_t stop : {u'"', u'\\', u'&'})
        result[stop] = true;
    return result;
}
constexpr std::array<bool, 128> stops = makeStops();

bool isStop(QChar character)
{
    return character.unicode() < stops.size() && stops[character.unicode()];
}

bool isDigit(QChar character)
{
    return character.unicode() >= u'0' && character.unicode() <= u'9';
}

// A quote or backslash that an escape stands for changes what everything behind it means.
bool isStructural(QChar character)
{
    return character == QLatin1Char('"') || character == QLatin1Char('\\');
}

QString unescaped(const QString &text)
{
    QString result = text;
    auto *end = result.begin();
    for (const auto *at = text.cbegin(); at != text.cend(); ++at, ++end)
        *end = *at == u'\\' ? QChar(escapeCharacters[QStringView(escapeLetters).indexOf(*++at)]) : *at;
    result.truncate(static_cast<QString::size_type>(end - result.begin()));
    return result;
}

// Whether the text goes through UTF-8 unchanged and whole: the decoding skips a mark in front, and a text ends
// at its first NUL.
bool survivesReader(const QString &text)
{
    const auto isDoubtful = [](QChar character) { return character.isNull() || character.isSurrogate(); };
    if (text.startsWith(QChar(QChar::ByteOrderMark)))
        return false;
    return std::none_of(text.cbegin(), text.cend(), isDoubtful)
        || (!text.contains(QChar(QChar::Null)) && QStringView(text).isValidUtf16());
}

} // namespace

bool PlainJsonScanner::readScalar(Scalar &result)
{
    if (isNext(u'"')) {
        result.kind = Scalar::Kind::Text;
        return readString(result.text);
    }
    const bool isNumber = m_at != m_end && (*m_at == u'-' || isDigit(*m_at));
    return isNumber ? readNumber(result) : skipValue();
}

bool PlainJsonScanner::skipValue(int depth)
{
    if (m_at == m_end || depth > deepestNesting)
        return false;
    switch (m_at->unicode()) {
    case u'"':
        return skipString();
    case u'{':
        return readObject([&](QStringView) { return skipValue(depth + 1); });
    case u'[':
        return readArray([&] { return skipValue(depth + 1); });
    case u'n':
    case u't':
    case u'f':
        return takeWord(QLatin1String("null")) || takeWord(QLatin1String("true")) || takeWord(QLatin1String("false"));
    default:
        return skipNumber();
    }
}

bool PlainJsonScanner::take(char16_t character)
{
    if (!isNext(character))
        return false;
    ++m_at;
    return true;
}

bool PlainJsonScanner::takeWord(QLatin1String word)
{
    if (!QStringView(m_at, m_end).startsWith(word))
        return false;
    m_at += word.size();
    return true;
}

double PlainJsonScanner::takeDigits(double number, int &count)
{
    for (; m_at != m_end && isDigit(*m_at); ++m_at, ++count)
        number = number * 10 + m_at->digitValue();
    return number;
}

void PlainJsonScanner::skipBlanks()
{
    while (isNext(u' ') || isNext(u'\n') || isNext(u'\r') || isNext(u'\t'))
        ++m_at;
}

bool PlainJsonScanner::readName(QStringView &name)
{
    const QChar *begin = m_at + 1;
    if (!isNext(u'"') || !skipString())
        return false;
    if (m_isPlain)
        name = QStringView(begin, m_at - 1);
    skipBlanks();
    return take(u':');
}

bool PlainJsonScanner::readString(QString &result)
{
    const QChar *begin = m_at + 1;
    if (!skipString())
        return false;
    const QStringView raw(begin, m_at - 1);
    result = raw.isEmpty() ? QString(QLatin1String("")) : raw.toString();
    if (!m_isPlain)
        result = unescaped(Utilities::convertHttpSpecificChar2(Utilities::convertHttpSpecificChar(result)));
    return survivesReader(result);
}

bool PlainJsonScanner::skipString()
{
    m_isPlain = true;
    for (++m_at; m_at != m_end; ++m_at) {
        if (!isStop(*m_at))
            continue;
        if (*m_at == u'"') {
            ++m_at;
            return true;
        }
        if (*m_at == u'\\' ? !skipEscape() : !skipAmpersand())
            return false;
    }
    return false;
}

// Leaves the position on the escape's last character.
bool PlainJsonScanner::skipEscape()
{
    m_isPlain = false;
    const QStringView behind(m_at + 1, m_end);
    if (const auto escape = TextEscape::readUnicodeEscape(behind)) {
        m_at += escape->length;
        return !isStructural(escape->character);
    }
    if (behind.isEmpty() || QStringView(escapeLetters).indexOf(behind[0]) < 0)
        return false;
    // The second of two backslashes may look like the beginning of an escape.
    if (behind[0] == u'\\' && behind.size() > 1 && (behind[1] == u'u' || behind[1] == u'&'))
        return false;
    ++m_at;
    return true;
}

// Leaves the position on the reference's last character, or on the ampersand when it begins none.
bool PlainJsonScanner::skipAmpersand()
{
    const QStringView behind(m_at + 1, m_end);
    if (behind.isEmpty() || behind[0] != u'#')
        return true;
    const auto reference = TextEscape::readCharacterReference(behind);
    if (!reference)
        return true;
    m_isPlain = false;
    m_at += reference->length;
    return !isStructural(reference->character);
}

// As JSON writes them, and exact: up to 15 digits without an exponent.
bool PlainJsonScanner::readNumber(Scalar &result)
{
    const bool isNegative = take(u'-');
    const bool hasLeadingZero = isNext(u'0');
    int digits = 0;
    double number = takeDigits(0, digits);
    const int wholeDigits = digits;
    if (wholeDigits == 0 || (hasLeadingZero && wholeDigits > 1))
        return false;
    result.kind = Scalar::Kind::Whole;
    if (take(u'.')) {
        result.kind = Scalar::Kind::Real;
        number = takeDigits(number, digits);
        if (digits == wholeDigits)
            return false;
    }
    number /= std::pow(10.0, digits - wholeDigits);
    result.number = isNegative ? -number : number;
    return digits <= exactDigits && !hasExponent();
}

bool PlainJsonScanner::skipNumber()
{
    take(u'-');
    const bool hasLeadingZero = isNext(u'0');
    int digits = 0;
    takeDigits(0, digits);
    if (digits == 0 || (hasLeadingZero && digits > 1))
        return false;
    const int wholeDigits = digits;
    if (take(u'.')) {
        takeDigits(0, digits);
        if (digits == wholeDigits)
            return false;
    }
    return digits <= harmlessDigits && (!hasExponent() || skipExponent());
}

bool PlainJsonScanner::skipExponent()
{
    ++m_at;
    if (!take(u'-'))
        take(u'+');
    int digits = 0;
    takeDigits(0, digits);
    return digits == 1 || digits == 2;
}

bool PlainJsonScanner::hasExponent() const
{
    return isNext(u'e') || isNext(u'E');
}

} // namespace Nox
