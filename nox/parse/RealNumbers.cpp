#include <nox/parse/RealNumbers.h>

#include <QRegularExpression>
#include <QString>

#include <locale>

namespace Nox {

namespace {

// An exponent with so many digits that no number holds it stays beyond every double.
qint64 exponentOf(const QString &digits)
{
    constexpr qint64 beyond = 1'000'000'000; // a double has 308 at most
    bool isNumber = false;
    const int exponent = digits.toInt(&isNumber);
    if (isNumber || digits.isEmpty())
        return exponent;
    return digits.startsWith(QLatin1Char('-')) ? -beyond : beyond;
}

} // namespace

bool RealNumbers::isPointUnderstood()
{
    return std::use_facet<std::numpunct<char>>(std::locale()).decimal_point() == '.';
}

QByteArray RealNumbers::withoutPoints(const QByteArray &document)
{
    // Strings and comments are passed over as a whole, each byte as one character. The reader also takes 1. and -.5 for
    // numbers.
    static const QRegularExpression token(
        QStringLiteral(
            R"("(?:[^"\\]++|\\.)*+"?|/\*(?:.*?\*/|.*)|//[^\r\n]*+|(-\d*+|\d++)\.(\d*+)(?:[eE]([+-]?\d++))?)"),
        QRegularExpression::DotMatchesEverythingOption);
    // With the length given, since Qt 5 would otherwise end the text at a zero byte.
    const QString text = QString::fromLatin1(document.constData(), document.size());
    QByteArray result;
    QByteArray::size_type copied = 0;
    for (auto tokens = token.globalMatch(text); tokens.hasNext();) {
        const QRegularExpressionMatch match = tokens.next();
        if (match.capturedStart(1) < 0)
            continue;
        const QString digits = match.captured(1) + match.captured(2);
        const qint64 exponent = exponentOf(match.captured(3)) - match.capturedLength(2);
        result += document.mid(copied, static_cast<QByteArray::size_type>(match.capturedStart()) - copied);
        result += digits.toLatin1() + 'e' + QByteArray::number(exponent);
        copied = static_cast<QByteArray::size_type>(match.capturedEnd());
    }
    return result + document.mid(copied);
}

} // namespace Nox
