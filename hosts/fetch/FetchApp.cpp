#include "hosts/fetch/FetchApp.h"

#include "hosts/common/Destination.h"
#include "hosts/common/FailureText.h"
#include "hosts/common/StreamChoice.h"
#include "hosts/common/TextSanitizer.h"
#include "hosts/fetch/Console.h"
#include "hosts/fetch/ExitCode.h"
#include "hosts/fetch/JsonRecord.h"
#include "hosts/fetch/StreamRequest.h"
#include "hosts/fetch/StreamTable.h"

#include <QDir>
#include <QFileInfo>

namespace NoxFetch {

using NoxHost::DownloadJob;
using NoxHost::ExtractionJob;

namespace {

NoxHost::LibraryLog::Detail detailFor(const Options &options)
{
    if (options.verbose)
        return NoxHost::LibraryLog::Detail::Everything;
    return options.logFile.isEmpty() ? NoxHost::LibraryLog::Detail::Errors : NoxHost::LibraryLog::Detail::Milestones;
}

} // namespace

FetchApp::FetchApp(const Options &options, Console &console, QObject *parent)
    : QObject(parent)
    , m_options(options)
    , m_console(console)
    , m_progress(console)
    , m_tools(options.toolFile, options.pycacheFolder)
    , m_extraction(m_tools)
    , m_download(m_tools)
{
    connect(&m_extraction, &ExtractionJob::finished, this, &FetchApp::onPage);
    connect(&m_extraction, &ExtractionJob::failed, this, &FetchApp::onExtractionFailed);
    connect(&m_extraction, &ExtractionJob::cancelled, this, &FetchApp::onCancelled);
    connect(&m_download, &DownloadJob::phaseChanged, this, &FetchApp::onPhase);
    connect(&m_download, &DownloadJob::progressed, &m_progress, &ProgressReporter::advance);
    connect(&m_download, &DownloadJob::finished, this, &FetchApp::printResult);
    connect(&m_download, &DownloadJob::failed, this, &FetchApp::onDownloadFailed);
    connect(&m_download, &DownloadJob::cancelled, this, &FetchApp::onCancelled);
}

void FetchApp::start()
{
    if (m_hasEnded)
        return;
    if (!m_log.open(m_options.logFile, detailFor(m_options)) && !m_options.logFile.isEmpty()) {
        fail(UsageError, QStringLiteral("The log file \"%1\" cannot be written.").arg(m_options.logFile));
        return;
    }
    if (const QString words = m_tools.problem(); !words.isEmpty()) {
        fail(ExtractionFailed, words);
        return;
    }
    if (const std::optional<StreamRequest> request = StreamRequest::withoutPage(m_options)) {
        startDownload(*request, m_options.output);
        return;
    }
    m_progress.begin(QStringLiteral("extracting"));
    m_extraction.start(m_options.url);
}

void FetchApp::interrupt()
{
    if (m_isDownloading)
        m_download.cancel();
    else
        m_extraction.cancel();
}

void FetchApp::onPage(const Nox::WebMediaInfo &page)
{
    m_progress.stop();
    const NoxHost::StreamChoice streams(page);
    tellPage(page);
    switch (m_options.mode) {
    case Options::Mode::Json:
        printResult(jsonRecord(page, streams));
        return;
    case Options::Mode::List:
        printResult(streamTable(streams));
        return;
    case Options::Mode::Download:
        break;
    }
    const StreamRequest request = StreamRequest::choose(m_options, streams);
    if (!request.problem.isEmpty()) {
        fail(UsageError, request.problem);
        return;
    }
    const QString warning = NoxHost::Conversion::warning(request.conversion, request.stream, page.getDuration());
    if (!warning.isEmpty())
        m_console.note(warning);
    startDownload(request,
                  m_options.output.isEmpty() ? NoxHost::Destination::proposed(page, request.stream, QDir::currentPath())
                                             : m_options.output);
}

void FetchApp::onExtractionFailed(const QString &words, const QString &toolWords)
{
    fail(ExtractionFailed, words, toolWords);
}

void FetchApp::startDownload(const StreamRequest &request, const QString &destination)
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
    m_download.start(m_options.url, request.stream, destination);
}

void FetchApp::onPhase(DownloadJob::Phase phase)
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

void FetchApp::onDownloadFailed(int code, const QString &words, const QString &toolWords)
{
    const QString text = code == 0 ? words : QStringLiteral("%1 (code %2)").arg(words).arg(code);
    fail(DownloadFailed, text, toolWords);
}

void FetchApp::onCancelled()
{
    m_progress.stop();
    m_console.note(QStringLiteral("Interrupted."));
    end(Interrupted);
}

void FetchApp::tellPage(const Nox::WebMediaInfo &page)
{
    const QString title = NoxHost::TextSanitizer::line(page.getTitle());
    const QString duration = NoxHost::TransferFigures::timeText(page.getDuration());
    m_console.note(page.getDuration() > 0 ? QStringLiteral("%1 (%2)").arg(title, duration) : title);
}

void FetchApp::printResult(const QString &text)
{
    m_progress.stop();
    if (m_console.result(text)) {
        end(Done);
    } else {
        fail(m_isDownloading ? DownloadFailed : ExtractionFailed,
             QStringLiteral("The result cannot be written to standard output."));
    }
}

void FetchApp::fail(int exitCode, const QString &words, const QString &toolWords)
{
    m_progress.stop();
    QString text = words;
    if (!toolWords.isEmpty())
        text += QStringLiteral("\n  ") + QString(toolWords).replace(QLatin1Char('\n'), QStringLiteral("\n  "));
    m_console.problem(text);
    end(exitCode);
}

void FetchApp::end(int exitCode)
{
    m_hasEnded = true;
    Q_EMIT ended(exitCode);
}

} // namespace NoxFetch
