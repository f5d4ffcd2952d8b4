#pragma once

#include <nox/jobs/ToolSetup.h>

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

namespace Nox {

class ChildProcess;

/**
 * A program that a job runs without a worker of the first library. It keeps a limited amount of output, however much
 * the program prints. The destructor kills the program and everything it started, and may run inside the signals.
 */
class JobProcess : public QObject
{
    Q_OBJECT

public:
    JobProcess();
    ~JobProcess() override;

    void start(const QString &program, const QStringList &arguments);

    /** Starts the download tool of @p tools. */
    void startTool(const ToolSetup &tools, const QStringList &arguments);

    void kill(); ///< Kills the program and everything it started; ended() follows.

    /** Asks the program and everything it started to end, so that they can remove their files. ended() follows then. */
    void terminate();

    /** As terminate(), but waits for the end, at most @p milliseconds. For destructors: no signal follows. */
    void terminateAndWait(int milliseconds);

    /** The last part of the program's standard error. */
    QString errorOutput() const { return QString::fromUtf8(m_errors); }

Q_SIGNALS:
    void started(); ///< The program is running.

    /** One @p line of standard output, without its end. Lines longer than 4 MiB are skipped. */
    void lineRead(const QByteArray &line);

    /** The program has ended. @param isDone whether its exit code is 0 */
    void ended(bool isDone);

    void failedToStart(); ///< No other signal follows.

private:
    void readOutput();
    void takeOutput(const QByteArray &output);
    void readErrors();

    ChildProcess *m_process;
    QByteArray m_line; // incomplete so far
    bool m_skipsLine = false;
    bool m_isReading = false;
    bool m_hasEnded = false;
    bool m_isTerminating = false;
    bool m_isDone = false;
    qint64 m_outputSize = 0;
    QByteArray m_errors;
};

} // namespace Nox
