#pragma once

#include <QChar>
#include <QStringView>

/** The two ways in which the tool's text stands for a character that it does not write itself. */
namespace Nox::TextEscape {

/** A character and how many characters of text stand for it; none where there is no escape. */
struct Escape {
    QChar character;
    qsizetype length = 0;

    explicit operator bool() const { return length > 0; }
};

inline int hexDigitValue(QChar character)
{
    const char16_t unit = character.unicode();
    if (unit >= u'0' && unit <= u'9')
        return unit - u'0';
    if (unit >= u'a' && unit <= u'f')
        return unit - u'a' + 10;
    if (unit >= u'A' && unit <= u'F')
        return unit - u'A' + 10;
    return -1;
}

/** "uXXXX", behind the backslash. */
inline Escape readUnicodeEscape(QStringView text)
{
    constexpr qsizetype length = 5;
    if (text.size() < length || text[0] != QLatin1Char('u'))
        return {};
    unsigned code = 0;
    for (qsizetype i = 1; i < length; ++i) {
        const int digit = hexDigitValue(text[i]);
        if (digit < 0)
            return {};
        code = code * 16 + static_cast<unsigned>(digit);
    }
    return {QChar(static_cast<char16_t>(code)), length};
}

/** "#NNN;", behind the ampersand. Only the low 16 bits of the number count. */
inline Escape readCharacterReference(QStringView text)
{
    if (text.size() < 3 || text[0] != QLatin1Char('#'))
        return {};
    unsigned code = 0;
    qsizetype i = 1;
    for (; i < text.size() && text[i].isDigit(); ++i)
        code = (code * 10 + static_cast<unsigned>(text[i].digitValue())) & 0xffffU;
    if (i == 1 || i == text.size() || text[i] != QLatin1Char(';'))
        return {};
    return {QChar(static_cast<char16_t>(code)), i + 1};
}

} // namespace Nox::TextEscape
