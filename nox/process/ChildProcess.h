#pragma once

#include <nox/process/ModifiableProcess.h>

namespace Nox {

/** The signal that reports the end of a process; Qt 5 has a second one of that name. */
inline constexpr auto processFinished = QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished);

/**
 * An external program, started from a command text, in a process group of its own: whatever the
 * program starts itself is stopped with it and goes when it ends. On Linux a program that the main
 * thread has started does not outlive the host.
 *
 * Destroying the object stops a program that still runs, and waits for its end.
 */
class ChildProcess final : public ModifiableProcess
{
public:
    /**
     * Held while a slot answers one of the process's signals. The process is not destroyed meanwhile,
     * nor before the signal's emission has come to its end, whatever event loops run inside the slot.
     */
    class SignalGuard
    {
    public:
        explicit SignalGuard(ChildProcess *process); ///< of no process: guards nothing
        ~SignalGuard();
        Q_DISABLE_COPY_MOVE(SignalGuard)

    private:
        ChildProcess *m_process;
    };

    explicit ChildProcess(QObject *parent = nullptr);
    ~ChildProcess() override;
    Q_DISABLE_COPY_MOVE(ChildProcess)

    /**
     * Starts the program for reading and writing. The text is split at blanks outside double quotes;
     * three double quotes stand for one.
     */
    void launch(const QString &command);

    /** Kills the program with its whole process group; does nothing when it does not run (any more). */
    void killGroup();

    /** Drops what the program has printed to @p channel and what it still prints. */
    void discardOutput(QProcess::ProcessChannel channel);

    /** Kills the program and destroys this object: at once, or, while a SignalGuard is held, after it. */
    void dispose();

private:
    void killDescendants();

    int m_guards = 0;
    bool m_isDisposed = false;
    bool m_hasCrashed = false; // the last program; with Qt 5 its state is still Running when it says so
    qint64 m_group = 0;        // process group of the last program; 0 when nothing can be left of it
};

} // namespace Nox
