#include "hosts/fetch/PageRun.h"

#include "hosts/common/Conversion.h"
#include "hosts/common/Destination.h"
#include "hosts/common/StreamChoice.h"
#include "hosts/common/TextSanitizer.h"
#include "hosts/fetch/Console.h"
#include "hosts/fetch/ExitCode.h"
#include "hosts/fetch/JsonRecord.h"
#include "hosts/fetch/StreamRequest.h"
#include "hosts/fetch/StreamTable.h"

#include <QFileInfo>

namespace NoxFetch {

using NoxHost::DownloadJob;
using NoxHost::ExtractionJob;

PageRun::PageRun(const Options &options, const QString &url, const NoxHost::ToolSetup &tools, Console &console,
                 QObject *parent)
    : QObject(parent)
    , m_options(options)
    , m_url(url)
    , m_console(console)
    , m_progress(console)
    , m_extraction(tools)
    , m_download(tools)
{
    connect(&m_extraction, &ExtractionJob::finished, this, &PageRun::onPage);
    connect(&m_extraction, &ExtractionJob::failed, this, &PageRun::onExtractionFailed);
    connect(&m_extraction, &ExtractionJob::cancelled, this, &PageRun::onCancelled);
    connect(&m_download, &DownloadJob::phaseChanged, this, &PageRun::onPhase);
    connect(&m_download, &DownloadJob::progressed, &m_progress, &ProgressReporter::advance);
    connect(&m_download, &DownloadJob::finished, this, &PageRun::onFile);
    connect(&m_download, &DownloadJob::failed, this, &PageRun::onDownloadFailed);
    connect(&m_download, &DownloadJob::cancelled, this, &PageRun::onCancelled);
}

void PageRun::start()
{
    if (const std::optional<StreamRequest> request = StreamRequest::withoutPage(m_options)) {
        startDownload(*request, m_options.output);
        return;
    }
    m_progress.begin(QStringLiteral("extracting"));
    m_extraction.start(m_url);
}

void PageRun::interrupt()
{
    if (m_isDownloading)
        m_download.cancel();
    else
        m_extraction.cancel();
}

void PageRun::onPage(const Nox::WebMediaInfo &page)
{
    m_progress.stop();
    const NoxHost::StreamChoice streams(page);
    // Who has set a proxy must not take it for used.
    if (const QString words = m_extraction.unusedSettings(); !words.isEmpty())
        m_console.note(words);
    tellPage(page);
    switch (m_options.mode) {
    case Options::Mode::Json:
        printDescription(jsonRecord(page, streams));
        return;
    case Options::Mode::List:
        printDescription(streamTable(streams));
        return;
    case Options::Mode::Download:
    case Options::Mode::ToolVersion:
        break;
    }
    StreamRequest request = StreamRequest::choose(m_options, streams);
    request.duration = page.getDuration();
    if (!request.problem.isEmpty()) {
        fail(UsageError, request.problem);
        return;
    }
    const QString warning = NoxHost::Conversion::warning(request.conversion, request.stream, page.getDuration());
    if (!warning.isEmpty())
        m_console.note(warning);
    startDownload(request,
                  m_options.output.isEmpty() ? NoxHost::Destination::proposed(page, request.stream, m_options.folder)
                                             : m_options.output);
}

void PageRun::onExtractionFailed(const QString &words, const QString &toolWords)
{
    fail(ExtractionFailed, words, toolWords);
}

void PageRun::startDownload(const StreamRequest &request, const QString &destination)
{
    QString words = request.needsJoining() ? NoxHost::ToolSetup::joiningProblem() : QString();
    if (words.isEmpty())
        words = NoxHost::Destination::folderProblem(QFileInfo(destination).absolutePath());
    if (!words.isEmpty()) {
        fail(DownloadFailed, words);
        return;
    }
    m_console.note(QStringLiteral("Fetching %1").arg(request.text()));
    m_isDownloading = true;
    m_download.start(m_url, request.stream, destination, request.duration);
}

void PageRun::onPhase(DownloadJob::Phase phase)
{
    switch (phase) {
    case DownloadJob::Phase::Waiting:
        break;
    case DownloadJob::Phase::Video:
        m_progress.begin(QStringLiteral("video"));
        break;
    case DownloadJob::Phase::Audio:
        m_progress.proceed(QStringLiteral("audio"));
        break;
    case DownloadJob::Phase::Joining:
        m_progress.begin(QStringLiteral("joining"));
        break;
    }
}

void PageRun::onDownloadFailed(int code, const QString &words, const QString &toolWords)
{
    const QString text = code == 0 ? words : QStringLiteral("%1 (code %2)").arg(words).arg(code);
    fail(DownloadFailed, text, toolWords);
}

void PageRun::onCancelled()
{
    m_progress.stop();
    m_console.note(QStringLiteral("Interrupted."));
    end(Interrupted);
}

void PageRun::tellPage(const Nox::WebMediaInfo &page)
{
    const QString title = NoxHost::TextSanitizer::line(page.getTitle());
    const QString duration = NoxHost::TransferFigures::timeText(page.getDuration());
    if (!title.isEmpty())
        m_console.note(page.getDuration() > 0 ? QStringLiteral("%1 (%2)").arg(title, duration) : title);
}

void PageRun::printDescription(const QString &text)
{
    m_progress.stop();
    if (m_console.result(text))
        end(Done);
    else
        fail(ExtractionFailed, QStringLiteral("The result cannot be written to standard output."));
}

void PageRun::onFile(const QString &file)
{
    m_progress.stop();
    if (m_console.result(file))
        end(Done);
    else
        fail(DownloadFailed,
             QStringLiteral("The file is complete, but its path cannot be written to standard output: \"%1\"")
                 .arg(file));
}

void PageRun::fail(int exitCode, const QString &words, const QString &toolWords)
{
    m_progress.stop();
    m_console.problem(m_options.urls.size() == 1 ? words : QStringLiteral("%1: %2").arg(m_url, words), toolWords);
    end(exitCode);
}

void PageRun::end(int exitCode)
{
    Q_EMIT ended(exitCode);
}

} // namespace NoxFetch
