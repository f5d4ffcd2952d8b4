#pragma once

#include <nox/jobs/Destination.h>
#include <nox/jobs/DownloadFolder.h>
#include <nox/jobs/DownloadJob.h>
#include <nox/jobs/DownloadRecord.h>
#include <nox/jobs/JobPrivate.h>
#include <nox/jobs/JoinProgress.h>
#include <nox/jobs/ServerWait.h>

#include <QElapsedTimer>
#include <QTimer>

#include <memory>

namespace Nox {

class JobProcess;
class WebMediaDownloader;

/** The work of a DownloadJob: runs the downloader, then the encoder if one is needed, and reports the progress. */
class DownloadJob::Private : public JobPrivate
{
public:
    Private(const ToolSetup &setup, const DownloadRecord &download);
    ~Private() override;

    DownloadJob *job() const { return static_cast<DownloadJob *>(q); }

    DownloadRecord record; // constant after the start
    bool keepsParts = false;
    bool hasParts = false;
    bool isResumed = false;               // whether this resumes an earlier download
    Job::Error knownError = Job::NoError; // an error that was known when the job was created
    QString knownErrorString;
    Phase phase = Waiting;
    TransferFigures figures;
    ServerWait serverWait;
    QString filePath;

protected:
    void begin() override;
    void onStop() override;
    void onSilence() override { end(Job::OtherError); }
    bool clear() override;
    bool hasToolFailed() const override { return !m_failedWhileJoining && !m_failedWhileEncoding; }
    void explain() override;

private:
    bool openFolder();
    bool isJoined() const { return record.stream.isDash() && !record.stream.getPreferredDashAudioYdCode().isEmpty(); }
    /** Whether ffmpeg must encode the sound after the download. */
    bool isEncoded() const
    {
        return Destination::suffix(record.stream) != Destination::suffix(record.stream, record.sound);
    }
    void disconnect();
    void onStarted();
    void onProgress(qint64 total, qint64 processed, qint64 speed);
    void onError(qint32 code);
    void onFinished();
    void encode();
    void onEncoded(bool isDone);
    QString errorOutput() const;
    void moveFile();
    void watch();
    void watchFiles();
    void watchFfmpeg();
    void showGrowth(qint64 bytes);
    void show(const TransferFigures &newFigures);
    void setPhase(Phase newPhase);

    QString m_partialName; // of the downloader's file, later of the encoder's
    DownloadFolder m_folder;
    std::unique_ptr<WebMediaDownloader> m_downloader; // behind m_folder, since its processes write there
    std::unique_ptr<JobProcess> m_encoder;            // set while the sound is encoded, and afterwards
    int m_startedStreams = 0;
    int m_code = 0;
    bool m_failedWhileJoining = false;
    bool m_failedWhileEncoding = false;
    bool m_diskWasFull = false;
    bool m_hasToolFigures = false; // for the current stream
    QElapsedTimer m_clock;
    JoinProgress m_joining;
    QTimer m_watch;
    QTimer m_stale;
};

} // namespace Nox
