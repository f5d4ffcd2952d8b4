#include "hosts/desk/model/Download.h"

#include <QFileInfo>
#include <QLocale>
#include <QStringList>

namespace NoxDesk {

using Nox::DownloadJob;

Download::Download(const DownloadRequest &request, QObject *parent)
    : QObject(parent)
    , m_request(request)
    , m_file(request.destination)
{
}

void Download::start(const Nox::ToolSetup &tools)
{
    if (m_state != State::Waiting)
        return;
    m_job = std::make_unique<DownloadJob>(m_request.url, m_request.stream, m_file, tools);
    m_job->setDuration(m_request.duration);
    connect(m_job.get(), &DownloadJob::phaseChanged, this, &Download::changed);
    connect(m_job.get(), &DownloadJob::figuresChanged, this, &Download::changed);
    connect(m_job.get(), &DownloadJob::waitingTextChanged, this, &Download::changed);
    connect(m_job.get(), &DownloadJob::finished, this, &Download::onFinished);
    m_job->start();
    setState(State::Running);
}

void Download::onFinished()
{
    switch (m_job->error()) {
    case Nox::Job::NoError:
        m_file = m_job->filePath();
        end(State::Finished);
        break;
    case Nox::Job::Cancelled:
        end(State::Cancelled);
        break;
    default:
        end(State::Failed);
    }
}

void Download::cancel()
{
    if (m_state == State::Waiting) {
        end(State::Cancelled);
    } else if (m_state == State::Running) {
        setState(State::Cancelling);
        m_job->cancel();
    }
}

void Download::retry(const QString &file)
{
    if (canRetry()) {
        m_file = file;
        setState(State::Waiting);
    }
}

void Download::end(State state)
{
    setState(state);
    Q_EMIT ended();
}

void Download::setState(State state)
{
    m_state = state;
    Q_EMIT changed();
}

int Download::percent() const
{
    if (m_state == State::Finished)
        return 100;
    if (m_job == nullptr || m_state == State::Waiting)
        return 0;
    const Nox::TransferFigures figures = m_job->figures();
    return m_state == State::Running && figures.total() == 0 ? -1 : figures.percent();
}

QString Download::errorString() const
{
    return m_state == State::Failed ? m_job->errorString() : QString();
}

QString Download::errorDetails() const
{
    return m_state == State::Failed ? m_job->errorDetails() : QString();
}

QString Download::status() const
{
    switch (m_state) {
    case State::Waiting:
        return tr("Waiting for others to end");
    case State::Running:
        return phaseText() + figuresText();
    case State::Cancelling:
        return tr("Cancelling…");
    case State::Finished:
        if (!QFileInfo::exists(m_file))
            return tr("The file is not there any more");
        return tr("Finished, %1")
            .arg(QLocale().formattedDataSize(QFileInfo(m_file).size(), 1, QLocale::DataSizeSIFormat));
    case State::Failed:
        return tr("Failed: %1").arg(errorString().simplified());
    case State::Cancelled:
        return tr("Cancelled");
    }
    return {};
}

QString Download::phaseText() const
{
    switch (m_job->phase()) {
    case DownloadJob::Waiting:
        break;
    case DownloadJob::Video:
        return tr("Fetching video");
    case DownloadJob::Audio:
        return tr("Fetching audio");
    case DownloadJob::Joining:
        return tr("Joining video and audio");
    case DownloadJob::Converting:
        return tr("Converting the sound");
    }
    return tr("Starting");
}

/** That the server does not answer; or what is known of amount, speed and time left; each behind a separator. */
QString Download::figuresText() const
{
    const QLocale locale;
    const Nox::TransferFigures figures = m_job->figures();
    const QString timeLeft = figures.timeLeftText();
    QStringList parts{figures.amountText(locale), figures.speedText(locale),
                      timeLeft.isEmpty() ? timeLeft : tr("%1 left").arg(timeLeft)};
    if (const QString waiting = m_job->waitingText(); !waiting.isEmpty())
        parts = QStringList{waiting};
    QString result;
    for (const QString &part : parts) {
        if (!part.isEmpty())
            result += QStringLiteral(" · ") + part;
    }
    return result;
}

} // namespace NoxDesk
