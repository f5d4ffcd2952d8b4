#include "hosts/common/DownloadJob.h"

#include "hosts/common/Destination.h"
#include "hosts/common/ToolMessage.h"

#include <nox/front/DownloadError.h>
#include <nox/front/WebMediaDownloaderFactory.h>

#include <QFileInfo>

namespace NoxHost {

using Nox::DownloadError;

namespace {

constexpr int doubtMs = 1000; // after a process error, for what else the process has to report
constexpr int stopMs = 3000;  // for a process that is being stopped
constexpr int fileWatchMs = 250;
constexpr int growthMs = 1500;  // so long the tool is given to tell figures of its own
constexpr int silenceMs = 5000; // then a speed is no longer true
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
    m_fileWatch.setInterval(fileWatchMs);
    connect(&m_fileWatch, &QTimer::timeout, this, &DownloadJob::watchFiles);
    m_silence.setSingleShot(true);
    m_silence.setInterval(silenceMs);
    connect(&m_silence, &QTimer::timeout, this, [this] { show(m_figures.withoutSpeed()); });
}

void DownloadJob::start(const QString &url, const Nox::MediaProfile &stream, const QString &destination,
                        qint64 duration)
{
    if (m_state != State::Idle)
        return;
    m_state = State::Running;
    m_joining = JoinProgress(duration);
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
        m_fileWatch.stop();
        m_silence.stop();
        m_patience.start(stopMs);
        m_downloader->cancel();
        if (inDoubt) // the process has reported already, no more may come
            end(Outcome::Cancelled);
    }
}

void DownloadJob::onStarted()
{
    ++m_startedStreams;
    m_hasToolFigures = false;
    m_growth = {};
    m_clock.start();
    m_fileWatch.start();
    const bool isAudio = m_startedStreams > 1 || m_stream.getMediaType() == Nox::MEDIA_TYPE_AUDIO;
    setPhase(isAudio ? Phase::Audio : Phase::Video);
}

void DownloadJob::onProgress(qint64 total, qint64 finish, qint64 speed)
{
    if (m_state != State::Running)
        return;
    m_patience.stop();                           // whatever was wrong, it goes on
    if (m_startedStreams > 1 && finish >= total) // the streams' own figures stop one byte short
        setPhase(Phase::Joining);
    if (m_phase == Phase::Joining)
        return;
    m_hasToolFigures = true;
    show(TransferFigures(total, finish, speed));
}

/** Passes @p figures on; their speed goes when no others follow for a while. */
void DownloadJob::show(const TransferFigures &figures)
{
    if (m_state != State::Running)
        return;
    m_figures = figures;
    if (figures.speed() > 0)
        m_silence.start();
    else
        m_silence.stop();
    Q_EMIT progressed(figures);
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
    const auto error = static_cast<DownloadError>(code);
    const bool isProcessError = error == DownloadError::ProcessFailed || error == DownloadError::MergeProcessFailed;
    m_patience.start(isProcessError ? doubtMs : 0);
}

void DownloadJob::onFinished()
{
    if (m_state == State::Stopping) // too late, the user has changed his mind
        end(Outcome::Cancelled);
    if (m_state != State::Running)
        return;
    m_file = m_folder.release(m_partialName, m_destination);
    if (m_file.isEmpty())
        fail(static_cast<int>(DownloadError::RenameFailed), FailureText::noFinalName(m_destination));
    else
        end(Outcome::Finished);
}

// The library does not tell when the merge begins; its output file does.
void DownloadJob::watchFiles()
{
    if (m_startedStreams > 1 && m_folder.isJoining())
        setPhase(Phase::Joining);
    if (m_phase == Phase::Joining) {
        watchJoining();
    } else if (!m_hasToolFigures && m_clock.elapsed() > growthMs) {
        m_growth.add(m_folder.fetchedBytes(), m_clock.elapsed());
        const TransferFigures figures = m_growth.figures();
        if (!figures.isEmpty())
            show(figures);
    }
}

void DownloadJob::watchJoining()
{
    m_joining.read(m_downloader->errorDetail());
    if (m_joining.isKnown()) {
        show(m_joining.figures());
        return;
    }
    m_growth.add(m_folder.joinedBytes(), m_clock.elapsed());
    const TransferFigures figures = m_growth.figures();
    if (!figures.isEmpty())
        show(figures);
}

void DownloadJob::setPhase(Phase phase)
{
    if (m_phase == phase)
        return;
    m_phase = phase;
    Q_EMIT phaseChanged(phase);
    if (phase == Phase::Joining) {
        m_growth = {};
        show({});
    }
}

bool DownloadJob::failedWhileJoining() const
{
    return m_startedStreams > 1 && m_folder.completeStreams() > 1;
}

void DownloadJob::settleFailure()
{
    using During = FailureText::During;
    m_toolOutput = m_downloader->errorDetail();
    const bool isJoining = failedWhileJoining();
    const bool isBroken = !isJoining && ToolMessage::tellsBrokenArchive(m_toolOutput);
    if (!isJoining && ToolMessage::tellsRefusedSettings(m_toolOutput))
        fail(m_code, FailureText::refusedSettings());
    else if (isBroken)
        fail(m_code, FailureText::brokenTool());
    else
        fail(m_code, FailureText::download(m_code, isJoining ? During::Joining : During::Fetching));
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
    m_fileWatch.stop();
    m_silence.stop();
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
        Q_EMIT failed(m_code, m_words, ToolMessage::excerpt(m_toolOutput));
        break;
    case Outcome::Cancelled:
        Q_EMIT cancelled();
        break;
    }
}

} // namespace NoxHost
