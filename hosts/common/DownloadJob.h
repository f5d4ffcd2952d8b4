#pragma once

#include "hosts/common/DownloadFolder.h"
#include "hosts/common/FailureText.h"
#include "hosts/common/GrowthMeter.h"
#include "hosts/common/JoinProgress.h"
#include "hosts/common/ToolSetup.h"
#include "hosts/common/TransferFigures.h"

#include <nox/front/WebMediaDownloader.h>
#include <nox/model/MediaProfile.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>

namespace NoxHost {

/**
 * One download, with one outcome: exactly one of finished(), failed() and cancelled() comes, from the
 * event loop, when all processes and, but for the finished file, all files of the download are gone.
 * Deleting the job stops it and removes the files, too; in answer to phaseChanged() and progressed() only
 * by deleteLater().
 */
class DownloadJob : public QObject
{
    Q_OBJECT

public:
    enum class Phase { Waiting, Video, Audio, Joining };
    Q_ENUM(Phase)

    explicit DownloadJob(const ToolSetup &tools, QObject *parent = nullptr);

    /**
     * Begins the download. Once for each job.
     * @param url address of the page, one that UrlCheck accepts
     * @param stream the stream; with a preferred audio code two are fetched and joined
     * @param destination absolute path of the file to make, one that Destination accepts
     * @param duration how long the page plays, in seconds; 0 when unknown
     */
    void start(const QString &url, const Nox::MediaProfile &stream, const QString &destination, qint64 duration = 0);

    /** Stops; cancelled() follows unless the outcome is known already. */
    void cancel();

    Phase phase() const { return m_phase; }

Q_SIGNALS:
    /** Another phase has begun. For joining, progressed() follows at once with empty figures: the old ones are void. */
    void phaseChanged(NoxHost::DownloadJob::Phase phase);

    /**
     * The download has got on, or its speed is no longer known since there has been no news for a while.
     * The figures are the tool's; where it gives none, the size of the growing file; while streams are
     * joined, the playing time that ffmpeg has done.
     */
    void progressed(const NoxHost::TransferFigures &figures);

    /** All done. @param file its path, numbered when the destination was taken meanwhile */
    void finished(const QString &file);

    /**
     * It does not work.
     * @param code the library's code, or 0 when it was not asked
     * @param words the failure in words
     * @param toolWords what the tool or ffmpeg said, fit for display; may be empty
     */
    void failed(int code, const QString &words, const QString &toolWords);

    /** Stopped by cancel(). */
    void cancelled();

private:
    enum class State { Idle, Running, Stopping, Ending, Ended };
    enum class Outcome { Finished, Failed, Cancelled };

    void connectDownloader();
    void onStarted();
    void onProgress(qint64 total, qint64 finish, qint64 speed);
    void onError(qint32 code);
    void onFinished();
    void watchFiles();
    void watchJoining();
    void show(const TransferFigures &figures);
    void setPhase(Phase phase);
    void fail(int code, const QString &words);
    void settleFailure();
    bool failedWhileJoining() const;
    void end(Outcome outcome);
    void cleanUp();
    void report();

    ToolSetup m_tools;
    Nox::MediaProfile m_stream;
    QString m_destination;
    QString m_partialName;
    DownloadFolder m_folder;
    std::unique_ptr<Nox::WebMediaDownloader> m_downloader; // goes before the folder in which its processes write
    State m_state = State::Idle;
    Outcome m_outcome = Outcome::Failed;
    Phase m_phase = Phase::Waiting;
    int m_startedStreams = 0;
    int m_code = 0;
    int m_cleanUps = 0;
    QString m_words;
    QString m_toolOutput;
    QString m_file;
    TransferFigures m_figures;
    bool m_hasToolFigures = false; // of the stream that is being fetched
    QElapsedTimer m_clock;
    GrowthMeter m_growth;
    JoinProgress m_joining;
    QTimer m_patience;
    QTimer m_fileWatch;
    QTimer m_silence;
    QTimer m_cleanUp;
};

} // namespace NoxHost
