#include "hosts/common/LibraryLog.h"

#include "hosts/common/TextSanitizer.h"

#include <nox/log/Logger.h>

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace NoxHost {

namespace {

constexpr qint64 maximumRead = 262144;

Nox::_NoxLogLevel levelFor(LibraryLog::Detail detail)
{
    switch (detail) {
    case LibraryLog::Detail::Errors:
        return Nox::LOG_ERROR;
    case LibraryLog::Detail::Milestones:
        return Nox::LOG_INFO;
    case LibraryLog::Detail::Everything:
        break;
    }
    return Nox::LOG_DEBUG;
}

/** The library keeps the tool's words in Latin-1, those of ffmpeg in UTF-8. */
QString decoded(const QByteArray &bytes)
{
    const QString text = QString::fromUtf8(bytes);
    return text.contains(QChar::ReplacementCharacter) ? QString::fromLatin1(bytes) : text;
}

} // namespace

bool LibraryLog::open(const QString &file, Detail detail)
{
    if (file.isEmpty()) {
        if (!m_temporary.open()) {
            Nox::Logger::init("/dev/null", levelFor(detail), 0);
            return false;
        }
        m_fileName = m_temporary.fileName();
    } else {
        m_fileName = QFileInfo(file).absoluteFilePath();
        if (!QFile(m_fileName).open(QIODevice::WriteOnly | QIODevice::Append))
            return false;
    }
    Nox::Logger::init(QFile::encodeName(m_fileName).toStdString(), levelFor(detail), Nox::LOG_OUT_FILE);
    mark();
    return true;
}

QString LibraryLog::fileName() const
{
    return m_fileName;
}

void LibraryLog::mark()
{
    m_mark = QFileInfo(m_fileName).size();
}

QString LibraryLog::complaints() const
{
    QFile file(m_fileName);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(qMax(m_mark, file.size() - maximumRead)))
        return {};
    const QString text = decoded(file.readAll());
    static const QRegularExpression header(
        QStringLiteral("\\n \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d  \\[[A-Z]+\\] [^\\n]*\\(line\\d+\\) :\\n"));
    // A blank follows some texts, a line end every one.
    static const QRegularExpression complaint(
        QStringLiteral("^(?:Yd extract|Yd process|FFMPEG) read error: (.*?) ?\\n?$"),
        QRegularExpression::DotMatchesEverythingOption);
    QString result;
    const QStringList messages = text.split(header);
    for (const QString &message : messages) {
        const QRegularExpressionMatch match = complaint.match(message);
        if (match.hasMatch())
            result += match.captured(1);
    }
    return toolWords(result);
}

} // namespace NoxHost
