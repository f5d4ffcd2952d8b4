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

/** The work on one page: reads it, then prints its content or downloads a stream. */
class PageRun : public QObject
{
    Q_OBJECT

public:
    /** The page to handle. */
    struct Task {
        QString url;
        QString prefix;       ///< Prefix of a default file name.
        bool isOneOf = false; ///< Whether there are several pages: then error messages name the page.
    };

    PageRun(const Options &options, const Task &task, const Nox::ToolSetup &tools, Console &console,
            QObject *parent = nullptr);

    /** Starts; ended() follows. */
    void start();

    /** Stops the current work; ended() follows. */
    void interrupt();

    QString errorString() const { return m_errorString; } ///< The error message; empty on success.

Q_SIGNALS:
    /** The work is over, with or without success. */
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
    std::unique_ptr<Nox::DownloadJob> m_download; // set when the download starts
};

} // namespace NoxFetch
