#include "hosts/desk/model/Download.h"

#include <QFileInfo>
#include <QLocale>
#include <QMetaEnum>
#include <QStringList>

namespace NoxDesk {

using Nox::DownloadJob;

namespace {

const QLatin1String urlKey("url");
const QLatin1String fileKey("file");
const QLatin1String stateKey("state");
const QLatin1String errorKey("error");
const QLatin1String detailsKey("details");
const QLatin1String jobKey("job");

QJsonObject recordOf(const DownloadRequest &request)
{
    DownloadJob job(request.url, request.stream, request.destination);
    job.setDuration(request.duration);
    job.setSoundFormat(request.sound);
    return job.record();
}

} // namespace

Download::Download(const DownloadRequest &request, QObject *parent)
    : QObject(parent)
    , m_url(request.url)
    , m_file(request.destination)
    , m_record(request.stream.isValid() ? recordOf(request) : QJsonObject())
{
}

Download::Download(const QJsonObject &stored, QObject *parent)
    : QObject(parent)
    , m_url(stored.value(urlKey).toString())
    , m_file(stored.value(fileKey).toString())
    , m_record(stored.value(jobKey).toObject())
    , m_error(stored.value(errorKey).toString())
    , m_errorDetails(stored.value(detailsKey).toString())
{
    const QByteArray name = stored.value(stateKey).toString().toLatin1();
    const auto state = static_cast<State>(QMetaEnum::fromType<State>().keyToValue(name.constData()));
    const bool isOver = state == State::Finished || state == State::Failed || state == State::Cancelled;
    m_state = isOver ? state : State::Paused;
}

Download::Download(const QJsonObject &record, const QString &url, const QString &file, QObject *parent)
    : QObject(parent)
    , m_url(url)
    , m_file(file)
    , m_record(record)
    , m_state(State::Paused)
{
}

QJsonObject Download::toJson() const
{
    return {{urlKey, m_url},
            {fileKey, m_file},
            {stateKey, QLatin1String(QMetaEnum::fromType<State>().valueToKey(static_cast<int>(m_state)))},
            {errorKey, m_error},
            {detailsKey, m_errorDetails},
            {jobKey, m_record}};
}

void Download::start(const Nox::ToolSetup &tools, const Chooser &choose)
{
    if (m_state != State::Waiting)
        return;
    m_tools = tools;
    m_choose = choose;
    if (m_record.isEmpty()) {
        m_page = std::make_unique<Nox::PageJob>(m_url, tools);
        connect(m_page.get(), &Nox::Job::finished, this, &Download::onPageRead);
        m_page->start();
    } else {
        startJob();
    }
    setState(State::Running);
}

void Download::onPageRead()
{
    Nox::PageJob *page = m_page.release();
    page->deleteLater(); // the page is the sender of this signal
    const DownloadRequest request = page->error() == Nox::Job::NoError ? m_choose(*page) : DownloadRequest();
    if (!request.stream.isValid()) {
        end(*page);
        return;
    }
    m_file = request.destination;
    m_record = recordOf(request);
    startJob();
    Q_EMIT changed();
}

void Download::startJob()
{
    m_job = std::make_unique<DownloadJob>(m_record, m_tools);
    connect(m_job.get(), &DownloadJob::phaseChanged, this, &Download::changed);
    connect(m_job.get(), &DownloadJob::figuresChanged, this, &Download::changed);
    connect(m_job.get(), &DownloadJob::waitingTextChanged, this, &Download::changed);
    connect(m_job.get(), &DownloadJob::finished, this, &Download::onFinished);
    m_job->start();
}

void Download::onFinished()
{
    m_file = m_job->error() == Nox::Job::NoError ? m_job->filePath() : m_job->destination();
    end(*m_job);
}

void Download::end(const Nox::Job &job)
{
    switch (job.error()) {
    case Nox::Job::NoError:
        end(State::Finished);
        break;
    case Nox::Job::Cancelled: // a page that was being read will be read again
        end(m_state == State::Pausing ? State::Paused : State::Cancelled);
        break;
    case Nox::Job::Paused:
        end(State::Paused);
        break;
    default:
        m_error = job.errorString();
        m_errorDetails = job.errorDetails();
        end(State::Failed);
    }
}

void Download::pause()
{
    if (m_state == State::Waiting) {
        end(State::Paused);
    } else if (m_state == State::Running) {
        setState(State::Pausing);
        if (m_page != nullptr) {
            m_page->cancel();
        } else {
            m_job->pause();
        }
    }
}

void Download::cancel()
{
    if (m_state == State::Waiting) {
        discard();
        end(State::Cancelled);
    } else if (m_state == State::Running) {
        setState(State::Cancelling);
        if (m_page != nullptr) {
            m_page->cancel();
        } else {
            m_job->cancel();
        }
    }
}

void Download::retry()
{
    if (canRetry()) {
        m_error.clear();
        m_errorDetails.clear();
        setState(State::Waiting);
    }
}

void Download::discard()
{
    if (!isRunning() && m_state != State::Finished && !m_record.isEmpty())
        DownloadJob::discard(m_record);
}

bool Download::isSameAs(const DownloadRequest &request) const
{
    if (request.url != m_url)
        return false;
    if (!request.stream.isValid())
        return true;
    if (m_record.isEmpty())
        return false;
    const Nox::MediaProfile stream = DownloadJob(m_record).stream();
    return stream.getName() == request.stream.getName()
        && stream.getPreferredDashAudioYdCode() == request.stream.getPreferredDashAudioYdCode();
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

QString Download::name() const
{
    return m_file.isEmpty() ? m_url : QFileInfo(m_file).fileName();
}

int Download::percent() const
{
    if (m_state == State::Finished)
        return 100;
    if (m_page != nullptr)
        return -1;
    if (m_job == nullptr || m_state == State::Waiting)
        return 0;
    const Nox::TransferFigures figures = m_job->figures();
    return m_state == State::Running && figures.total() == 0 ? -1 : figures.percent();
}

QString Download::status() const
{
    switch (m_state) {
    case State::Waiting:
        return tr("Waiting for other downloads");
    case State::Running:
        return m_page != nullptr ? tr("Reading the page") : phaseText() + figuresText();
    case State::Cancelling:
        return tr("Cancelling…");
    case State::Pausing:
        return tr("Pausing…");
    case State::Finished:
        if (!QFileInfo::exists(m_file))
            return tr("The file no longer exists");
        return tr("Finished, %1")
            .arg(QLocale().formattedDataSize(QFileInfo(m_file).size(), 1, QLocale::DataSizeSIFormat));
    case State::Failed:
        return tr("Failed: %1").arg(errorString().simplified());
    case State::Cancelled:
        return tr("Cancelled");
    case State::Paused:
        return tr("Paused");
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

/** The message that the server does not answer, or else amount, speed and time left, each after a separator. */
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
