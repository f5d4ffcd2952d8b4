#include <nox/jobs/DownloadJobPrivate.h>

#include <nox/front/DownloadError.h>
#include <nox/front/WebMediaDownloaderFactory.h>
#include <nox/jobs/FailureText.h>
#include <nox/jobs/JobProcess.h>
#include <nox/jobs/StreamChoice.h>
#include <nox/jobs/UrlCheck.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>

namespace Nox {

namespace {

constexpr int errorDelayMs = 1000; // after a process error: time for a more exact error to arrive
constexpr int watchMs = 500;
constexpr int growthMs = 1500; // if the tool reports no figures for so long, file sizes are used
constexpr int staleMs = 5000;  // age at which a speed is no longer shown

} // namespace

DownloadJob::Private::Private(const ToolSetup &setup, const DownloadRecord &download)
    : JobPrivate(setup)
    , record(download)
{
    m_watch.setInterval(watchMs);
    QObject::connect(&m_watch, &QTimer::timeout, &m_watch, [this] { watch(); });
    m_stale.setSingleShot(true);
    m_stale.setInterval(staleMs);
    QObject::connect(&m_stale, &QTimer::timeout, &m_stale, [this] { show(figures.withoutSpeed()); });
}

DownloadJob::Private::~Private()
{
    disconnect();
    m_encoder.reset();
    m_downloader.reset();
    if (isCancelled() || error == Job::Cancelled)
        m_folder.remove();
}

void DownloadJob::Private::begin()
{
    const QString oldDestination = record.destination;
    if (isResumed && knownErrorString.isEmpty())
        record.destination = Destination::free(record.destination); // a file of that name may exist by now
    const bool isUsable = StreamChoice::isUsableCode(record.stream.getName())
        && (!isJoined() || StreamChoice::isUsableCode(record.stream.getPreferredDashAudioYdCode()));
    if (refuse(knownError, knownErrorString) || refuse(Job::AddressError, UrlCheck::errorString(record.url))
        || refuse(Job::NothingToDownload, isUsable ? QString() : FailureText::noFormatCode())
        || refuse(Job::ToolMissing, tools.errorString())
        || refuse(Job::ToolMissing, isJoined() || isEncoded() ? ToolSetup::joiningErrorString() : QString())
        || refuse(Job::DestinationError, Destination::errorString(record.destination)) || !openFolder()) {
        record.destination = oldDestination; // the one that the parts have
        return;
    }
    m_partialName = QStringLiteral("finished.") + Destination::suffix(record.stream);
    m_joining = JoinProgress(record.duration);
    m_downloader.reset(
        WebMediaDownloaderFactory::instance()->createDownloader(tools.toolFile(), tools.pycacheFolder()));
    QObject::connect(m_downloader.get(), &WebMediaDownloader::started, q, [this] { onStarted(); });
    QObject::connect(m_downloader.get(), &WebMediaDownloader::progress, q,
                     [this](qint64 total, qint64 processed, qint64 speed) { onProgress(total, processed, speed); });
    QObject::connect(m_downloader.get(), &WebMediaDownloader::error, q, [this](qint32 code) { onError(code); });
    QObject::connect(m_downloader.get(), &WebMediaDownloader::finished, q, [this] { onFinished(); });
    m_downloader->download(record.url, record.stream, m_folder.filePath(m_partialName));
}

bool DownloadJob::Private::openFolder()
{
    const QString parent = QFileInfo(record.destination).absolutePath();
    if (keepsParts ? m_folder.createWithParts(parent, record) : m_folder.create(parent))
        return true;
    const bool isFull = DownloadFolder::isFull(parent);
    end(isFull ? Job::NoSpace : Job::DestinationError,
        isFull ? FailureText::cause(Job::NoSpace) : FailureText::noPrivateFolder(parent, m_folder.errorText()));
    return false;
}

void DownloadJob::Private::disconnect()
{
    if (m_downloader != nullptr)
        m_downloader->disconnect(q);
}

void DownloadJob::Private::onStarted()
{
    if (!isWorking())
        return;
    ++m_startedStreams;
    m_hasToolFigures = false;
    m_clock.start();
    m_watch.start();
    const bool isAudio = m_startedStreams > 1 || record.stream.getMediaType() == MEDIA_TYPE_AUDIO;
    const QPointer<Job> alive(q);
    setPhase(isAudio ? Audio : Video);
    if (!alive.isNull() && keepsParts)
        showGrowth(m_folder.fetchedBytes());
}

void DownloadJob::Private::onProgress(qint64 total, qint64 processed, qint64 speed)
{
    if (!isWorking())
        return;
    forgetNews();                                     // progress means that an earlier process error was not the end
    if (m_startedStreams > 1 && processed >= total) { // figures of a single stream stop one byte before the end
        setPhase(Joining);
    } else if (phase != Joining) {
        m_hasToolFigures = true;
        show(TransferFigures(total, processed, speed));
    }
}

/** Shows @p newFigures. The speed is removed if no new figures arrive for #staleMs. */
void DownloadJob::Private::show(const TransferFigures &newFigures)
{
    if (!isWorking())
        return;
    figures = newFigures;
    if (figures.speed() > 0)
        m_stale.start();
    else
        m_stale.stop();
    Q_EMIT job()->figuresChanged(newFigures);
}

void DownloadJob::Private::onError(qint32 code)
{
    if (isStopping())
        endStopped();
    if (!isWorking())
        return;
    m_code = code;
    // To be checked here: the downloader removes its files after this notification.
    m_diskWasFull = m_diskWasFull || DownloadFolder::isFull(QFileInfo(record.destination).absolutePath());
    // A process error may be followed by a more exact code, or by nothing.
    const auto kind = static_cast<DownloadError>(code);
    const bool isProcessError = kind == DownloadError::ProcessFailed || kind == DownloadError::MergeProcessFailed;
    expectNews(isProcessError ? errorDelayMs : 0);
}

void DownloadJob::Private::onFinished()
{
    if (isStopping()) // the user cancelled at the last moment
        endStopped();
    else if (isWorking() && isEncoded())
        encode();
    else if (isWorking())
        end(Job::NoError);
}

void DownloadJob::Private::encode()
{
    const QString input = m_folder.filePath(m_partialName);
    m_partialName = QStringLiteral("encoded.") + Destination::suffix(record.stream, record.sound);
    m_encoder = std::make_unique<JobProcess>();
    QObject::connect(m_encoder.get(), &JobProcess::ended, q, [this](bool isDone) { onEncoded(isDone); });
    QObject::connect(m_encoder.get(), &JobProcess::failedToStart, q, [this] { onEncoded(false); });
    m_encoder->start(QCoreApplication::applicationDirPath() + QStringLiteral("/ffmpeg"),
                     {QStringLiteral("-nostdin"), QStringLiteral("-i"), input, QStringLiteral("-vn"),
                      QStringLiteral("-acodec"), QStringLiteral("libmp3lame"), QStringLiteral("-q:a"),
                      QStringLiteral("2"), m_folder.filePath(m_partialName)});
    if (isWorking())
        setPhase(Converting);
}

void DownloadJob::Private::onEncoded(bool isDone)
{
    m_failedWhileEncoding = !isDone;
    if (isStopping())
        endStopped();
    else if (isWorking())
        end(isDone ? Job::NoError : Job::OtherError);
}

void DownloadJob::Private::onStop()
{
    if (m_encoder != nullptr)
        m_encoder->kill();
    else
        m_downloader->cancel();
}

void DownloadJob::Private::watch()
{
    if (!isWorking())
        return;
    if (m_encoder != nullptr) {
        watchFfmpeg();
        return;
    }
    const QPointer<Job> alive(q);
    if (serverWait.read(m_downloader->errorDetail(), [this] { return m_folder.fetchedBytes(); }))
        Q_EMIT job()->waitingTextChanged();
    if (!alive.isNull() && isWorking())
        watchFiles();
}

// The library does not report the begin of the merge; its output file shows it.
void DownloadJob::Private::watchFiles()
{
    if (phase != Joining && m_startedStreams > 1 && m_folder.isJoining())
        setPhase(Joining);
    else if (phase == Joining)
        watchFfmpeg();
    else if (!m_hasToolFigures && m_clock.elapsed() > growthMs)
        showGrowth(m_folder.fetchedBytes());
}

void DownloadJob::Private::watchFfmpeg()
{
    m_joining.read(errorOutput());
    if (m_joining.isKnown())
        show(m_joining.figures());
    else
        showGrowth(m_folder.joinedBytes());
}

void DownloadJob::Private::showGrowth(qint64 bytes)
{
    if (bytes > 0)
        show(TransferFigures(0, bytes, 0));
}

void DownloadJob::Private::setPhase(Phase newPhase)
{
    if (phase == newPhase)
        return;
    const QPointer<Job> alive(q);
    phase = newPhase;
    if (newPhase >= Joining)
        figures = {}; // the old ones are for another phase
    Q_EMIT job()->phaseChanged(newPhase);
    if (!alive.isNull() && newPhase >= Joining && phase == newPhase)
        show({});
}

bool DownloadJob::Private::clear()
{
    m_watch.stop();
    m_stale.stop();
    if (m_downloader != nullptr) {
        disconnect();
        // The downloader has removed its files by now. Which ones are left shows which program failed.
        m_failedWhileJoining = m_startedStreams > 1 && m_folder.completeStreams() > 1;
        toolOutput = errorOutput();
        m_encoder.reset();
        m_downloader.reset();
        if (error == Job::NoError)
            moveFile();
    }
    if (error == Job::NoError || error == Job::Cancelled)
        return m_folder.remove();
    hasParts = hasParts || m_folder.hasParts();
    return m_folder.leave();
}

/** Standard error of the current or the last program. */
QString DownloadJob::Private::errorOutput() const
{
    return m_encoder != nullptr ? m_encoder->errorOutput() : m_downloader->errorDetail();
}

// As the last step: a job that is deleted earlier must leave nothing.
void DownloadJob::Private::moveFile()
{
    filePath = m_folder.release(m_partialName, record.destination);
    if (filePath.isEmpty()) {
        error = Job::DestinationError;
        errorString = FailureText::noFinalName(record.destination);
    }
}

void DownloadJob::Private::explain()
{
    const auto kind = static_cast<DownloadError>(m_code);
    if (m_diskWasFull) {
        error = Job::NoSpace;
        errorString = FailureText::cause(error);
        return;
    }
    if (m_failedWhileEncoding) {
        error = ToolSetup::joiningErrorString().isEmpty() ? Job::ConversionFailed : Job::ToolMissing;
        errorString = FailureText::cause(Job::ConversionFailed);
        return;
    }
    errorString = FailureText::download(m_code, m_failedWhileJoining);
    if (m_failedWhileJoining || kind == DownloadError::MergeProcessFailed)
        error = ToolSetup::joiningErrorString().isEmpty() ? Job::ConversionFailed : Job::ToolMissing;
    else if (kind == DownloadError::RenameFailed)
        error = Job::DestinationError;
    else if (kind == DownloadError::ProcessFailed && !tools.errorString().isEmpty())
        error = Job::ToolMissing;
}

} // namespace Nox
