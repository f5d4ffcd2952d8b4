#include <nox/process/ChildProcess.h>

#include <csignal>
#include <cstdlib>
#include <sys/types.h>
#include <unistd.h>
#if defined(Q_OS_LINUX)
#  include <sys/prctl.h>
#endif

namespace Nox {

namespace {

// Runs in the child before the program starts: only what is safe between fork and exec.
void prepareChild(pid_t host)
{
    ::setpgid(0, 0);
#if defined(Q_OS_LINUX)
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The host may have died before the signal was asked for.
    if (::getppid() != host)
        ::_exit(EXIT_FAILURE);
#else
    Q_UNUSED(host)
#endif
}

} // namespace

ChildProcess::SignalGuard::SignalGuard(ChildProcess *process)
    : m_process(process)
{
    ++process->m_guards;
}

ChildProcess::SignalGuard::~SignalGuard()
{
    if (ChildProcess *process = m_process.data())
        --process->m_guards;
}

ChildProcess::ChildProcess(QObject *parent)
    : ModifiableProcess(parent)
{
    connect(this, &QProcess::started, this, [this] { m_group = processId(); });
    connect(this, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this, &ChildProcess::killDescendants);
}

ChildProcess::~ChildProcess()
{
    if (state() == QProcess::NotRunning)
        return;
    // Nobody acts on a process that is being destroyed.
    disconnect();
    killGroup();
    waitForFinished();
}

void ChildProcess::launch(const QString &command)
{
    QStringList arguments = splitCommand(command);
    // The host as of now: it may have forked since this object was made.
    setChildProcessModifier([host = ::getpid()] { prepareChild(host); });
    const QString program = arguments.isEmpty() ? QString() : arguments.takeFirst();
    start(program, arguments, QIODevice::ReadWrite);
}

void ChildProcess::killGroup()
{
    if (state() == QProcess::NotRunning)
        return;
    m_group = processId();
    killDescendants();
    // A child so young that it has no group yet has no descendants either.
    kill();
}

void ChildProcess::dispose()
{
    if (m_guards == 0) {
        delete this;
        return;
    }
    setParent(nullptr);
    killGroup();
    deleteLater();
}

void ChildProcess::discardOutput(QProcess::ProcessChannel channel)
{
    closeReadChannel(channel);
    static_cast<void>(channel == QProcess::StandardOutput ? readAllStandardOutput() : readAllStandardError());
}

// The group's number stays taken as long as one of its members lives. That none does and the number has
// been given away meanwhile is possible in theory, as for every signal sent by number.
void ChildProcess::killDescendants()
{
    if (m_group > 0)
        ::kill(static_cast<pid_t>(-m_group), SIGKILL);
    m_group = 0;
}

} // namespace Nox
