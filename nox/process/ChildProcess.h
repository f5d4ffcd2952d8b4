#pragma once

#include <nox/process/ModifiableProcess.h>

namespace Nox {

/** The signal that reports the end of a process; Qt 5 has a second one of that name. */
inline constexpr auto processFinished = QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished);

/**
 * An external program, started from a command text, in a process group of its own. Programs that it starts itself are
 * killed with it, and also when it ends. On Linux a program that the main thread has started does not outlive the host.
 *
 * Destroying the object kills a program that still runs, and waits for its end.
 */
class ChildProcess final : public ModifiableProcess
{
public:
    /**
     * Kept by a slot while it handles a signal of the process. The process is not destroyed before the emission of the
     * signal has ended, even if the slot runs an event loop.
     */
    class SignalGuard
    {
    public:
        explicit SignalGuard(ChildProcess *process); ///< does nothing for a null pointer
        ~SignalGuard();
        Q_DISABLE_COPY_MOVE(SignalGuard)

    private:
        ChildProcess *m_process;
    };

    explicit ChildProcess(QObject *parent = nullptr);
    ~ChildProcess() override;
    Q_DISABLE_COPY_MOVE(ChildProcess)

    /**
     * Starts the program for reading and writing. The text is split at blanks outside double quotes; three double
     * quotes are read as one.
     */
    void launch(const QString &command);

    /** Keeps about @p bytes of standard output for reading, and discards what the program prints beyond that. */
    void limitOutput(qint64 bytes);

    /** Kills the program with its whole process group; does nothing when it does not run. */
    void killGroup();

    /** Discards what the program has printed to @p channel, and what it will print. */
    void discardOutput(QProcess::ProcessChannel channel);

    /** Kills the program and destroys this object, or destroys it after the last SignalGuard is gone. */
    void dispose();

private:
    void killDescendants();

    int m_guards = 0;
    bool m_isDisposed = false;
    bool m_hasCrashed = false; // with Qt 5 the state is still Running when a crash is reported
    qint64 m_group = 0;        // process group of the last program; 0 after it has been killed
};

} // namespace Nox
