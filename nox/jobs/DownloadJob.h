#pragma once

#include <nox/jobs/Job.h>
#include <nox/jobs/ToolSetup.h>
#include <nox/jobs/TransferFigures.h>
#include <nox/model/MediaProfile.h>

namespace Nox {

class PageJob;

/**
 * Downloads one stream of a page, joined with its audio where one is chosen, into one file.
 *
 * While it works, everything stands in a hidden folder beside the file, which goes with the job. An existing file is
 * never replaced.
 */
class NOX_JOBS_EXPORT DownloadJob : public Job
{
    Q_OBJECT
    Q_PROPERTY(Phase phase READ phase NOTIFY phaseChanged)
    Q_PROPERTY(Nox::TransferFigures figures READ figures NOTIFY figuresChanged)
    Q_PROPERTY(QString waitingText READ waitingText NOTIFY waitingTextChanged)
    Q_PROPERTY(QString filePath READ filePath NOTIFY stateChanged)

public:
    /** What is being done. */
    enum Phase {
        Waiting, ///< Nothing is fetched yet.
        Video,   ///< The video is fetched, or the one stream that holds both.
        Audio,   ///< The audio is fetched.
        Joining, ///< ffmpeg joins video and audio.
    };
    Q_ENUM(Phase)

    /**
     * @param url address of the page
     * @param stream a stream of the page; StreamChoice::withAudio() names the audio to join with a silent one
     * @param destination path of the file to make; Destination::proposed() has one
     * @param tools where the programs are that the job runs
     * @param parent deletes the job, if nobody else does
     */
    DownloadJob(const QString &url, const MediaProfile &stream, const QString &destination,
                const ToolSetup &tools = ToolSetup(), QObject *parent = nullptr);

    /**
     * Downloads what suits best: the stream that StreamChoice::best() names, with the audio that goes with it, into a
     * new file that is named after the page. After a page that could not be read it ends with the error of
     * the page.
     * @param page a job that has ended; it may go afterwards
     * @param folder where the file shall be
     * @param parent deletes the job, if nobody else does
     */
    DownloadJob(const PageJob &page, const QString &folder, QObject *parent = nullptr);
    ~DownloadJob() override;

    /** Tells how long the page plays, in @p seconds, for the figures while joining. To be set before start(). */
    void setDuration(qint64 seconds);

    Phase phase() const; ///< What is being done.

    /**
     * How far the phase is: bytes of all streams while they are fetched, as the tool tells them, or else the size of
     * the growing file; while they are joined, the playing time that ffmpeg has done, or the size of the joined file.
     * The speed is gone when there has been no news for a while.
     */
    TransferFigures figures() const;

    /** For a person, translated: that the server does not answer, and when it is asked again. Empty when it does. */
    QString waitingText() const;

    /** Path of the finished file: the destination, numbered where that was taken meanwhile. Empty before. */
    QString filePath() const;

Q_SIGNALS:
    /** Another phase has begun. @param phase the new one */
    void phaseChanged(Nox::DownloadJob::Phase phase);
    /** The download has come further. @param figures as figures() tells them */
    void figuresChanged(const Nox::TransferFigures &figures);
    void waitingTextChanged(); ///< waitingText() tells something else.

private:
    class Private;
    Private *d() const;
};

} // namespace Nox
