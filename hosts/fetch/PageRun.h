#pragma once

#include "hosts/fetch/Options.h"
#include "hosts/fetch/ProgressReporter.h"

#include <nox/jobs/DownloadJob.h>
#include <nox/jobs/PageJob.h>
#include <nox/jobs/ToolSetup.h>

#include <QObject>

#include <memory>

namespace NoxFetch {

class Console;
struct StreamRequest;

/** One page: reads it, then shows what it holds or downloads a stream. */
class PageRun : public QObject
{
    Q_OBJECT

public:
    /** Which page it is. */
    struct Task {
        QString url;
        QString prefix;       ///< In front of a file's name that comes from the page's title.
        bool isOneOf = false; ///< Of several pages, so that errors name theirs.
    };

    PageRun(const Options &options, const Task &task, const Nox::ToolSetup &tools, Console &console,
            QObject *parent = nullptr);

    /** Begins; ended() follows. */
    void start();

    /** Stops whatever runs; ended() follows. */
    void interrupt();

    QString errorString() const { return m_errorString; } ///< What went wrong; empty when nothing did.

Q_SIGNALS:
    /** All is done, for better or worse. */
    void ended(int exitCode);

private:
    void onPageRead();
    void startDownload(const StreamRequest &request, const QString &destination);
    void showPhase();
    void onDownloaded();
    void showPage();
    void printDescription(const QString &text);
    void endWithError(int exitCode, const Nox::Job &job);
    void fail(int exitCode, const QString &message, const QString &details = {});

    Options m_options;
    Task m_task;
    QString m_errorString;
    Nox::ToolSetup m_tools;
    Console &m_console;
    ProgressReporter m_progress;
    Nox::PageJob m_page;
    std::unique_ptr<Nox::DownloadJob> m_download; // from the moment at which it begins
};

} // namespace NoxFetch
