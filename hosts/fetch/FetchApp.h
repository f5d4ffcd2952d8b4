#pragma once

#include "hosts/common/LibraryLog.h"
#include "hosts/fetch/Options.h"
#include "hosts/fetch/PageRun.h"

#include <nox/jobs/ToolSetup.h>
#include <nox/jobs/ToolVersionJob.h>

#include <QObject>

#include <memory>

namespace NoxFetch {

class Console;

/** One run of the program: the pages one after the other, or the tool's version. */
class FetchApp : public QObject
{
    Q_OBJECT

public:
    FetchApp(const Options &options, Console &console, QObject *parent = nullptr);

    /** Begins; ended() follows. */
    void start();

    /** Stops whatever runs; ended() follows. */
    void interrupt();

Q_SIGNALS:
    /** All is done, for better or worse. */
    void ended(int exitCode);

private:
    void startPage();
    void onPageEnded(int exitCode);
    void askVersion();
    void onVersion();
    void fail(int exitCode, const QString &message, const QString &details = {});

    Options m_options;
    Console &m_console;
    NoxHost::LibraryLog m_log;
    Nox::ToolSetup m_tools;
    Nox::ToolVersionJob m_version;
    std::unique_ptr<PageRun> m_page;
    int m_pageNumber = 0;
    bool m_isInterrupted = false;
    int m_exitCode = 0; // of the first page that failed
};

} // namespace NoxFetch
