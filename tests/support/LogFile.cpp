#include "tests/support/LogFile.h"

#include "tests/util/Files.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Nox;

namespace {

bool isFlood(char first, char second)
{
    return first == '~' && second == '~';
}

} // namespace

LogFile::LogFile(const QString &path)
    : m_path(path)
{
    Logger::init(path.toStdString(), LOG_DEBUG, LOG_OUT_FILE);
}

QStringList LogFile::records(_NoxLogLevel lowest, bool withSource) const
{
    QByteArray bytes = Files::content(m_path);
    bytes.truncate(int(std::unique(bytes.begin(), bytes.end(), isFlood) - bytes.begin()));
    const QString text = QString::fromLatin1(bytes);
    static const QRegularExpression header(QStringLiteral(
        "\\n \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d  (\\[\\w+\\])  (\\w+)  ([\\w.]+)\\(line[1-9]\\d*\\) :\\n"));
    static const QStringList prefixes{QStringLiteral("[DEBUG]"), QStringLiteral("[INFO]"), QStringLiteral("[ERROR]")};

    QStringList result;
    QRegularExpressionMatch match = header.match(text);
    if (match.capturedStart() != 0 && !text.isEmpty())
        return {QStringLiteral("no record: ") + text.left(200)};
    while (match.hasMatch()) {
        const auto start = match.capturedEnd();
        const QRegularExpressionMatch next = header.match(text, start);
        const auto end = next.hasMatch() ? next.capturedStart() : text.size();
        const QString message = text.mid(start, end - start - 1); // without the record's own line end
        if (prefixes.indexOf(match.captured(1)) >= lowest) {
            const QString source = match.captured(1) + QLatin1Char(' ') + match.captured(3) + QLatin1Char(' ');
            result.append((withSource ? source : QString()) + match.captured(2) + QStringLiteral(": ") + message);
        }
        match = next;
    }
    return result;
}
