#include <nox/jobs/JoinProgress.h>

#include <QRegularExpression>

namespace Nox {

namespace {

constexpr qint64 maximumSeconds = 9999LL * 3600; // the largest time that ffmpeg prints

constexpr double leastRate = 0.05; // a smaller rate would be shown as 0

/** Milliseconds of @p match, whose first three groups are hours, minutes, and seconds with a fraction. */
qint64 milliseconds(const QRegularExpressionMatch &match)
{
    const double seconds =
        match.captured(1).toDouble() * 3600 + match.captured(2).toDouble() * 60 + match.captured(3).toDouble();
    return static_cast<qint64>(seconds * 1000);
}

} // namespace

JoinProgress::JoinProgress(qint64 seconds)
    : m_expectedMs(qBound<qint64>(0, seconds, maximumSeconds) * 1000)
{
}

void JoinProgress::read(const QString &errorOutput)
{
    // At most four digits of hours, so that no number overflows.
    static const QString time = QStringLiteral("(\\d{1,4}):(\\d\\d):(\\d\\d(?:\\.\\d{1,6})?)");
    static const QRegularExpression whole(QStringLiteral("^ *Duration: ") + time, QRegularExpression::MultilineOption);
    static const QRegularExpression done(QStringLiteral("\\btime=") + time);
    static const QRegularExpression rate(QStringLiteral("\\bspeed= *(\\d{1,6}(?:\\.\\d{1,6})?)x"));
    // ffmpeg works until the end of the longer input.
    for (auto matches = whole.globalMatch(errorOutput); matches.hasNext();)
        m_totalMs = qMax(m_totalMs, milliseconds(matches.next()));
    for (auto matches = done.globalMatch(errorOutput); matches.hasNext();)
        m_doneMs = milliseconds(matches.next());
    for (auto matches = rate.globalMatch(errorOutput); matches.hasNext();)
        m_rate = matches.next().captured(1).toDouble();
}

bool JoinProgress::isKnown() const
{
    return m_doneMs >= 0;
}

TransferFigures JoinProgress::figures() const
{
    const qint64 totalMs = m_totalMs > 0 ? m_totalMs : m_expectedMs;
    return TransferFigures::ofTime(totalMs, qMax<qint64>(0, m_doneMs),
                                   m_rate < leastRate ? 0 : static_cast<qint64>(m_rate * 1000));
}

} // namespace Nox
