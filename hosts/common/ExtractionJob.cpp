#include "hosts/common/ExtractionJob.h"

#include "hosts/common/FailureText.h"
#include "hosts/common/StreamChoice.h"
#include "hosts/common/ToolMessage.h"

#include <nox/front/WebMediaDownloaderFactory.h>

#include <QProcess>

namespace NoxHost {

namespace {

constexpr int patienceMs = 3000; // for a process that is being stopped, or in doubt

} // namespace

ExtractionJob::ExtractionJob(const ToolSetup &tools, QObject *parent)
    : QObject(parent)
    , m_tools(tools)
{
    for (QTimer *timer : {&m_patience, &m_settling, &m_ending})
        timer->setSingleShot(true);
    m_patience.setInterval(patienceMs);
    connect(&m_patience, &QTimer::timeout, this,
            [this] { end(m_state == State::Stopping ? Outcome::Cancelled : Outcome::Failed); });
    connect(&m_settling, &QTimer::timeout, this, &ExtractionJob::settle);
    connect(&m_ending, &QTimer::timeout, this, &ExtractionJob::letGo);
}

void ExtractionJob::start(const QString &url)
{
    if (m_state != State::Idle)
        return;
    m_state = State::Running;
    m_extractor.reset(
        Nox::WebMediaDownloaderFactory::instance()->createExtractor(m_tools.toolFile(), m_tools.pycacheFolder()));
    connect(m_extractor.get(), &Nox::WebMediaInfoExtractor::finished, this, &ExtractionJob::onFinished);
    connect(m_extractor.get(), &Nox::WebMediaInfoExtractor::error, this, &ExtractionJob::onError);
    m_extractor->getMediaInfoBySignal(url);
}

void ExtractionJob::cancel()
{
    if (m_state == State::Idle) {
        end(Outcome::Cancelled);
    } else if (m_state == State::Running) {
        m_state = State::Stopping;
        m_patience.start();
        m_extractor->cancel();
    }
}

// Alone, this is the outcome of a tool that was content; an error that comes in the same breath takes
// it back. The tool may go on after such a pair and succeed.
void ExtractionJob::onFinished(const Nox::WebMediaInfo &page)
{
    m_page = page;
    m_awaitsError = true;
    m_settling.start();
}

void ExtractionJob::onError(qint32 code)
{
    const bool isPair = m_awaitsError;
    m_awaitsError = false;
    if (m_state == State::Stopping) {
        if (code != -1 || !isPair) // the process has ended, not only complained
            end(Outcome::Cancelled);
        return;
    }
    if (!isPair) { // the tool has ended and admits failure
        end(Outcome::Failed);
        return;
    }
    if (code == -1)
        return;
    m_code = code;
    if (code == QProcess::FailedToStart)
        end(Outcome::Failed);
    else
        m_patience.start(); // for the end of the process, which should follow
}

void ExtractionJob::settle()
{
    if (!m_awaitsError || m_state != State::Running)
        return;
    m_answered = true;
    end(StreamChoice(m_page).all().isEmpty() ? Outcome::Failed : Outcome::Finished);
}

/** The extractor goes later, since its notification may be on the stack; the outcome follows. */
void ExtractionJob::end(Outcome outcome)
{
    if (m_state == State::Ending || m_state == State::Ended)
        return;
    m_state = State::Ending;
    m_outcome = outcome;
    m_patience.stop();
    if (m_extractor != nullptr)
        disconnect(m_extractor.get(), nullptr, this, nullptr);
    m_ending.start();
}

void ExtractionJob::letGo()
{
    if (m_extractor != nullptr)
        m_toolOutput = m_extractor->errorDetail();
    m_extractor.reset();
    report();
}

QString ExtractionJob::unusedSettings() const
{
    return ToolMessage::unusedSettings(m_toolOutput);
}

QString ExtractionJob::failureText() const
{
    if (m_answered)
        return FailureText::noStream(m_page);
    if (ToolMessage::tellsRefusedSettings(m_toolOutput))
        return FailureText::refusedSettings();
    if (ToolMessage::tellsNoStream(m_toolOutput))
        return FailureText::nothingToDownload();
    return ToolMessage::tellsBrokenArchive(m_toolOutput) ? FailureText::brokenTool() : FailureText::extraction(m_code);
}

void ExtractionJob::report()
{
    m_state = State::Ended;
    switch (m_outcome) {
    case Outcome::Finished:
        Q_EMIT finished(m_page);
        break;
    case Outcome::Failed:
        Q_EMIT failed(failureText(), ToolMessage::excerpt(m_toolOutput));
        break;
    case Outcome::Cancelled:
        Q_EMIT cancelled();
        break;
    }
}

} // namespace NoxHost
