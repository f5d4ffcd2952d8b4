#include <nox/jobs/ToolMessage.h>

#include <nox/jobs/TextSanitizer.h>

#include <QMap>
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

/** The error tags of the tool's front. A test compares this list with the list in the front. */
const QMap<QString, Job::Error> &errors()
{
    static const QMap<QString, Job::Error> table{
        {QStringLiteral("network"), Job::NoNetwork},
        {QStringLiteral("not-found"), Job::NotFound},
        {QStringLiteral("login"), Job::LoginNeeded},
        {QStringLiteral("country"), Job::NotAvailableInCountry},
        {QStringLiteral("protected"), Job::Protected},
        {QStringLiteral("not-begun"), Job::NotBegun},
        {QStringLiteral("nothing"), Job::NothingToDownload},
        {QStringLiteral("no-space"), Job::NoSpace},
        {QStringLiteral("destination"), Job::DestinationError},
        {QStringLiteral("settings"), Job::SettingsRefused},
        {QStringLiteral("runtime"), Job::RuntimeMissing},
        {QStringLiteral("tool"), Job::ToolBroken},
        {QStringLiteral("conversion"), Job::ConversionFailed},
        {QStringLiteral("other"), Job::OtherError},
    };
    return table;
}

/** The lines of @p text; a carriage return ends one, as a line feed does. */
QStringList linesOf(const QString &text)
{
    static const QRegularExpression lineEnd(QStringLiteral("[\\r\\n]+"));
    return text.split(lineEnd, Qt::SkipEmptyParts);
}

/** The lines that begin ffmpeg's banner and its description of the files; indented lines follow them. */
bool isBanner(const QString &line)
{
    static const QRegularExpression banner(
        QStringLiteral("^(ffmpeg version |Input #\\d|Output #\\d|Stream mapping:|Press \\[q\\])"));
    return matches(line, banner);
}

/** Other lines that ffmpeg prints without an error. The beginning of a line may be cut off. */
bool isChatter(const QString &line)
{
    static const QRegularExpression chatter(QStringLiteral(
        "\\b(bitrate|speed)= *[\\dN]|\\s--(enable|disable)-|^lib\\w+ +\\d+\\. *\\d+|^video:\\S+ audio:"
        "|^\\[\\w+ @ 0x[0-9a-f]+\\] (using |profile |264 - |frame [IPB]:|mb [IPB]|8x8 |coded |i\\d+ |Weighted |ref |"
        "kb/s:|consecutive |final |Qavg:)"));
    return matches(line, chatter);
}

/** @p line without advice about the tool's command line, which the user of a host cannot use. */
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

/** @p line without the tag of the tool's front, which is meant for programs. */
QString withoutTag(QString line)
{
    static const QRegularExpression tag(QStringLiteral("^ERROR: \\[nox:[a-z-]+\\] "));
    return line.replace(tag, QStringLiteral("ERROR: "));
}

/** Sorts the lines of standard error: errors, warnings, and lines to ignore. */
class Sorter
{
public:
    void add(const QString &line)
    {
        const QString printable = TextSanitizer::line(line);
        m_kind = kindOf(printable, line.at(0).isSpace());
        if (printable.isEmpty() || isChatter(printable) || m_kind == Kind::Traceback || m_kind == Kind::Banner)
            return;
        if (const QString text = withoutHints(withoutTag(printable)); !text.isEmpty())
            (m_kind == Kind::Warning ? m_warnings : m_complaints) += text;
    }

    QStringList warnings() const { return m_warnings; }
    QStringList result() const { return m_complaints.isEmpty() ? m_warnings : m_complaints; }

private:
    enum class Kind { Complaint, Warning, Traceback, Banner };

    /** A line without a prefix continues the message before it. */
    Kind kindOf(const QString &line, bool isIndented) const
    {
        static const QRegularExpression warning(QStringLiteral("^(WARNING|Deprecated)"));
        static const QRegularExpression complaint(
            QStringLiteral("^(ERROR|NOTE: |CRITICAL|Usage:|\\[|[\\w.]*(Error|Exception)\\b)"));
        if (matches(line, warning))
            return Kind::Warning;
        if (line.startsWith(QLatin1String("Traceback")))
            return Kind::Traceback;
        if (isBanner(line))
            return Kind::Banner;
        const bool isResumed = isIndented || m_kind == Kind::Warning;
        return isResumed && !matches(line, complaint) ? m_kind : Kind::Complaint;
    }

    Kind m_kind = Kind::Complaint;
    QStringList m_complaints;
    QStringList m_warnings;
};

Sorter sorted(const QString &errorOutput)
{
    Sorter sorter;
    const QStringList lines = linesOf(errorOutput);
    for (const QString &line : lines)
        sorter.add(line);
    return sorter;
}

} // namespace

QString ToolMessage::excerpt(const QString &errorOutput)
{
    const QStringList lines = sorted(errorOutput).result();
    QString text = lines.mid(qMax(0, static_cast<int>(lines.size()) - maximumLines)).join(QLatin1Char('\n'));
    if (text.size() <= maximumCharacters)
        return text;
    text = text.right(maximumCharacters - 1);
    if (text.at(0).isLowSurrogate())
        text.remove(0, 1);
    return QChar(0x2026) + text; // an ellipsis
}

Job::Error ToolMessage::errorOfTag(const QString &tag)
{
    return errors().value(tag, Job::OtherError);
}

QStringList ToolMessage::tags()
{
    return errors().keys();
}

Job::Error ToolMessage::error(const QString &errorOutput)
{
    // Only the first error has the front's tag. Later lines may contain text of the page.
    static const QRegularExpression firstError(QStringLiteral("^ERROR: (?:\\[nox:([a-z-]+)\\] )?"),
                                               QRegularExpression::MultilineOption);
    if (const QRegularExpressionMatch match = firstError.match(errorOutput); match.hasMatch())
        return errorOfTag(match.captured(1));
    static const QRegularExpression brokenArchive(
        QStringLiteral("^(zlib\\.error: |zipimport\\.ZipImportError: |(zipfile\\.)?BadZipFile: |SyntaxError: )"
                       "|can't find '__main__' module"),
        QRegularExpression::MultilineOption);
    return matches(errorOutput, brokenArchive) ? Job::ToolBroken : Job::OtherError;
}

QStringList ToolMessage::warnings(const QString &errorOutput)
{
    const QLatin1String prefix("WARNING: ");
    const QLatin1String notice("WARNING: [nox:"); // notices for programs
    QStringList warnings;
    bool isWarning = false; // false for other messages, such as a deprecated feature
    const QStringList lines = sorted(errorOutput).warnings();
    for (const QString &line : lines) {
        const bool isFirst = line.startsWith(prefix) && !line.startsWith(notice);
        const bool isContinued = isWarning && !line.startsWith(QLatin1String("Deprecated")) && !line.startsWith(notice);
        if (isFirst)
            warnings += line.mid(prefix.size());
        else if (isContinued)
            warnings.last() += QLatin1Char(' ') + line;
        isWarning = isFirst || isContinued;
    }
    warnings.removeDuplicates();
    return warnings;
}

} // namespace Nox
