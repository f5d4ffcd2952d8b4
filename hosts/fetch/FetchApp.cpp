#include "hosts/fetch/FetchApp.h"

#include "hosts/fetch/Console.h"
#include "hosts/fetch/ExitCode.h"

namespace NoxFetch {

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
    , m_tools(options.toolFile, options.pycacheFolder)
    , m_version(m_tools)
{
}

void FetchApp::start()
{
    if (!m_log.open(m_options.logFile, detailFor(m_options)) && !m_options.logFile.isEmpty())
        fail(UsageError, QStringLiteral("The log file \"%1\" cannot be written.").arg(m_options.logFile));
    else if (const QString message = m_tools.errorString(); !message.isEmpty())
        fail(ExtractionFailed, message);
    else if (m_options.mode == Options::Mode::ToolVersion)
        askVersion();
    else
        startPage();
}

void FetchApp::interrupt()
{
    m_isInterrupted = true; // also between two pages
    if (m_page != nullptr)
        m_page->interrupt();
    else
        Q_EMIT ended(Interrupted);
}

void FetchApp::startPage()
{
    const QString url = m_options.urls.value(m_pageNumber++);
    if (m_options.urls.size() > 1)
        m_console.note(QStringLiteral("%1 of %2: %3").arg(m_pageNumber).arg(m_options.urls.size()).arg(url));
    m_page = std::make_unique<PageRun>(m_options, url, m_tools, m_console);
    // Queued: the page goes before the next one comes, and it is notifying.
    connect(m_page.get(), &PageRun::ended, this, &FetchApp::onPageEnded, Qt::QueuedConnection);
    m_page->start();
}

void FetchApp::onPageEnded(int exitCode)
{
    if (m_exitCode == Done)
        m_exitCode = exitCode;
    const bool wasLast = m_pageNumber == m_options.urls.size();
    if (exitCode == Interrupted || (m_isInterrupted && !wasLast))
        Q_EMIT ended(Interrupted);
    else if (wasLast)
        Q_EMIT ended(m_exitCode);
    else
        startPage();
}

void FetchApp::askVersion()
{
    connect(&m_version, &Nox::Job::finished, this, &FetchApp::onVersion);
    m_version.start();
}

void FetchApp::onVersion()
{
    if (m_version.error() != Nox::Job::NoError)
        fail(ExtractionFailed, m_version.errorString(), m_version.errorDetails());
    else if (m_console.result(m_version.version()))
        Q_EMIT ended(Done);
    else
        fail(ExtractionFailed, QStringLiteral("The version cannot be written to standard output."));
}

void FetchApp::fail(int exitCode, const QString &message, const QString &details)
{
    m_console.error(message, details);
    Q_EMIT ended(exitCode);
}

} // namespace NoxFetch
