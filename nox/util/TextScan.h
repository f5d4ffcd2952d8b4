#pragma once

#include <QString>
#include <QStringView>

/** Helpers of the parsers. Each function returns the position behind what it has skipped. */
namespace Nox::TextScan {

/** Behind the white space at @p position. */
inline qsizetype skipSpaces(QStringView text, qsizetype position)
{
    while (position < text.size() && text[position].isSpace())
        ++position;
    return position;
}

/** Behind the digits at @p position. */
inline qsizetype skipDigits(QStringView text, qsizetype position)
{
    while (position < text.size() && text[position].isDigit())
        ++position;
    return position;
}

/** Behind a number such as 12 or 12.34 at @p position. A dot without digits behind it is not part of the number. */
inline qsizetype skipNumber(QStringView text, qsizetype position)
{
    const qsizetype wholeEnd = skipDigits(text, position);
    if (wholeEnd == position || wholeEnd == text.size() || text[wholeEnd] != QLatin1Char('.'))
        return wholeEnd;
    const qsizetype end = skipDigits(text, wholeEnd + 1);
    return end == wholeEnd + 1 ? wholeEnd : end;
}

/** Whether @p token stands at @p position. */
inline bool isAt(QStringView text, qsizetype position, QStringView token)
{
    if (text.size() - position < token.size())
        return false;
    for (qsizetype i = 0; i < token.size(); ++i) {
        if (text[position + i] != token[i])
            return false;
    }
    return true;
}

} // namespace Nox::TextScan
