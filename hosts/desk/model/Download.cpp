#include "hosts/desk/model/Download.h"

#include <QFileInfo>
#include <QLocale>
#include <QStringList>

namespace NoxDesk {

using NoxHost::DownloadJob;

Download::Download(const DownloadRequest &request, QObject *parent)
    : QObject(parent)
    , m_request(request)
    , m_file(request.destination)
{
}

void Download::start(const NoxHost::ToolSetup &tools)
{
    if (m_state != State::Waiting)
        return;
    m_job = std::make_unique<DownloadJob>(tools);
    connectJob();
    setState(State::Running);
    m_job->start(m_request.url, m_request.stream, m_file, m_request.duration);
}

void Download::connectJob()
{
    connect(m_job.get(), &DownloadJob::phaseChanged, this, &Download::changed);
    connect(m_job.get(), &DownloadJob::progressed, this, [this](const NoxHost::TransferFigures &figures) {
        m_figures = figures;
        Q_EMIT changed();
    });
    connect(m_job.get(), &DownloadJob::finished, this, [this](const QString &file) {
        m_file = file;
        end(State::Finished);
    });
    connect(m_job.get(), &DownloadJob::failed, this, [this](int, const QString &words, const QString &toolWords) {
        m_problem = words;
        m_toolWords = toolWords;
        end(State::Failed);
    });
    connect(m_job.get(), &DownloadJob::cancelled, this, [this] { end(State::Cancelled); });
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
        m_figures = {};
        m_problem.clear();
        m_toolWords.clear();
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
    return m_state == State::Running && m_figures.total() == 0 ? -1 : m_figures.percent();
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
        return tr("Finished, %1")
            .arg(QLocale().formattedDataSize(QFileInfo(m_file).size(), 1, QLocale::DataSizeSIFormat));
    case State::Failed:
        return tr("Failed: %1").arg(m_problem.simplified());
    case State::Cancelled:
        return tr("Cancelled");
    }
    return {};
}

QString Download::phaseText() const
{
    switch (m_job->phase()) {
    case DownloadJob::Phase::Waiting:
        break;
    case DownloadJob::Phase::Video:
        return tr("Fetching video");
    case DownloadJob::Phase::Audio:
        return tr("Fetching audio");
    case DownloadJob::Phase::Joining:
        return tr("Joining video and audio");
    }
    return tr("Starting");
}

/** What is known of amount, speed and time left, each behind a separator. */
QString Download::figuresText() const
{
    const QLocale locale;
    const QString timeLeft = m_figures.timeLeftText();
    const QStringList parts{m_figures.amountText(locale), m_figures.speedText(locale),
                            timeLeft.isEmpty() ? timeLeft : tr("%1 left").arg(timeLeft)};
    QString result;
    for (const QString &part : parts) {
        if (!part.isEmpty())
            result += QStringLiteral(" · ") + part;
    }
    return result;
}

} // namespace NoxDesk
