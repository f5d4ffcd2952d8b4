#include <nox/parse/YdStatusLines.h>

#include <nox/util/TextScan.h>

#include <algorithm>

namespace Nox {

namespace {

using namespace TextScan;

// The characters of \w.
bool isWordCharacter(QChar character)
{
    return character.isLetterOrNumber() || character.isMark() || character == QLatin1Char('_');
}

/*
 * Matches progress lines. The pattern leaves a choice at two places, and the longest candidate wins at both: the end of
 * the size (its word characters may include the "at" that follows), and the end of the speed (its run of non-blank
 * characters may hold several "/s").
 */
class ProgressMatcher
{
public:
    explicit ProgressMatcher(QStringView text)
        : m_text(text)
    {
    }

    // Behind a "[download]" tag.
    std::optional<YdStatusLines::Progress> matchAt(qsizetype position)
    {
        const qsizetype percentage = skipSpaces(m_text, position);
        const qsizetype percentageEnd = skipNumber(m_text, percentage);
        if (percentageEnd == percentage || !isAt(m_text, percentageEnd, u"%"))
            return std::nullopt;

        const qsizetype of = skipSpaces(m_text, percentageEnd + 1);
        const qsizetype size = isAt(m_text, of, u"of") ? skipSpaces(m_text, of + 2) : m_text.size();
        const qsizetype numberEnd = skipNumber(m_text, size);
        if (numberEnd == size)
            return std::nullopt;

        auto result = matchSpeed(size, numberEnd);
        if (result)
            result->percentage = view(percentage, percentageEnd);
        return result;
    }

private:
    // Non-blank characters up to a blank or the end of the text.
    struct Run {
        qsizetype begin = 0;
        qsizetype end = 0;
        qsizetype speedEnd = -1; // behind the run's last "/s" that "ETA" follows; -1 without one

        bool contains(qsizetype position) const { return position >= begin && position < end; }
    };

    QStringView view(qsizetype begin, qsizetype end) const { return m_text.mid(begin, end - begin); }

    Run scanRun(qsizetype begin) const
    {
        const auto isSpace = [](QChar character) { return character.isSpace(); };
        Run run;
        run.begin = begin;
        run.end = std::find_if(m_text.begin() + begin, m_text.end(), isSpace) - m_text.begin();

        const QStringView characters = view(begin, run.end);
        if (characters.endsWith(u"/s") && isAt(m_text, skipSpaces(m_text, run.end), u"ETA"))
            run.speedEnd = run.end;
        else if (const qsizetype found = characters.lastIndexOf(u"/sETA"); found >= 0)
            run.speedEnd = begin + found + 2;
        return run;
    }

    std::optional<YdStatusLines::Progress> matchSpeed(qsizetype size, qsizetype numberEnd)
    {
        // A run without blanks may hold many tags. It is scanned only once.
        if (!m_run.contains(size))
            m_run = scanRun(size);

        const qsizetype wordEnd =
            std::find_if_not(m_text.begin() + numberEnd, m_text.end(), isWordCharacter) - m_text.begin();
        for (qsizetype sizeEnd = wordEnd; sizeEnd >= numberEnd; --sizeEnd) {
            const qsizetype at = sizeEnd == wordEnd ? skipSpaces(m_text, wordEnd) : sizeEnd;
            if (!isAt(m_text, at, u"at"))
                continue;
            const qsizetype speed = skipSpaces(m_text, at + 2);
            const qsizetype speedEnd = m_run.contains(speed) ? m_run.speedEnd : scanRun(speed).speedEnd;
            if (speedEnd >= speed + 2)
                return YdStatusLines::Progress{QStringView(), view(size, sizeEnd), view(speed, speedEnd)};
        }
        return std::nullopt;
    }

    QStringView m_text;
    Run m_run;
};

} // namespace

std::optional<YdStatusLines::Progress> YdStatusLines::findProgress(QStringView text)
{
    constexpr QStringView tag(u"[download]");
    ProgressMatcher matcher(text);
    for (qsizetype found = text.indexOf(tag); found >= 0; found = text.indexOf(tag, found + tag.size())) {
        if (auto progress = matcher.matchAt(found + tag.size()))
            return progress;
    }
    return std::nullopt;
}

std::optional<QStringView> YdStatusLines::findDestination(QStringView text)
{
    constexpr QStringView tag(u"[download] Destination: ");
    const auto isLineBreak = [](QChar character) { return character == u'\r' || character == u'\n'; };
    for (qsizetype found = text.indexOf(tag); found >= 0;) {
        const qsizetype begin = found + tag.size();
        const qsizetype end = std::find_if(text.begin() + begin, text.end(), isLineBreak) - text.begin();
        const QStringView name = text.mid(begin, end - begin);
        if (name.lastIndexOf(u'.') > 0)
            return name;
        // Another tag on this line would need a dot, too.
        found = text.indexOf(tag, end);
    }
    return std::nullopt;
}

std::optional<QStringView> YdStatusLines::findAlreadyDownloaded(QStringView text)
{
    constexpr QStringView tag(u"[download] ");
    constexpr QStringView phrase(u" has already been downloaded");
    const qsizetype found = text.indexOf(tag);
    if (found < 0)
        return std::nullopt;

    // The name reaches from the first tag to the last phrase, across lines.
    const qsizetype begin = found + tag.size();
    for (qsizetype end = text.lastIndexOf(phrase); end >= begin; end = text.lastIndexOf(phrase, end - 1)) {
        const qsizetype behind = end + phrase.size();
        if (behind < text.size() && text[behind].isSpace())
            return text.mid(begin, end - begin);
    }
    return std::nullopt;
}

} // namespace Nox
