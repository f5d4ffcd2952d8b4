#include "hosts/fetch/FetchApp.h"

#include "hosts/fetch/Console.h"
#include "hosts/fetch/ExitCode.h"

#include <nox/jobs/TextSanitizer.h>
#include <nox/jobs/TransferFigures.h>
#include <nox/jobs/UrlCheck.h>

#include <QTimer>

#include <utility>

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
        startNext();
}

void FetchApp::interrupt()
{
    m_isInterrupted = true; // the interrupt may come between two pages
    if (m_page != nullptr)
        m_page->interrupt();
    else if (m_lister != nullptr)
        m_lister->cancel();
    else
        Q_EMIT ended(Interrupted);
}

/** Starts the next step: the next video, the next part of the list, or the next address. */
void FetchApp::startNext()
{
    m_page.reset();
    if (m_isInterrupted) {
        finish();
    } else if (!m_items.isEmpty()) {
        startItem();
    } else if (m_lister != nullptr && !m_lister->isAtEnd()) {
        m_lister->proceed();
    } else if (m_addressNumber < m_options.urls.size()) {
        startAddress();
    } else {
        finish();
    }
}

void FetchApp::startAddress()
{
    const QString url = m_options.urls.at(m_addressNumber++);
    if (m_options.urls.size() > 1)
        m_console.note(QStringLiteral("%1 of %2: %3")
                           .arg(m_addressNumber)
                           .arg(m_options.urls.size())
                           .arg(Nox::TextSanitizer::line(url)));
    m_lister.reset();
    if (const QString message = Nox::UrlCheck::errorString(url); !message.isEmpty()) {
        refuse(url, UsageError, message); // a line of the file with addresses
        QTimer::singleShot(0, this, &FetchApp::startNext);
    } else if (m_options.items) {
        m_lister = std::make_unique<ItemLister>(url, *m_options.items, m_tools);
        connect(m_lister.get(), &ItemLister::ended, this, &FetchApp::onListed, Qt::QueuedConnection);
        m_lister->proceed();
    } else {
        startPage({url, {}, m_options.urls.size() > 1});
    }
}

void FetchApp::startItem()
{
    const Nox::PlaylistEntry entry = m_items.takeFirst();
    const int total = m_lister->job().total();
    m_console.note(QStringLiteral("Video %1%2: %3")
                       .arg(QString::number(entry.number), total > 0 ? QStringLiteral(" of %1").arg(total) : QString(),
                            entry.title.isEmpty() ? Nox::TextSanitizer::line(entry.url) : entry.title));
    startPage({entry.url, total == 1 ? QString() : m_lister->numberText(entry.number) + QLatin1Char(' '), true});
}

void FetchApp::startPage(const PageRun::Task &task)
{
    m_task = task;
    m_page = std::make_unique<PageRun>(m_options, task, m_tools, m_console);
    // Queued: the page is the sender of this signal and must be deleted before the next one is created.
    connect(m_page.get(), &PageRun::ended, this, &FetchApp::onPageEnded, Qt::QueuedConnection);
    m_page->start();
}

void FetchApp::onPageEnded(int exitCode)
{
    m_hasStopped = exitCode == Interrupted;
    m_isInterrupted = m_isInterrupted || m_hasStopped;
    count(m_task.url, exitCode, m_page->errorString());
    startNext();
}

void FetchApp::onListed()
{
    const Nox::Job &job = m_lister->job();
    const QString url = m_options.urls.value(m_addressNumber - 1);
    m_items = m_lister->entries();
    m_hasStopped = job.error() == Nox::Job::Cancelled;
    if (m_hasStopped)
        m_console.note(QStringLiteral("Interrupted."));
    else if (job.error() != Nox::Job::NoError)
        refuse(url, ExtractionFailed, job.errorString(), job.errorDetails());
    else if (m_lister->isAtEnd() && !m_lister->missingText().isEmpty())
        refuse(url, UsageError, m_lister->missingText());
    if (m_options.mode == Options::Mode::List && !m_isInterrupted && !showItems()) {
        fail(ExtractionFailed, QStringLiteral("The result cannot be written to standard output."));
        return;
    }
    startNext();
}

/** Prints the list of videos, without reading their pages. @return whether it could be written */
bool FetchApp::showItems()
{
    QStringList lines;
    for (const Nox::PlaylistEntry &item : std::as_const(m_items)) {
        const QString duration = item.duration > 0 ? Nox::TransferFigures::timeText(item.duration) : QString();
        lines += QStringLiteral("%1  %2  %3  %4")
                     .arg(m_lister->numberText(item.number), duration.rightJustified(8, QLatin1Char(' ')),
                          Nox::TextSanitizer::line(item.url), item.title)
                     .trimmed();
    }
    m_doneCount += m_items.isEmpty() ? 0 : 1;
    m_items.clear();
    return lines.isEmpty() || m_console.result(lines.join(QLatin1Char('\n')));
}

/** Records the outcome of the page @p url. */
void FetchApp::count(const QString &url, int exitCode, const QString &message)
{
    if (exitCode == Done)
        ++m_doneCount;
    else if (exitCode != Interrupted)
        m_failures += QStringLiteral("%1: %2").arg(Nox::TextSanitizer::line(url), message);
    if (m_exitCode == Done && exitCode != Interrupted)
        m_exitCode = exitCode;
}

/** Reports an address for which no page run was started. */
void FetchApp::refuse(const QString &url, int exitCode, const QString &message, const QString &details)
{
    const QString name = Nox::TextSanitizer::line(url);
    m_console.error(m_options.urls.size() == 1 ? message : QStringLiteral("%1: %2").arg(name, message), details);
    count(url, exitCode, message);
}

/** Ends the run; prints a summary if there was more than one page. */
void FetchApp::finish()
{
    const int failedCount = static_cast<int>(m_failures.size());
    if (m_options.mode == Options::Mode::Download && (m_options.urls.size() > 1 || m_doneCount + failedCount > 1)) {
        const int leftCount = static_cast<int>(m_options.urls.size()) - m_addressNumber;
        m_console.note(QStringLiteral("%1 downloaded, %2 failed%3")
                           .arg(m_doneCount)
                           .arg(failedCount)
                           .arg(leftCount > 0 ? QStringLiteral(", %1 not begun").arg(leftCount) : QString()));
        for (const QString &failure : std::as_const(m_failures))
            m_console.note(QStringLiteral("  ") + failure);
    }
    const bool isLeft =
        m_addressNumber < m_options.urls.size() || !m_items.isEmpty() || (m_lister != nullptr && !m_lister->isAtEnd());
    Q_EMIT ended(m_isInterrupted && (m_hasStopped || isLeft) ? Interrupted : m_exitCode);
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
