#include <nox/jobs/JobProcess.h>

#include <nox/front/ToolEnvironment.h>
#include <nox/process/ChildProcess.h>

#include <QPointer>

namespace Nox {

namespace {

constexpr int mebibyte = 1024 * 1024;
constexpr int longestLine = 4 * mebibyte;
constexpr qint64 mostOutput = 64LL * mebibyte;
constexpr int mostErrors = 16 * 1024;

QString quoted(QString argument)
{
    return QLatin1Char('"') + argument.replace(QLatin1Char('"'), QLatin1String("\"\"\"")) + QLatin1Char('"');
}

} // namespace

JobProcess::JobProcess()
    : m_process(new ChildProcess)
{
    connect(m_process, &QProcess::started, this, &JobProcess::started);
    connect(m_process, &QProcess::readyReadStandardOutput, this, &JobProcess::readOutput);
    connect(m_process, &QProcess::readyReadStandardError, this, &JobProcess::readErrors);
    connect(m_process, processFinished, this, [this](int exitCode, QProcess::ExitStatus status) {
        const ChildProcess::SignalGuard guard(m_process);
        const QPointer<JobProcess> alive(this);
        readErrors();
        readOutput();
        if (!alive.isNull() && !m_line.isEmpty()) // without its end
            Q_EMIT lineRead(std::exchange(m_line, {}));
        if (!alive.isNull())
            Q_EMIT ended(status == QProcess::NormalExit && exitCode == 0);
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

void JobProcess::readErrors()
{
    const ChildProcess::SignalGuard guard(m_process);
    m_errors += m_process->readAllStandardError();
    if (m_errors.size() > mostErrors)
        m_errors = m_errors.right(mostErrors);
}

void JobProcess::readOutput()
{
    const ChildProcess::SignalGuard guard(m_process);
    const QPointer<JobProcess> alive(this);
    const QByteArray output = m_process->readAllStandardOutput();
    m_outputSize += output.size();
    if (m_outputSize > mostOutput)
        m_process->killGroup();
    for (decltype(output.size()) begin = 0; begin < output.size() && !alive.isNull();) {
        const auto end = output.indexOf('\n', begin);
        const auto length = (end < 0 ? output.size() : end) - begin;
        m_skipsLine = m_skipsLine || m_line.size() + length > longestLine;
        if (m_skipsLine)
            m_line.clear();
        else
            m_line.append(output.constData() + begin, length);
        begin += length + 1;
        if (end < 0)
            break;
        const QByteArray line = std::exchange(m_line, {});
        if (!std::exchange(m_skipsLine, false))
            Q_EMIT lineRead(line);
    }
}

} // namespace Nox
