#include <nox/jobs/QueuedDownload.h>

#include <nox/jobs/DownloadRecord.h>
#include <nox/jobs/FailureText.h>

#include <QFileInfo>
#include <QLocale>
#include <QMetaEnum>
#include <QStringList>

namespace Nox {

namespace {

const QLatin1String addressKey("url");
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

QueuedDownload::QueuedDownload(const DownloadRequest &request, QObject *parent)
    : QObject(parent)
    , m_url(request.url)
    , m_file(request.destination)
    , m_record(request.stream.isValid() ? recordOf(request) : QJsonObject())
{
}

QueuedDownload::QueuedDownload(const QJsonObject &stored, QObject *parent)
    : QObject(parent)
    , m_url(stored.value(addressKey).toString())
    , m_file(stored.value(fileKey).toString())
    , m_record(stored.value(jobKey).toObject())
    , m_error(stored.value(errorKey).toString())
    , m_errorDetails(stored.value(detailsKey).toString())
{
    const QByteArray name = stored.value(stateKey).toString().toLatin1();
    const auto state = static_cast<State>(QMetaEnum::fromType<State>().keyToValue(name.constData()));
    const bool isOver =
        state == DownloadQueue::Finished || state == DownloadQueue::Failed || state == DownloadQueue::Cancelled;
    if (state == DownloadQueue::Cancelling)
        m_state = DownloadQueue::Cancelled;
    else
        m_state = isOver ? state : DownloadQueue::Paused;
}

QueuedDownload::QueuedDownload(const QJsonObject &record, const QString &url, const QString &file, QObject *parent)
    : QObject(parent)
    , m_url(url)
    , m_file(file)
    , m_record(record)
    , m_state(DownloadQueue::Paused)
{
}

QJsonObject QueuedDownload::toJson() const
{
    return {{addressKey, m_url},
            {fileKey, m_file},
            {stateKey, QVariant::fromValue(m_state).toString()},
            {errorKey, m_error},
            {detailsKey, m_errorDetails},
            {jobKey, m_record}};
}

void QueuedDownload::start(const ToolSetup &tools, const DownloadQueue::Chooser &choose)
{
    if (m_state != DownloadQueue::Waiting)
        return;
    m_tools = tools;
    m_choose = choose;
    if (m_record.isEmpty()) {
        m_page = std::make_unique<PageJob>(m_url, tools);
        connect(m_page.get(), &Job::finished, this, &QueuedDownload::onPageRead);
        m_page->start();
    } else {
        startJob();
    }
    setState(DownloadQueue::Running);
}

void QueuedDownload::onPageRead()
{
    const bool isRead = m_page->error() == Job::NoError;
    const DownloadRequest request = isRead ? m_choose(*m_page) : DownloadRequest();
    PageJob *page = m_page.release();
    page->deleteLater(); // the page is the sender of this signal
    if (!isRead) {
        end(*page);
    } else if (m_state != DownloadQueue::Running) { // stopped after the page was read
        end(m_state == DownloadQueue::Pausing ? DownloadQueue::Paused : DownloadQueue::Cancelled);
    } else if (!request.stream.isValid()) {
        m_error = FailureText::noStream(page->page());
        end(DownloadQueue::Failed);
    } else {
        m_file = request.destination;
        m_record = recordOf(request);
        startJob();
        Q_EMIT changed();
    }
}

void QueuedDownload::startJob()
{
    m_job = std::make_unique<DownloadJob>(m_record, m_tools);
    connect(m_job.get(), &DownloadJob::phaseChanged, this, &QueuedDownload::changed);
    connect(m_job.get(), &DownloadJob::figuresChanged, this, &QueuedDownload::figuresChanged);
    connect(m_job.get(), &DownloadJob::waitingTextChanged, this, &QueuedDownload::changed);
    connect(m_job.get(), &DownloadJob::finished, this, &QueuedDownload::onFinished);
    m_job->start();
    if (!m_job->destination().isEmpty()) { // the job may have chosen another file name, and a damaged record has none
        m_record = m_job->record();
        m_file = m_job->destination();
    }
}

void QueuedDownload::onFinished()
{
    if (m_job->error() == Job::NoError)
        m_file = m_job->filePath();
    end(*m_job);
}

void QueuedDownload::end(const Job &job)
{
    switch (job.error()) {
    case Job::NoError:
        end(DownloadQueue::Finished);
        break;
    case Job::Cancelled: // a page that was being read will be read again
        end(m_state == DownloadQueue::Pausing ? DownloadQueue::Paused : DownloadQueue::Cancelled);
        break;
    case Job::Paused: // or it was cancelled when it had already paused
        end(m_state == DownloadQueue::Cancelling ? DownloadQueue::Cancelled : DownloadQueue::Paused);
        break;
    default:
        m_error = job.errorString();
        m_errorDetails = job.errorDetails();
        end(DownloadQueue::Failed);
    }
}

void QueuedDownload::pause()
{
    if (m_state == DownloadQueue::Waiting) {
        end(DownloadQueue::Paused);
    } else if (m_state == DownloadQueue::Running) {
        setState(DownloadQueue::Pausing);
        if (m_page != nullptr) {
            m_page->cancel();
        } else {
            m_job->pause();
        }
    }
}

void QueuedDownload::cancel()
{
    if (m_state == DownloadQueue::Waiting) {
        end(DownloadQueue::Cancelled);
    } else if (m_state == DownloadQueue::Running || m_state == DownloadQueue::Pausing) {
        setState(DownloadQueue::Cancelling);
        if (m_page != nullptr) {
            m_page->cancel();
        } else {
            m_job->cancel();
        }
    }
}

void QueuedDownload::retry()
{
    if (canRetry()) {
        m_error.clear();
        m_errorDetails.clear();
        setState(DownloadQueue::Waiting);
    }
}

void QueuedDownload::discard()
{
    if (!isRunning() && m_state != DownloadQueue::Finished && !m_record.isEmpty())
        DownloadJob::discard(m_record);
}

QString QueuedDownload::key() const
{
    return m_record.isEmpty() ? QString() : DownloadRecord::fromJson(m_record).key();
}

bool QueuedDownload::isSameAs(const DownloadRequest &request) const
{
    if (request.url != m_url)
        return false;
    if (!request.stream.isValid())
        return true;
    if (m_record.isEmpty())
        return false;
    const MediaProfile stream = DownloadJob(m_record).stream();
    return stream.getName() == request.stream.getName()
        && stream.getPreferredDashAudioYdCode() == request.stream.getPreferredDashAudioYdCode();
}

void QueuedDownload::end(State state)
{
    setState(state);
    Q_EMIT ended();
}

void QueuedDownload::setState(State state)
{
    m_state = state;
    Q_EMIT changed();
}

QString QueuedDownload::name() const
{
    return m_file.isEmpty() ? m_url : QFileInfo(m_file).fileName();
}

int QueuedDownload::percent() const
{
    if (m_state == DownloadQueue::Finished)
        return 100;
    if (m_page != nullptr)
        return -1;
    if (m_job == nullptr || m_state == DownloadQueue::Waiting)
        return 0;
    const TransferFigures figures = m_job->figures();
    return m_state == DownloadQueue::Running && figures.total() == 0 ? -1 : figures.percent();
}

QString QueuedDownload::status() const
{
    switch (m_state) {
    case DownloadQueue::Waiting:
        return tr("Waiting for other downloads");
    case DownloadQueue::Running:
        return m_page != nullptr ? tr("Reading the page") : phaseText() + figuresText();
    case DownloadQueue::Cancelling:
        return tr("Cancelling…");
    case DownloadQueue::Pausing:
        return tr("Pausing…");
    case DownloadQueue::Finished:
        if (!QFileInfo::exists(m_file))
            return tr("The file no longer exists");
        return tr("Finished, %1")
            .arg(QLocale().formattedDataSize(QFileInfo(m_file).size(), 1, QLocale::DataSizeSIFormat));
    case DownloadQueue::Failed:
        return tr("Failed: %1").arg(errorString().simplified());
    case DownloadQueue::Cancelled:
        return tr("Cancelled");
    case DownloadQueue::Paused:
        return tr("Paused");
    }
    return {};
}

QString QueuedDownload::phaseText() const
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
QString QueuedDownload::figuresText() const
{
    const QLocale locale;
    const TransferFigures figures = m_job->figures();
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

} // namespace Nox
