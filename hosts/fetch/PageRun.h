#pragma once

#include "hosts/common/DownloadJob.h"
#include "hosts/common/ExtractionJob.h"
#include "hosts/common/ToolSetup.h"
#include "hosts/fetch/Options.h"
#include "hosts/fetch/ProgressReporter.h"

#include <nox/model/WebMediaInfo.h>

#include <QObject>

namespace NoxFetch {

class Console;
struct StreamRequest;

/** One page: reads it, then shows what it holds or downloads a stream. */
class PageRun : public QObject
{
    Q_OBJECT

public:
    /** @param url one of the addresses in @p options */
    PageRun(const Options &options, const QString &url, const NoxHost::ToolSetup &tools, Console &console,
            QObject *parent = nullptr);

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
    void onFile(const QString &file);
    void onDownloadFailed(int code, const QString &words, const QString &toolWords);
    void onCancelled();
    void tellPage(const Nox::WebMediaInfo &page);
    void printDescription(const QString &text);
    void fail(int exitCode, const QString &words, const QString &toolWords = {});
    void end(int exitCode);

    Options m_options;
    QString m_url;
    Console &m_console;
    ProgressReporter m_progress;
    NoxHost::ExtractionJob m_extraction;
    NoxHost::DownloadJob m_download;
    bool m_isDownloading = false;
};

} // namespace NoxFetch
