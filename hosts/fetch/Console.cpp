#include "hosts/fetch/Console.h"

#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

namespace NoxFetch {

namespace {

constexpr int usualWidth = 80;
const QLatin1String lineStart("\r\x1b[K"); // first column, then clear the line

} // namespace

Console::Console()
    : m_isTerminal(isatty(STDERR_FILENO) == 1)
{
}

int Console::width() const
{
    winsize size = {};
    if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    return usualWidth;
}

void Console::setQuiet(bool quiet)
{
    m_quiet = quiet;
}

void Console::note(const QString &text)
{
    if (!m_quiet) {
        clearStatus();
        writeError(text + QLatin1Char('\n'));
    }
}

void Console::error(const QString &message, const QString &details)
{
    clearStatus();
    QString lines = QStringLiteral("nox-fetch: ") + message;
    if (!details.isEmpty())
        lines += QStringLiteral("\n  ") + QString(details).replace(QLatin1Char('\n'), QLatin1String("\n  "));
    writeError(lines + QLatin1Char('\n'));
}

bool Console::result(const QString &text)
{
    clearStatus();
    const QByteArray bytes = (text + QLatin1Char('\n')).toUtf8();
    const auto size = static_cast<std::size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0;
}

void Console::showStatus(const QString &line)
{
    if (m_isTerminal && !m_quiet) {
        m_hasStatus = true;
        writeError(lineStart + line);
    }
}

void Console::clearStatus()
{
    if (m_hasStatus) {
        m_hasStatus = false;
        writeError(lineStart);
    }
}

void Console::writeError(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    // If standard error cannot be written, no report is possible.
    static_cast<void>(std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stderr));
    static_cast<void>(std::fflush(stderr));
}

} // namespace NoxFetch
