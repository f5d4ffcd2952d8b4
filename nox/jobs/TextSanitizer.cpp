#include <nox/jobs/TextSanitizer.h>

namespace Nox {

namespace {

/** Marks that turn the writing direction of what follows, up to the end of the line. */
bool isDirectionMark(char16_t unit)
{
    return (unit >= 0x202a && unit <= 0x202e) || (unit >= 0x2066 && unit <= 0x2069);
}

bool isUnprintable(QChar character)
{
    // Surrogates: the caller deals with those that stand in pairs.
    return character.isSpace() || character.isSurrogate() || character.category() == QChar::Other_Control
        || isDirectionMark(character.unicode());
}

} // namespace

QString TextSanitizer::line(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (auto i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        if (character.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            result += character;
            result += text.at(++i);
        } else if (isUnprintable(character)) {
            result += QLatin1Char(' ');
        } else {
            result += character;
        }
    }
    return result.simplified();
}

} // namespace Nox
