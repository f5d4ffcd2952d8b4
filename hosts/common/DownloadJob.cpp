#include "hosts/common/DownloadJob.h"

#include "hosts/common/Destination.h"

#include <nox/front/WebMediaDownloaderFactory.h>

#include <QFileInfo>

namespace NoxHost {

namespace {

constexpr int doubtMs = 1000; // after a process error, for what else the process has to report
constexpr int stopMs = 3000;  // for a process that is being stopped
constexpr int joinWatchMs = 200;
constexpr int cleanUpMs = 50;
constexpr int maximumCleanUps = 40;

} // namespace

DownloadJob::DownloadJob(const ToolSetup &tools, QObject *parent)
    : QObject(parent)
    , m_tools(tools)
{
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, [this] {
        if (m_state == State::Stopping)
            end(Outcome::Cancelled);
        else
            settleFailure();
    });
    m_cleanUp.setSingleShot(true);
    connect(&m_cleanUp, &QTimer::timeout, this, &DownloadJob::cleanUp);
    m_joinWatch.setInterval(joinWatchMs);
    connect(&m_joinWatch, &QTimer::timeout, this, &DownloadJob::watchJoining);
}

void DownloadJob::start(const QString &url, const Nox::MediaProfile &stream, const QString &destination)
{
    if (m_state != State::Idle)
        return;
    m_state = State::Running;
    m_stream = stream;
    m_destination = destination;
    m_partialName = QStringLiteral("finished.") + Destination::suffix(stream);
    const QString parent = QFileInfo(destination).absolutePath();
    if (!m_folder.create(parent)) {
        fail(0, FailureText::noPrivateFolder(parent, m_folder.errorText()));
        return;
    }
    connectDownloader();
    m_downloader->download(url, stream, m_folder.filePath(m_partialName));
}

void DownloadJob::connectDownloader()
{
    m_downloader.reset(
        Nox::WebMediaDownloaderFactory::instance()->createDownloader(m_tools.toolFile(), m_tools.pycacheFolder()));
    connect(m_downloader.get(), &Nox::WebMediaDownloader::started, this, &DownloadJob::onStarted);
    connect(m_downloader.get(), &Nox::WebMediaDownloader::progress, this, &DownloadJob::onProgress);
    connect(m_downloader.get(), &Nox::WebMediaDownloader::error, this, &DownloadJob::onError);
    connect(m_downloader.get(), &Nox::WebMediaDownloader::finished, this, &DownloadJob::onFinished);
}

void DownloadJob::cancel()
{
    if (m_state == State::Idle) {
        end(Outcome::Cancelled);
    } else if (m_state == State::Running) {
        const bool inDoubt = m_patience.isActive();
        m_state = State::Stopping;
        m_joinWatch.stop();
        m_patience.start(stopMs);
        m_downloader->cancel();
        if (inDoubt) // the process has reported already, no more may come
            end(Outcome::Cancelled);
    }
}

DownloadJob::Phase DownloadJob::phase() const
{
    return m_phase;
}

void DownloadJob::onStarted()
{
    ++m_startedStreams;
    const bool isAudio = m_startedStreams > 1 || m_stream.getMediaType() == Nox::MEDIA_TYPE_AUDIO;
    setPhase(isAudio ? Phase::Audio : Phase::Video);
    if (m_startedStreams > 1)
        m_joinWatch.start();
}

void DownloadJob::onProgress(qint64 total, qint64 finish, qint64 speed)
{
    if (m_state != State::Running)
        return;
    m_patience.stop();                               // whatever was wrong, it goes on
    if (m_startedStreams > 1 && finish + 1 >= total) // the figures of two streams stop one byte short
        setPhase(Phase::Joining);
    Q_EMIT progressed(TransferFigures(total, finish, speed));
}

void DownloadJob::onError(qint32 code)
{
    if (m_state == State::Stopping) {
        end(Outcome::Cancelled);
        return;
    }
    if (m_state != State::Running)
        return;
    m_code = code;
    // A process error may be followed by a more telling code, or by nothing. The downloader's own
    // clearing up follows the notification, and tells by what it leaves which program it was.
    m_patience.start(code == -1 || code == -7 ? doubtMs : 0);
}

void DownloadJob::onFinished()
{
    if (m_state == State::Stopping) // too late, the user has changed his mind
        end(Outcome::Cancelled);
    if (m_state != State::Running)
        return;
    m_file = m_folder.release(m_partialName, m_destination);
    if (m_file.isEmpty())
        fail(-8, FailureText::noFinalName(m_destination));
    else
        end(Outcome::Finished);
}

// The library does not tell when the merge begins; its output file does.
void DownloadJob::watchJoining()
{
    if (m_folder.isJoining())
        setPhase(Phase::Joining);
}

void DownloadJob::setPhase(Phase phase)
{
    if (phase == Phase::Joining)
        m_joinWatch.stop();
    if (m_phase != phase) {
        m_phase = phase;
        Q_EMIT phaseChanged(phase);
    }
}

void DownloadJob::settleFailure()
{
    const bool joining = m_startedStreams > 1 && m_folder.completeStreams() > 1;
    fail(m_code, FailureText::download(m_code, joining ? FailureText::During::Joining : FailureText::During::Fetching));
}

void DownloadJob::fail(int code, const QString &words)
{
    m_code = code;
    m_words = words;
    end(Outcome::Failed);
}

/** The downloader goes later, since its notification may be on the stack; files and outcome follow. */
void DownloadJob::end(Outcome outcome)
{
    if (m_state == State::Ending || m_state == State::Ended)
        return;
    m_state = State::Ending;
    m_outcome = outcome;
    m_patience.stop();
    m_joinWatch.stop();
    if (m_downloader != nullptr)
        disconnect(m_downloader.get(), nullptr, this, nullptr);
    m_cleanUp.start(0);
}

// A process that has just been killed may still complete the system call it is in, and with it make
// a file: then the folder is not empty when it is to go.
void DownloadJob::cleanUp()
{
    m_downloader.reset();
    if (!m_folder.remove() && ++m_cleanUps < maximumCleanUps)
        m_cleanUp.start(cleanUpMs);
    else
        report();
}

void DownloadJob::report()
{
    m_state = State::Ended;
    switch (m_outcome) {
    case Outcome::Finished:
        Q_EMIT finished(m_file);
        break;
    case Outcome::Failed:
        Q_EMIT failed(m_code, m_words);
        break;
    case Outcome::Cancelled:
        Q_EMIT cancelled();
        break;
    }
}

} // namespace NoxHost
