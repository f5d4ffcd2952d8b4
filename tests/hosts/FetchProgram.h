#pragma once

#include <QProcess>
#include <QStringList>

/**
 * nox-fetch, copied beside this test program, so that both find the same external programs; killed if
 * it still runs at the end.
 */
class FetchProgram
{
public:
    static bool install(); ///< copies the program; once for a test program
    static QString programFile();

    explicit FetchProgram(const QString &workingFolder);
    ~FetchProgram();

    void start(const QStringList &arguments, const QString &program = programFile());
    bool run(const QStringList &arguments);                   ///< start, and wait until it has ended
    bool runWithClosedChannels(const QStringList &arguments); ///< run, without standard input, output and error
    bool waitForEnd();
    void interrupt(int signalNumber);

    int exitCode() const; ///< -1 after a crash
    QString output() const { return m_output; }
    QString errors() const { return m_errors; }
    QProcess &process() { return m_process; }

private:
    QProcess m_process;
    QString m_output;
    QString m_errors;
};
