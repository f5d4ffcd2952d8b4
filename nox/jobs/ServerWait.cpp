#include <nox/jobs/ServerWait.h>

#include <QRegularExpression>

namespace Nox {

namespace {

/** For the line that the front prints before each pause: with the seconds, the attempt, and how many there are. */
QString textOf(const QString &line)
{
    static const QRegularExpression number(QStringLiteral("\\d{1,9}"));
    QStringList numbers;
    for (auto matches = number.globalMatch(line); matches.hasNext();)
        numbers += matches.next().captured();
    if (numbers.size() != 3)
        return ServerWait::tr("The server does not answer. It is asked again in a moment.");
    return ServerWait::tr("The server does not answer. It is asked again in %1 s (%2 of %3).")
        .arg(numbers.at(0), numbers.at(1), numbers.at(2));
}

} // namespace

bool ServerWait::read(const QString &errorOutput, const std::function<qint64()> &countBytes)
{
    if (m_text.isEmpty() && m_count == 0 && !errorOutput.contains(QLatin1String("[nox:waiting]")))
        return false;
    static const QRegularExpression waiting(QStringLiteral("^WARNING: \\[nox:waiting\\] (.*)\\n"),
                                            QRegularExpression::MultilineOption);
    QString line;
    int count = 0;
    for (auto matches = waiting.globalMatch(errorOutput); matches.hasNext(); ++count)
        line = matches.next().captured(1);
    const bool isNew = count > m_count || (count > 0 && line != m_line);
    const qint64 bytes = countBytes();
    const bool isOver = bytes != m_bytes;
    m_line = line;
    m_count = count;
    m_bytes = bytes;
    const QString old = m_text;
    if (isNew)
        m_text = textOf(line);
    else if (isOver)
        m_text.clear();
    return m_text != old;
}

} // namespace Nox
