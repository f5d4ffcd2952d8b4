#include <nox/util/TextEscape.h>

#include <algorithm>
#include <array>

namespace Nox {

namespace {

using TextEscape::Escape;

bool isMark(QChar character)
{
    return character == QLatin1Char('\\') || character == QLatin1Char('&');
}

// The character at a position, which a reference may stand for.
Escape characterAt(QStringView text, qsizetype position)
{
    if (text[position] == QLatin1Char('&')) {
        if (const Escape reference = TextEscape::readCharacterReference(text.mid(position + 1)))
            return {reference.character, reference.length + 1};
    }
    return {text[position], 1};
}

// "uXXXX", behind the backslash; a reference may stand for each of the five characters.
Escape escapeAt(QStringView text, qsizetype position)
{
    if (const Escape plain = TextEscape::readUnicodeEscape(text.mid(position)))
        return plain;
    std::array<QChar, 5> characters;
    qsizetype end = position;
    for (QChar &character : characters) {
        if (end == text.size())
            return {};
        const Escape next = characterAt(text, end);
        character = next.character;
        end += next.length;
    }
    const Escape escape = TextEscape::readUnicodeEscape(QStringView(characters.data(), characters.size()));
    return escape ? Escape{escape.character, end - position} : escape;
}

// The character at a position where a mark stands.
Escape resolved(QStringView text, qsizetype position)
{
    Escape result = characterAt(text, position);
    if (result.character == QLatin1Char('\\')) {
        if (const Escape escape = escapeAt(text, position + result.length))
            result = {escape.character, result.length + escape.length};
    }
    return result;
}

} // namespace

QByteArray TextEscape::toUtf8(const QString &text)
{
    const QStringView view(text);
    if (std::none_of(view.begin(), view.end(), isMark))
        return text.toUtf8();

    QByteArray result;
    result.reserve(text.size());
    std::array<QChar, 4096> piece; // small enough to stay in the processor's cache
    std::size_t used = 0;
    for (const auto *at = view.begin(); at != view.end();) {
        const auto room = static_cast<qsizetype>(piece.size() - used);
        const auto *const runEnd = at + std::min<qsizetype>(view.end() - at, room);
        const auto *const mark = std::find_if(at, runEnd, isMark);
        std::copy(at, mark, piece.data() + used);
        used += static_cast<std::size_t>(mark - at);
        at = mark;
        if (at != runEnd) {
            const Escape next = resolved(view, at - view.begin());
            piece[used++] = next.character;
            at += next.length;
        }
        if (used < piece.size() && at != view.end())
            continue;
        // The first half of a pair waits for the second.
        const std::size_t kept = at != view.end() && piece[used - 1].isHighSurrogate() ? 1 : 0;
        result += QStringView(piece.data(), static_cast<qsizetype>(used - kept)).toUtf8();
        std::copy_n(piece.data() + used - kept, kept, piece.data());
        used = kept;
    }
    return result;
}

} // namespace Nox
