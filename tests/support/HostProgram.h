#pragma once

#include <QProcess>

/** The small host program of these tests, copied with its stand-ins into a folder of the caller's choice. */
class HostProgram
{
public:
    /** @param folder made when missing; its programs are the stand-ins */
    explicit HostProgram(const QString &folder);

    /** @param job "extract" or "download"; a download has two items, 137 and 140 */
    void start(const QString &job, const QString &tool, const QString &destFile);
    bool waitForEnd();
    void killHard(); ///< SIGKILL, and nothing else

private:
    QString m_program;
    QProcess m_process;
};
