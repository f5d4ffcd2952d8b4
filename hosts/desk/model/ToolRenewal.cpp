#include "hosts/desk/model/ToolRenewal.h"

#include <nox/jobs/TextSanitizer.h>
#include <nox/jobs/ToolSetup.h>

#include <QDateTime>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>

#include <csignal>

namespace NoxDesk {

namespace {

constexpr int maximumCharacters = 600; // of the command's message

} // namespace

ToolRenewal::ToolRenewal(QObject *parent)
    : QObject(parent)
{
    connect(&m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this, &ToolRenewal::onFinished);
}

ToolRenewal::~ToolRenewal()
{
    m_process.disconnect(this);
    sendSignal(SIGKILL);
    m_process.waitForFinished();
}

void ToolRenewal::start()
{
    const QString command = QStandardPaths::findExecutable(QStringLiteral("nox-renew-tool"));
    if (command.isEmpty()) {
        Q_EMIT finished(tr("The command nox-renew-tool is not installed."));
    } else if (!isRunning()) {
        m_isCancelled = false;
        m_process.setStandardInputFile(QProcess::nullDevice());
        // In its own process group, since it starts other programs.
        m_process.start(QStringLiteral("setsid"), {command});
    }
}

void ToolRenewal::cancel()
{
    m_isCancelled = true;
    sendSignal(SIGTERM);
}

void ToolRenewal::sendSignal(int number)
{
    if (const qint64 id = m_process.processId(); id > 0 && ::kill(-static_cast<pid_t>(id), number) != 0)
        m_process.kill(); // it has no process group yet
}

void ToolRenewal::onFinished(int code, QProcess::ExitStatus status)
{
    const QString output = QString::fromUtf8(m_process.readAllStandardOutput()).trimmed();
    const QString errors = QString::fromUtf8(m_process.readAllStandardError()).trimmed().right(maximumCharacters);
    if (m_isCancelled) {
        Q_EMIT finished(tr("Cancelled. The tool has not changed."));
    } else if (status == QProcess::NormalExit && code == 0) {
        Q_EMIT finished(tr("Renewed: %1").arg(output.section(QLatin1Char('\n'), -1)));
    } else {
        Q_EMIT finished(tr("The tool could not be renewed: %1").arg(Nox::TextSanitizer::line(errors)));
    }
}

QString ToolRenewal::dateText()
{
    const QFileInfo file(Nox::ToolSetup::ownToolFile());
    return file.exists() ? QLocale().toString(file.lastModified(), QLocale::ShortFormat) : QString();
}

} // namespace NoxDesk
