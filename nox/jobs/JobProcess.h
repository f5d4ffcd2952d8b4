#pragma once

#include <nox/jobs/ToolSetup.h>

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

namespace Nox {

class ChildProcess;

/**
 * A program that a job runs by itself. Of its output only so much is held as is needed, whatever it prints. The
 * destructor ends it, with all that it has started; it may be called inside the signals.
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

    /** ended() follows. */
    void kill();

    /** The end of what the program has printed on standard error. */
    QString errorOutput() const { return QString::fromUtf8(m_errors); }

Q_SIGNALS:
    void started(); ///< The program runs.

    /** One @p line of standard output, without its end. Lines of more than 4 MiB are left out. */
    void lineRead(const QByteArray &line);

    /** The program has ended. @param isDone whether it says that all went well */
    void ended(bool isDone);

    void failedToStart(); ///< No other signal follows.

private:
    void readOutput();
    void readErrors();

    ChildProcess *m_process;
    QByteArray m_line; // begun, but not ended
    bool m_skipsLine = false;
    qint64 m_outputSize = 0;
    QByteArray m_errors;
};

} // namespace Nox
