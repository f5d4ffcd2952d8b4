#include "tests/hosts/FetchProgram.h"
#include "tests/util/Rows.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcessEnvironment>

#include <csignal>

QString FetchProgram::programFile()
{
    return QCoreApplication::applicationDirPath() + "/nox-fetch"_s;
}

bool FetchProgram::install()
{
    QFile::remove(programFile());
    return QFile::copy(QStringLiteral(NOX_FETCH_PROGRAM), programFile());
}

FetchProgram::FetchProgram(const QString &workingFolder)
{
    m_process.setWorkingDirectory(workingFolder);
}

FetchProgram::~FetchProgram()
{
    m_process.kill();
    m_process.waitForFinished();
}

void FetchProgram::start(const QStringList &arguments, const QString &program)
{
    // Neither a tool nor settings of the developer's own.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME"})
        environment.insert(QLatin1String(name), m_process.workingDirectory() + "/none"_s);
    m_process.setProcessEnvironment(environment);
    m_process.start(program, arguments);
    m_process.waitForStarted();
}

bool FetchProgram::run(const QStringList &arguments)
{
    start(arguments);
    return waitForEnd();
}

bool FetchProgram::runWithClosedChannels(const QStringList &arguments)
{
    start(QStringList{"-c"_s, R"(exec "$0" "$@" <&- >&- 2>&-)"_s, programFile()} + arguments, "/bin/sh"_s);
    return waitForEnd();
}

bool FetchProgram::waitForEnd()
{
    constexpr int timeoutMs = 60000; // only a failing test waits so long
    const bool hasEnded = m_process.state() == QProcess::NotRunning || m_process.waitForFinished(timeoutMs);
    m_output = QString::fromUtf8(m_process.readAllStandardOutput());
    m_errors = QString::fromUtf8(m_process.readAllStandardError());
    return hasEnded;
}

void FetchProgram::interrupt(int signalNumber)
{
    ::kill(static_cast<pid_t>(m_process.processId()), signalNumber);
}

int FetchProgram::exitCode() const
{
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}
