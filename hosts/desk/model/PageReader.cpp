#include "hosts/desk/model/PageReader.h"

#include "hosts/common/UrlCheck.h"

namespace NoxDesk {

using NoxHost::ExtractionJob;

PageReader::PageReader(const NoxHost::ToolSetup &tools, QObject *parent)
    : QObject(parent)
    , m_tools(tools)
{
}

void PageReader::read(const QString &text)
{
    const QString url = NoxHost::UrlCheck::mended(text);
    if (const QString words = NoxHost::UrlCheck::problem(url); !words.isEmpty()) {
        Q_EMIT refused(words);
        return;
    }
    dismissJob();
    m_requestedUrl = url;
    if (const QString words = m_tools.problem(); !words.isEmpty()) {
        fail(words);
        return;
    }
    begin();
}

void PageReader::readAgain()
{
    if (!m_requestedUrl.isEmpty())
        read(m_requestedUrl);
}

/** The job may be notifying, so it goes later, and its process with it. */
void PageReader::dismissJob()
{
    if (m_job != nullptr) {
        m_job->disconnect(this);
        m_job->deleteLater();
        m_job = nullptr;
    }
}

void PageReader::begin()
{
    m_job = new ExtractionJob(m_tools, this);
    connect(m_job, &ExtractionJob::finished, this, &PageReader::onFinished);
    connect(m_job, &ExtractionJob::failed, this, &PageReader::fail);
    connect(m_job, &ExtractionJob::cancelled, this, [this] { setState(hasPage() ? State::Ready : State::Empty); });
    setState(State::Reading);
    m_job->start(m_requestedUrl);
}

void PageReader::cancel()
{
    if (m_state == State::Reading)
        m_job->cancel();
}

void PageReader::dismissProblem()
{
    if (m_state == State::Failed)
        setState(hasPage() ? State::Ready : State::Empty);
}

void PageReader::onFinished(const Nox::WebMediaInfo &page)
{
    m_url = m_requestedUrl;
    m_page = page;
    m_streams = NoxHost::StreamChoice(page);
    m_unusedSettings = m_job->unusedSettings();
    Q_EMIT pageChanged();
    setState(State::Ready);
}

void PageReader::fail(const QString &words, const QString &toolWords)
{
    m_problem = words;
    m_toolWords = toolWords;
    setState(State::Failed);
}

void PageReader::setState(State state)
{
    m_state = state;
    if (state != State::Reading)
        dismissJob();
    Q_EMIT stateChanged(state);
}

} // namespace NoxDesk
