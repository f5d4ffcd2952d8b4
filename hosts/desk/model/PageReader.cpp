#include "hosts/desk/model/PageReader.h"

#include <nox/jobs/UrlCheck.h>

namespace NoxDesk {

PageReader::PageReader(const Nox::ToolSetup &tools, QObject *parent)
    : QObject(parent)
    , m_tools(tools)
{
}

void PageReader::read(const QString &text)
{
    const QString url = Nox::UrlCheck::corrected(text);
    if (const QString message = Nox::UrlCheck::errorString(url); !message.isEmpty()) {
        Q_EMIT refused(message);
        return;
    }
    if (m_state == State::Reading && url == m_requestedUrl && m_job->state() != Nox::Job::Stopping)
        return;
    m_requestedUrl = url;
    m_job = std::make_unique<Nox::PageJob>(url, m_tools);
    connect(m_job.get(), &Nox::Job::finished, this, &PageReader::onFinished);
    m_job->start();
    setState(State::Reading);
}

void PageReader::readAgain()
{
    if (!m_requestedUrl.isEmpty())
        read(m_requestedUrl);
}

void PageReader::cancel()
{
    if (m_state == State::Reading)
        m_job->cancel();
}

void PageReader::dismissError()
{
    if (m_state == State::Failed)
        setState(hasPage() ? State::Ready : State::Empty);
}

void PageReader::onFinished()
{
    if (m_job->error() == Nox::Job::NoError) {
        m_url = m_requestedUrl;
        m_page = m_job->page();
        m_streams = m_job->streams();
        m_warnings = m_job->warnings();
        m_videoCount = m_job->videoCount();
        m_isInParts = m_job->isInParts();
        Q_EMIT pageChanged();
        setState(State::Ready);
    } else if (m_job->error() == Nox::Job::Cancelled) {
        setState(hasPage() ? State::Ready : State::Empty);
    } else {
        setState(State::Failed);
    }
}

bool PageReader::isOutdated() const
{
    return hasPage() && m_url != m_requestedUrl && (m_state == State::Reading || m_state == State::Failed);
}

QString PageReader::errorString() const
{
    return m_job == nullptr ? QString() : m_job->errorString();
}

QString PageReader::errorDetails() const
{
    return m_job == nullptr ? QString() : m_job->errorDetails();
}

void PageReader::setState(State state)
{
    m_state = state;
    Q_EMIT stateChanged(state);
}

} // namespace NoxDesk
