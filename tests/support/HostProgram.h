#pragma once

#include <QProcess>

/** A small host program, copied with its fakes into a folder. */
class HostProgram
{
public:
    /** @param folder gets the program and the fakes; made if it does not exist */
    explicit HostProgram(const QString &folder);

    /** @param job "extract" or "download"; a download has two items, 137 and 140 */
    void start(const QString &job, const QString &tool, const QString &destFile);
    bool waitForEnd();
    void killHard(); ///< SIGKILL, and nothing else

private:
    QString m_program;
    QProcess m_process;
};
