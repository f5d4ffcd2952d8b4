#include <nox/jobs/ToolMessage.h>

#include <nox/jobs/TextSanitizer.h>

#include <QRegularExpression>
#include <QStringList>

namespace Nox {

namespace {

constexpr int maximumLines = 8;
constexpr int maximumCharacters = 600;

bool matches(const QString &text, const QRegularExpression &pattern)
{
    return pattern.match(text).hasMatch();
}

/** The lines of @p text; a carriage return ends one, as a line feed does. */
QStringList linesOf(const QString &text)
{
    static const QRegularExpression lineEnd(QStringLiteral("[\\r\\n]+"));
    return text.split(lineEnd, Qt::SkipEmptyParts);
}

/** The first lines of what ffmpeg tells of itself and of the files, before indented ones. */
bool isBanner(const QString &line)
{
    static const QRegularExpression banner(
        QStringLiteral("^(ffmpeg version |Input #\\d|Output #\\d|Stream mapping:|Press \\[q\\])"));
    return matches(line, banner);
}

/** What else ffmpeg prints when all is well; a line may have lost its beginning. */
bool isChatter(const QString &line)
{
    static const QRegularExpression chatter(QStringLiteral(
        "\\b(bitrate|speed)= *[\\dN]|\\s--(enable|disable)-|^lib\\w+ +\\d+\\. *\\d+|^video:\\S+ audio:"
        "|^\\[\\w+ @ 0x[0-9a-f]+\\] (using |profile |264 - |frame [IPB]:|mb [IPB]|8x8 |coded |i\\d+ |Weighted |ref |"
        "kb/s:|consecutive |final |Qavg:)"));
    return matches(line, chatter);
}

/** @p line without the sentences that tell how to call the tool: nobody can follow them here. */
QString withoutHints(const QString &line)
{
    static const QRegularExpression hint(
        QStringLiteral("report this issue|latest version|how to update|--verbose\\b|--list-formats|(^|\\s)-U\\b"),
        QRegularExpression::CaseInsensitiveOption);
    if (!matches(line, hint))
        return line;
    static const QRegularExpression sentenceEnd(QStringLiteral("(?<=[.;!?])\\s+"));
    QStringList kept;
    const QStringList sentences = line.split(sentenceEnd);
    for (const QString &sentence : sentences)
        if (!matches(sentence, hint))
            kept += sentence;
    QString result = kept.join(QLatin1Char(' '));
    while (result.endsWith(QLatin1Char(';')) || result.endsWith(QLatin1Char(' ')))
        result.chop(1);
    return result;
}

/** Sorts the lines of an error output into complaints, warnings, and what nobody needs. */
class Sorter
{
public:
    void add(const QString &line)
    {
        const QString printable = TextSanitizer::line(line);
        m_kind = kindOf(printable, line.at(0).isSpace());
        if (printable.isEmpty() || isChatter(printable) || m_kind == Kind::Traceback || m_kind == Kind::Banner)
            return;
        if (const QString words = withoutHints(printable); !words.isEmpty())
            (m_kind == Kind::Warning ? m_warnings : m_complaints) += words;
    }

    QStringList result() const { return m_complaints.isEmpty() ? m_warnings : m_complaints; }

private:
    enum class Kind { Complaint, Warning, Traceback, Banner };

    /** A line that begins nothing of its own goes on with what stands before it. */
    Kind kindOf(const QString &line, bool isIndented) const
    {
        static const QRegularExpression warning(QStringLiteral("^(WARNING|Deprecated)"));
        static const QRegularExpression complaint(
            QStringLiteral("^(ERROR|CRITICAL|Usage:|\\[|[\\w.]*(Error|Exception)\\b)"));
        if (matches(line, warning))
            return Kind::Warning;
        if (line.startsWith(QLatin1String("Traceback")))
            return Kind::Traceback;
        if (isBanner(line))
            return Kind::Banner;
        const bool goesOn = isIndented || m_kind == Kind::Warning;
        return goesOn && !matches(line, complaint) ? m_kind : Kind::Complaint;
    }

    Kind m_kind = Kind::Complaint;
    QStringList m_complaints;
    QStringList m_warnings;
};

} // namespace

QString ToolMessage::excerpt(const QString &errorOutput)
{
    Sorter sorter;
    const QStringList lines = linesOf(errorOutput);
    for (const QString &line : lines)
        sorter.add(line);
    const QStringList words = sorter.result();
    QString text = words.mid(qMax(0, static_cast<int>(words.size()) - maximumLines)).join(QLatin1Char('\n'));
    if (text.size() <= maximumCharacters)
        return text;
    text = text.right(maximumCharacters - 1);
    if (text.at(0).isLowSurrogate())
        text.remove(0, 1);
    return QChar(0x2026) + text; // an ellipsis
}

bool ToolMessage::tellsBrokenArchive(const QString &errorOutput)
{
    static const QRegularExpression broken(
        QStringLiteral("^(zlib\\.error: |zipimport\\.ZipImportError: |(zipfile\\.)?BadZipFile: |SyntaxError: )"
                       "|can't find '__main__' module"),
        QRegularExpression::MultilineOption);
    return matches(errorOutput, broken);
}

bool ToolMessage::tellsNoStream(const QString &errorOutput)
{
    static const QRegularExpression noStream(
        QStringLiteral("^ERROR: .*(\\bDRM\\b|\\b(will begin|Premieres) in\\b|No video formats found"
                       "|No stream of this page|There is no video on this page)"),
        QRegularExpression::MultilineOption);
    return matches(errorOutput, noStream);
}

bool ToolMessage::tellsRefusedSettings(const QString &errorOutput)
{
    static const QRegularExpression refused(
        QStringLiteral("^ERROR: (/.*/noxwebmedia/tool\\.conf\\b|The tool does not take a setting in tool\\.conf: )"),
        QRegularExpression::MultilineOption);
    return matches(errorOutput, refused);
}

QString ToolMessage::unusedSettings(const QString &errorOutput)
{
    static const QRegularExpression unused(QStringLiteral("^WARNING: (/.*/noxwebmedia/tool\\.conf is .*not used.*)$"),
                                           QRegularExpression::MultilineOption);
    return TextSanitizer::line(unused.match(errorOutput).captured(1));
}

} // namespace Nox
