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
    /** @param url one of the addresses in @p options */
    PageRun(const Options &options, const QString &url, const Nox::ToolSetup &tools, Console &console,
            QObject *parent = nullptr);

    /** Begins; ended() follows. */
    void start();

    /** Stops whatever runs; ended() follows. */
    void interrupt();

Q_SIGNALS:
    /** All is done, for better or worse. */
    void ended(int exitCode);

private:
    void onPageRead();
    void startDownload(const StreamRequest &request, const QString &destination);
    void showPhase();
    void onDownloaded();
    void showPage(const Nox::WebMediaInfo &page);
    void printDescription(const QString &text);
    void endWithError(int exitCode, const Nox::Job &job);
    void fail(int exitCode, const QString &message, const QString &details = {});

    Options m_options;
    QString m_url;
    Nox::ToolSetup m_tools;
    Console &m_console;
    ProgressReporter m_progress;
    Nox::PageJob m_page;
    std::unique_ptr<Nox::DownloadJob> m_download; // from the moment at which it begins
};

} // namespace NoxFetch
