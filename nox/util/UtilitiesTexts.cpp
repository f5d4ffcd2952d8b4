// Texts and URLs.

#include <nox/util/Utilities.h>

#include <QFontMetrics>
#include <QStringView>

#include <algorithm>
#include <cstring>
#include <utility>

namespace Nox {

namespace {

// A decoded character and the length of its escape; length 0 if there is no escape.
struct Escape {
    QChar character;
    qsizetype length = 0;
};

int hexDigitValue(QChar character)
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

// Decodes the "uXXXX" of \uXXXX in the tool's output.
Escape readUnicodeEscape(QStringView text)
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

// Decodes the "#NNN;" of &#NNN; in the tool's output. Only the low 16 bits of the number count.
Escape readCharacterReference(QStringView text)
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

// Replaces each escape that `read` recognises behind a `mark`; in place, because a page can be large. Not with
// QRegularExpression, which refuses the lone surrogates that a page may hold.
template <typename Reader>
QString replaceEscapes(QString text, QChar mark, Reader read)
{
    qsizetype copied = 0;  // end of the characters that are done
    qsizetype written = 0; // end of what replaces them; at most `copied`
    const auto copyUntil = [&](qsizetype position) {
        QChar *const data = text.data();
        const qsizetype count = position - copied;
        std::memmove(data + written, data + copied, static_cast<size_t>(count) * sizeof(QChar));
        written += count;
    };
    qsizetype position = text.indexOf(mark);
    while (position >= 0) {
        qsizetype next = position + 1;
        if (const Escape escape = read(QStringView(text).mid(next)); escape.length > 0) {
            copyUntil(position);
            text.data()[written++] = escape.character;
            next += escape.length;
            copied = next;
        }
        position = QStringView(text).indexOf(mark, next);
    }
    if (copied == 0)
        return text;
    copyUntil(text.size());
    text.truncate(static_cast<QString::size_type>(written));
    return text;
}

} // namespace

QString Utilities::elidedText(QString text, const QFont &font, Qt::TextElideMode mode, int width)
{
    return QFontMetrics(font).elidedText(text, mode, width, 0);
}

bool Utilities::isValidUrl(QString url)
{
    const QStringView view(url);
    for (const QLatin1String scheme : {QLatin1String("http://"), QLatin1String("https://")}) {
        if (view.startsWith(scheme) && view.size() > scheme.size())
            return std::none_of(view.begin(), view.end(), [](QChar character) { return character.isSpace(); });
    }
    return false;
}

QString Utilities::convertHttpSpecificChar2(QString text)
{
    return replaceEscapes(std::move(text), QLatin1Char('\\'), readUnicodeEscape);
}

QString Utilities::convertHttpSpecificChar(QString text)
{
    return replaceEscapes(std::move(text), QLatin1Char('&'), readCharacterReference);
}

QString Utilities::stringList2String(QStringList &list)
{
    QString result;
    for (const QString &item : std::as_const(list))
        result += item + QLatin1Char(' ');
    return result;
}

QString Utilities::escapeUrl(QString url)
{
    if (url.indexOf(QLatin1String("?v=")) <= 0)
        return url;
    const auto ampersand = url.indexOf(QLatin1Char('&'));
    return ampersand < 0 ? url : url.left(ampersand);
}

} // namespace Nox
