#pragma once

#include "hosts/common/DownloadJob.h"
#include "hosts/common/ExtractionJob.h"
#include "hosts/common/LibraryLog.h"
#include "hosts/common/ToolSetup.h"
#include "hosts/fetch/Options.h"
#include "hosts/fetch/ProgressReporter.h"

#include <nox/model/WebMediaInfo.h>

#include <QObject>

namespace NoxFetch {

class Console;
struct StreamRequest;

/** One run of the program: reads the page, then shows what it holds or downloads a stream. */
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
    void onPage(const Nox::WebMediaInfo &page);
    void onExtractionFailed(const QString &words, const QString &toolWords);
    void startDownload(const StreamRequest &request, const QString &destination);
    void onPhase(NoxHost::DownloadJob::Phase phase);
    void onDownloadFailed(int code, const QString &words, const QString &toolWords);
    void onCancelled();
    void tellPage(const Nox::WebMediaInfo &page);
    void printResult(const QString &text);
    void fail(int exitCode, const QString &words, const QString &toolWords = {});
    void end(int exitCode);

    Options m_options;
    Console &m_console;
    ProgressReporter m_progress;
    NoxHost::LibraryLog m_log;
    NoxHost::ToolSetup m_tools;
    NoxHost::ExtractionJob m_extraction;
    NoxHost::DownloadJob m_download;
    bool m_isDownloading = false;
    bool m_hasEnded = false;
};

} // namespace NoxFetch
