// The helpers for byte counts, sizes, paths, file names and URLs.

#include "fuzz/Check.h"

#include <nox/util/ByteNumber.h>
#include <nox/util/Utilities.h>

#include <QRegularExpression>

namespace {

using Nox::ByteNumber;
using Nox::Utilities;

void checkByteNumber(const QString &text)
{
    ByteNumber number(text);
    const qint64 value = number.value();
    const QString shown = number.toString();
    Check::that(number.value() == (value < 0 ? 0 : value), "a negative count is shown as 0 and becomes it");
    Check::that(number.toStringB() == shown + QLatin1Char('B'), "the form with a B");
    Check::that(ByteNumber(shown).value() <= number.value(), "what is shown is never more");
}

void checkCounts(const QString &text)
{
    const qint64 number = Utilities::kmgtStringToNumber(text);
    const QString shown = Utilities::numberToKmgtString(number, QString());
    Check::that(Utilities::kmgtStringToNumber(shown) <= qMax(number, qint64{0}), "a short form is never more");
    Check::that(!Utilities::numberToKmgtString(number, text.right(1)).isEmpty(), "a count in a unit");
    Check::that(Utilities::fileSizeToString(number).isEmpty() == (number == 0), "only no size at all is not shown");
    Utilities::stringToSizeX(text);
}

void checkNames(const QString &text)
{
    const QString name = Utilities::filterInvalidCharsOfFileName(text, QStringLiteral("_"));
    Check::that(name.size() == text.size(), "one character for one");
    Check::that(Utilities::isValidFileName(name)
                    == (!name.isEmpty() && name.size() <= 247 && !name.endsWith(QLatin1Char('.'))),
                "a filtered name holds nothing forbidden");
    Check::that(!Utilities::isValidFileName(text) || name == text, "an acceptable name is left alone");

    const QString path = Utilities::removePathLastSeperator(text);
    Check::that(text.startsWith(path) && Utilities::removePathLastSeperator(path) == path, "no separator at the end");
    const QString volume = Utilities::getDiskFromDir(text);
    Check::that(volume == QLatin1String("/") || text.startsWith(volume), "a volume is where the path begins");
    Utilities::isValidPath(text);
    const QString name1 = Utilities::addNumberToExistedFileName(text, {});
    Check::that(Utilities::addNumberToExistedFileName(text, {name1}) != name1, "a taken name is not proposed");
}

// As the operations are described: each match of the pattern replaced by the character it names.
QString replaced(const QString &text, const QRegularExpression &pattern, uint base)
{
    QString result;
    qsizetype end = 0;
    for (auto matches = pattern.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        uint code = 0;
        for (const QChar digit : match.captured(1))
            code = code * base + static_cast<uint>(QString(digit).toInt(nullptr, 16));
        result += text.mid(end, match.capturedStart() - end) + QChar(static_cast<ushort>(code));
        end = match.capturedEnd();
    }
    return result + text.mid(end);
}

// With the patterns' own matcher, where both read characters alike.
void checkPatterns(const QString &text)
{
    static const QRegularExpression escape(QStringLiteral(R"(\\u([0-9a-fA-F]{4}))"));
    static const QRegularExpression reference(QStringLiteral(R"(&#(\d+);)"));
    static const QRegularExpression url(QStringLiteral(R"(^http[s]?://[\S]+\z)"),
                                        QRegularExpression::UseUnicodePropertiesOption);
    static const QRegularExpression count(QStringLiteral(R"((\d+(\.\d+)?)([BKMGTPEZY]))"));
    Check::that(Utilities::convertHttpSpecificChar2(text) == replaced(text, escape, 16), "escapes");
    Check::that(Utilities::isValidUrl(text) == url.match(text).hasMatch(), "a URL");
    // Digits of other alphabets count as digits here, but have no value for the comparison.
    const bool hasPlainDigits = std::none_of(
        text.cbegin(), text.cend(), [](QChar character) { return character.isDigit() && character.unicode() > 0x7f; });
    if (hasPlainDigits) {
        Check::that(Utilities::convertHttpSpecificChar(text) == replaced(text, reference, 10), "references");
        Check::that((Utilities::getBytes(text) >= 0) == count.match(text).hasMatch(), "a count in bytes");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, size_t size)
{
    const QString text = Check::text(data, size);
    checkByteNumber(text);
    checkCounts(text);
    checkNames(text);
    Check::that(text.startsWith(Utilities::escapeUrl(text)), "a URL is only ever cut");
    QStringList items = text.split(QLatin1Char('\n'));
    Check::that(Utilities::stringList2String(items).size() == text.size() + 1, "a blank behind each item");
    if (Check::isComparable(text)) {
        checkPatterns(text);
    } else {
        Utilities::convertHttpSpecificChar(text);
        Utilities::convertHttpSpecificChar2(text);
        Utilities::getBytes(text);
        Utilities::isValidUrl(text);
    }
    return 0;
}
