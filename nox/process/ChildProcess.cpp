#include <nox/process/ChildProcess.h>

#include <nox/log/LogText.h>
#include <nox/process/ProcessOutput.h>

#include <csignal>
#include <cstdlib>
#include <sys/types.h>
#include <unistd.h>
#if defined(Q_OS_LINUX)
#  include <sys/prctl.h>
#  include <sys/syscall.h>
#endif

namespace Nox {

namespace {

// Runs in the child: the kernel is to kill it when the host dies.
void dieWithHost(pid_t host)
{
#if defined(Q_OS_LINUX)
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The host may have died before this call.
    if (::getppid() != host)
        ::_exit(EXIT_FAILURE);
#else
    Q_UNUSED(host)
#endif
}

// The kernel sends that signal when the thread ends that has started the child. Only the main thread lives as long as
// the host.
bool isMainThread()
{
#if defined(Q_OS_LINUX)
    return ::syscall(SYS_gettid) == ::getpid();
#else
    return false;
#endif
}

// If it is ignored, the kernel removes ended children at once, and QProcess cannot learn how they have ended.
bool isChildSignalIgnored()
{
    struct sigaction action = {};
    return ::sigaction(SIGCHLD, nullptr, &action) == 0
        && (action.sa_handler == SIG_IGN || (action.sa_flags & SA_NOCLDWAIT) != 0);
}

} // namespace

ChildProcess::SignalGuard::SignalGuard(ChildProcess *process)
    : m_process(process)
{
    if (process != nullptr)
        ++process->m_guards;
}

ChildProcess::SignalGuard::~SignalGuard()
{
    // The emission of the signal still uses the object after this. deleteLater() waits until the event handlers have
    // returned that are active now, and this emission is one of them.
    if (m_process != nullptr && --m_process->m_guards == 0 && m_process->m_isDisposed)
        m_process->deleteLater();
}

ChildProcess::ChildProcess(QObject *parent)
    : ModifiableProcess(parent)
{
    connect(this, &QProcess::started, this, [this] { m_group = processId(); });
    connect(this, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error != QProcess::Crashed)
            return;
        m_hasCrashed = true;
        killDescendants();
    });
    connect(this, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this, &ChildProcess::killDescendants);
}

ChildProcess::~ChildProcess()
{
    if (state() == QProcess::NotRunning)
        return;
    // No slot may run for an object that is being destroyed.
    disconnect();
    killGroup();
    waitForFinished();
}

void ChildProcess::launch(const QString &command)
{
    QStringList arguments = splitCommand(command);
    m_hasCrashed = false;
    // Runs between fork() and exec(), where only few calls are allowed. getpid() is called now because the host may
    // have forked before.
    setChildProcessModifier([host = ::getpid(), isBound = isMainThread()] {
        ::setpgid(0, 0);
        if (isBound)
            dieWithHost(host);
    });
    if (isChildSignalIgnored())
        NOX_LOG_ERROR("SIGCHLD is ignored: the ends of programs are told wrongly or not at all.");
    const QString program = arguments.isEmpty() ? QString() : arguments.takeFirst();
    start(program, arguments, QIODevice::ReadWrite);
}

void ChildProcess::limitOutput(qint64 bytes)
{
    connect(this, &QProcess::readyReadStandardOutput, this, [this, bytes] {
        if (bytesAvailable() <= bytes)
            return;
        closeReadChannel(QProcess::StandardOutput); // what has come so far stays
        NOX_LOG_ERROR("Output of a program is lost, the first %lld bytes are kept.",
                      static_cast<long long>(bytesAvailable()));
    });
}

void ChildProcess::killGroup()
{
    // After a crash the system may already have given the process id to another program.
    if (state() == QProcess::NotRunning || m_hasCrashed)
        return;
    m_group = processId();
    killDescendants();
    // A child that has no group yet has no descendants either.
    kill();
}

void ChildProcess::dispose()
{
    if (m_guards == 0) {
        delete this;
        return;
    }
    m_isDisposed = true;
    setParent(nullptr);
    killGroup();
}

void ChildProcess::discardOutput(QProcess::ProcessChannel channel)
{
    closeReadChannel(channel);
    ProcessOutput::drop(this, channel);
}

// The id of the group stays in use as long as one of its members lives. In theory the system may have given it away
// before the call, as with every signal that is sent by id.
void ChildProcess::killDescendants()
{
    if (m_group > 0)
        ::kill(static_cast<pid_t>(-m_group), SIGKILL);
    m_group = 0;
}

} // namespace Nox
