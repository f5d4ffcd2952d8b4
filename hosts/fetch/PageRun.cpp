#include "hosts/fetch/PageRun.h"

#include "hosts/fetch/Console.h"
#include "hosts/fetch/ExitCode.h"
#include "hosts/fetch/JsonRecord.h"
#include "hosts/fetch/StreamRequest.h"
#include "hosts/fetch/StreamTable.h"

#include <nox/jobs/Conversion.h>
#include <nox/jobs/Destination.h>
#include <nox/jobs/StreamChoice.h>

namespace NoxFetch {

using Nox::DownloadJob;

PageRun::PageRun(const Options &options, const Task &task, const Nox::ToolSetup &tools, Console &console,
                 QObject *parent)
    : QObject(parent)
    , m_options(options)
    , m_task(task)
    , m_tools(tools)
    , m_console(console)
    , m_progress(console)
    , m_page(task.url, tools)
{
    connect(&m_page, &Nox::Job::finished, this, &PageRun::onPageRead);
}

void PageRun::start()
{
    if (const std::optional<StreamRequest> request = StreamRequest::withoutPage(m_options)) {
        startDownload(*request, m_options.output);
        return;
    }
    m_progress.begin(QStringLiteral("extracting"));
    m_page.start();
}

void PageRun::interrupt()
{
    if (m_download != nullptr && m_options.keepsParts)
        m_download->pause();
    else if (m_download != nullptr)
        m_download->cancel();
    else
        m_page.cancel();
}

void PageRun::onPageRead()
{
    m_progress.stop();
    if (m_page.error() != Nox::Job::NoError) {
        endWithError(ExtractionFailed, m_page);
        return;
    }
    const QStringList warnings = m_page.warnings();
    for (const QString &warning : warnings)
        m_console.note(warning);
    Nox::WebMediaInfo page = m_page.page();
    const Nox::StreamChoice streams = m_page.streams();
    showPage();
    switch (m_options.mode) {
    case Options::Mode::Json:
        printDescription(jsonRecord(page, streams, m_options.preference));
        return;
    case Options::Mode::List:
        printDescription(streamTable(streams, m_options.preference));
        return;
    case Options::Mode::Download:
    case Options::Mode::ToolVersion:
        break;
    }
    StreamRequest request = StreamRequest::choose(m_options, streams);
    request.duration = page.getDuration();
    if (!request.errorString.isEmpty()) {
        fail(UsageError, request.errorString);
        return;
    }
    const QString warning = Nox::Conversion::warning(request.conversion, request.stream, page.getDuration());
    if (!warning.isEmpty())
        m_console.note(warning);
    page.setFileName(m_task.prefix + page.getFileName());
    startDownload(request,
                  m_options.output.isEmpty()
                      ? Nox::Destination::proposed(page, request.stream, m_options.folder, {}, m_options.sound)
                      : m_options.output);
}

void PageRun::startDownload(const StreamRequest &request, const QString &destination)
{
    m_console.note(QStringLiteral("Fetching %1").arg(request.text()));
    m_download = std::make_unique<DownloadJob>(m_task.url, request.stream, destination, m_tools);
    m_download->setDuration(request.duration);
    m_download->setKeepsParts(m_options.keepsParts);
    m_download->setSoundFormat(m_options.sound);
    connect(m_download.get(), &DownloadJob::phaseChanged, this, &PageRun::showPhase);
    connect(m_download.get(), &DownloadJob::figuresChanged, &m_progress, &ProgressReporter::advance);
    connect(m_download.get(), &DownloadJob::waitingTextChanged, this, [this] {
        if (const QString text = m_download->waitingText(); !text.isEmpty())
            m_console.note(text);
    });
    connect(m_download.get(), &Nox::Job::finished, this, &PageRun::onDownloaded);
    m_download->start();
}

void PageRun::showPhase()
{
    switch (m_download->phase()) {
    case DownloadJob::Waiting:
        break;
    case DownloadJob::Video:
        m_progress.begin(QStringLiteral("video"));
        break;
    case DownloadJob::Audio:
        m_progress.proceed(QStringLiteral("audio"));
        break;
    case DownloadJob::Joining:
        m_progress.begin(QStringLiteral("joining"));
        break;
    case DownloadJob::Converting:
        m_progress.begin(QStringLiteral("converting"));
        break;
    }
}

void PageRun::onDownloaded()
{
    m_progress.stop();
    const QString file = m_download->filePath();
    if (m_download->hasParts())
        m_console.note(QStringLiteral("What has been fetched is kept: the same command goes on with it."));
    if (m_download->error() != Nox::Job::NoError)
        endWithError(DownloadFailed, *m_download);
    else if (m_console.result(file))
        Q_EMIT ended(Done);
    else
        fail(DownloadFailed,
             QStringLiteral("The file is complete, but its path cannot be written to standard output: \"%1\"")
                 .arg(file));
}

void PageRun::showPage()
{
    const qint64 seconds = m_page.page().getDuration();
    const QString duration = Nox::TransferFigures::timeText(seconds);
    if (const QString title = m_page.title(); !title.isEmpty())
        m_console.note(seconds > 0 ? QStringLiteral("%1 (%2)").arg(title, duration) : title);
    const int count = m_page.videoCount();
    if (count == 1 || m_options.items)
        return;
    const QString kind = m_page.isInParts() ? QStringLiteral("parts of a video") : QStringLiteral("videos");
    m_console.note(QStringLiteral("1 of %1 %2; --items takes others, and \"--list --items all\" shows which there are")
                       .arg(count > 0 ? QString::number(count) : QStringLiteral("several"), kind));
}

void PageRun::printDescription(const QString &text)
{
    if (m_console.result(text))
        Q_EMIT ended(Done);
    else
        fail(ExtractionFailed, QStringLiteral("The result cannot be written to standard output."));
}

/** Ends after a @p job without success; @p exitCode is used for a failure. */
void PageRun::endWithError(int exitCode, const Nox::Job &job)
{
    if (job.error() == Nox::Job::Cancelled || job.error() == Nox::Job::Paused) {
        m_console.note(QStringLiteral("Interrupted."));
        Q_EMIT ended(Interrupted);
    } else {
        fail(exitCode, job.errorString(), job.errorDetails());
    }
}

void PageRun::fail(int exitCode, const QString &message, const QString &details)
{
    m_progress.stop();
    m_errorString = message;
    m_console.error(m_task.isOneOf ? QStringLiteral("%1: %2").arg(m_task.url, message) : message, details);
    Q_EMIT ended(exitCode);
}

} // namespace NoxFetch
