#pragma once

#include <nox/process/ModifiableProcess.h>

#include <QPointer>

namespace Nox {

/**
 * An external program, started from a command text, in a process group of its own: whatever the
 * program starts itself is stopped with it and goes when it ends, and on Linux it does not outlive
 * the host.
 *
 * Destroying the object stops a program that still runs, and waits for its end.
 */
class ChildProcess final : public ModifiableProcess
{
public:
    /**
     * Held while a slot answers one of the process's signals, which the process must outlive.
     * Not by `QObject::sender()`: inside a notification of the worker that names the worker itself.
     */
    class SignalGuard
    {
    public:
        explicit SignalGuard(ChildProcess *process);
        ~SignalGuard();
        Q_DISABLE_COPY_MOVE(SignalGuard)

    private:
        QPointer<ChildProcess> m_process;
    };

    explicit ChildProcess(QObject *parent = nullptr);
    ~ChildProcess() override;
    Q_DISABLE_COPY_MOVE(ChildProcess)

    /**
     * Starts the program for reading and writing. The text is split at blanks outside double quotes;
     * three double quotes stand for one.
     */
    void launch(const QString &command);

    /** Kills the program with its whole process group; does nothing when it does not run. */
    void killGroup();

    /** Drops what the program has printed to @p channel and what it still prints. */
    void discardOutput(QProcess::ProcessChannel channel);

    /** Kills the program and destroys this object: at once, or, while a SignalGuard is held, from the event loop. */
    void dispose();

private:
    void killDescendants();

    int m_guards = 0;

    qint64 m_group = 0; // process group of the last program; 0 when nothing can be left of it
};

} // namespace Nox
