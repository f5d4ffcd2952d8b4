#include <nox/jobs/JobProcess.h>

#include <nox/front/ToolEnvironment.h>
#include <nox/process/ChildProcess.h>

#include <QPointer>

#include <csignal>
#include <sys/types.h>
#include <utility>

namespace Nox {

namespace {

constexpr int mebibyte = 1024 * 1024;
constexpr int longestLine = 4 * mebibyte;
constexpr qint64 mostOutput = 64LL * mebibyte;
constexpr int mostErrors = 16 * 1024;

QString quoted(QString argument)
{
    return QLatin1Char('"') + argument.replace(QLatin1Char('"'), QLatin1String(R"(""")")) + QLatin1Char('"');
}

} // namespace

JobProcess::JobProcess()
    : m_process(new ChildProcess)
{
    connect(m_process, &QProcess::started, this, &JobProcess::started);
    connect(m_process, &QProcess::readyReadStandardOutput, this, &JobProcess::readOutput);
    connect(m_process, &QProcess::readyReadStandardError, this, &JobProcess::readErrors);
    connect(m_process, processFinished, this, [this](int exitCode, QProcess::ExitStatus status) {
        m_hasEnded = true;
        m_isDone = status == QProcess::NormalExit && exitCode == 0;
        readErrors();
        readOutput();
    });
    connect(m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        const ChildProcess::SignalGuard guard(m_process);
        if (error == QProcess::FailedToStart)
            Q_EMIT failedToStart();
    });
}

JobProcess::~JobProcess()
{
    m_process->disconnect(this);
    m_process->dispose();
}

void JobProcess::start(const QString &program, const QStringList &arguments)
{
    QString command = quoted(program);
    for (const QString &argument : arguments)
        command += QLatin1Char(' ') + quoted(argument);
    m_process->launch(command);
}

void JobProcess::startTool(const ToolSetup &tools, const QStringList &arguments)
{
    const QStringList head{QStringLiteral("-X"), QStringLiteral("pycache_prefix=") + tools.pycacheFolder(),
                           tools.toolFile()};
    start(GetPythonExecPath(), head + arguments);
}

void JobProcess::kill()
{
    m_process->killGroup();
}

void JobProcess::terminate()
{
    // The program leads a process group as soon as it runs. Before, it would die without a chance to remove its files.
    if (m_process->state() == QProcess::Starting) {
        connect(m_process, &QProcess::started, this, &JobProcess::terminate);
        return;
    }
    // A second signal could end the programs that remove the files.
    if (m_process->state() != QProcess::Running || std::exchange(m_isTerminating, true))
        return;
    if (::kill(-static_cast<pid_t>(m_process->processId()), SIGTERM) != 0)
        kill();
}

void JobProcess::terminateAndWait(int milliseconds)
{
    m_process->disconnect(this);
    m_process->discardOutput(QProcess::StandardOutput);
    m_process->discardOutput(QProcess::StandardError);
    m_process->waitForStarted(milliseconds);
    terminate();
    m_process->waitForFinished(milliseconds);
}

void JobProcess::readErrors()
{
    const ChildProcess::SignalGuard guard(m_process);
    m_errors += m_process->readAllStandardError();
    if (m_errors.size() > mostErrors)
        m_errors = m_errors.right(mostErrors);
}

// The receiver of a signal may run an event loop. Only the outermost call reads, so that lines keep their order.
void JobProcess::readOutput()
{
    if (m_isReading)
        return;
    m_isReading = true;
    const ChildProcess::SignalGuard guard(m_process);
    const QPointer<JobProcess> alive(this);
    for (QByteArray output = m_process->readAllStandardOutput(); !output.isEmpty();) {
        takeOutput(output);
        if (alive.isNull())
            return;
        output = m_process->readAllStandardOutput();
    }
    m_isReading = false;
    if (m_hasEnded && !m_line.isEmpty()) // the last line may have no line feed
        Q_EMIT lineRead(std::exchange(m_line, {}));
    if (!alive.isNull() && m_hasEnded)
        Q_EMIT ended(m_isDone);
}

void JobProcess::takeOutput(const QByteArray &output)
{
    const QPointer<JobProcess> alive(this);
    m_outputSize += output.size();
    if (m_outputSize > mostOutput)
        m_process->killGroup();
    const auto size = static_cast<int>(output.size());
    for (int begin = 0; begin < size && !alive.isNull();) {
        const auto end = static_cast<int>(output.indexOf('\n', begin));
        const int length = (end < 0 ? size : end) - begin;
        m_skipsLine = m_skipsLine || m_line.size() + length > longestLine;
        if (m_skipsLine)
            m_line.clear();
        else
            m_line.append(output.constData() + begin, length);
        begin += length + 1;
        if (end < 0)
            return;
        const QByteArray line = std::exchange(m_line, {});
        if (!std::exchange(m_skipsLine, false))
            Q_EMIT lineRead(line);
    }
}

} // namespace Nox
