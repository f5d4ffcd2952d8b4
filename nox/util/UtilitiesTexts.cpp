// Texts and URLs.

#include <nox/util/Utilities.h>

#include <nox/util/TextEscape.h>

#include <QFontMetrics>
#include <QStringView>

#include <algorithm>
#include <utility>

namespace Nox {

namespace {

using TextEscape::Escape;

void append(QString &result, QStringView text)
{
    result.append(text.data(), static_cast<QString::size_type>(text.size()));
}

/*
 * Replaces what `read` recognises behind each `mark`. By hand rather than by regular expression: these
 * run over whole documents, which may hold lone surrogates that QRegularExpression refuses.
 */
template <typename Reader>
QString replaceEscapes(const QString &text, QChar mark, Reader read)
{
    const QStringView view(text);
    QString result;
    qsizetype copied = 0;
    qsizetype position = text.indexOf(mark);
    while (position >= 0) {
        qsizetype next = position + 1;
        if (const Escape escape = read(view.mid(next))) {
            if (result.isEmpty())
                result.reserve(text.size());
            append(result, view.mid(copied, position - copied));
            result.append(escape.character);
            next += escape.length;
            copied = next;
        }
        position = view.indexOf(mark, next);
    }
    if (copied == 0)
        return text;
    append(result, view.mid(copied));
    return result;
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
    return replaceEscapes(text, QLatin1Char('\\'), TextEscape::readUnicodeEscape);
}

QString Utilities::convertHttpSpecificChar(QString text)
{
    return replaceEscapes(text, QLatin1Char('&'), TextEscape::readCharacterReference);
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
