#pragma once

#include <nox/jobs/Job.h>
#include <nox/jobs/SoundFormat.h>
#include <nox/jobs/ToolSetup.h>
#include <nox/jobs/TransferFigures.h>
#include <nox/model/MediaProfile.h>

#include <QJsonObject>
#include <QList>

namespace Nox {

class PageJob;

/**
 * Downloads one stream of a page, joined with its audio where one is chosen, into one file.
 *
 * While it works, everything stands in a hidden folder beside the file, which goes with the job. An existing file is
 * never replaced.
 *
 * A download that keeps its parts can be gone on with, in this process or in a later one: setKeepsParts(). What has
 * been fetched then stays in the hidden folder after pause(), after a failure, after the job was deleted while it ran,
 * and when the process was killed. The next download of the same stream into the same folder that keeps its parts, too,
 * goes on with it. A success and cancel() leave nothing. Parts that nobody has touched for thirty days are removed when
 * another download begins beside them.
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
        Waiting,    ///< Nothing is fetched yet.
        Video,      ///< The video is fetched, or the one stream that holds both.
        Audio,      ///< The audio is fetched.
        Joining,    ///< ffmpeg joins video and audio.
        Converting, ///< ffmpeg encodes the sound.
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

    /**
     * Goes on with a download, or begins it anew where nothing is left of it. It keeps its parts.
     * @param record what record() has told of it; a damaged one makes a job that ends with an error
     * @param tools where the programs are that the job runs
     * @param parent deletes the job, if nobody else does
     */
    explicit DownloadJob(const QJsonObject &record, const ToolSetup &tools = ToolSetup(), QObject *parent = nullptr);
    ~DownloadJob() override;

    /** Tells how long the page plays, in @p seconds, for the figures of ffmpeg. To be set before start(). */
    void setDuration(qint64 seconds);

    /** Whether the download can be gone on with later; by default not. To be set before start(). */
    void setKeepsParts(bool keeps);

    /** What a stream of sound becomes; it has no effect on others. By default it stays as it is. Before start(). */
    void setSoundFormat(SoundFormat format);

    QString url() const;         ///< Address of the page.
    MediaProfile stream() const; ///< The stream, its preferred audio code set when two are joined.
    QString destination() const; ///< Absolute path of the file to make.
    bool keepsParts() const;     ///< As set.

    /** After the end: whether something was left in the folder that a later download goes on with. */
    bool hasParts() const;

    /**
     * The download in a form that a host can store: a small object of texts and numbers with a version, from which
     * a job is made that goes on with it. It does not say how far the download is, and stays valid when its parts have
     * gone meanwhile.
     */
    QJsonObject record() const;

    /**
     * Removes the parts of a download that nobody will go on with.
     * @param record what record() has told of it. Parts that a job uses at present stay, and so do finished files
     */
    static void discard(const QJsonObject &record);

    /**
     * The downloads of which there are parts in @p folder that no job uses at present, such as those of a process that
     * was killed; a record for each.
     */
    static QList<QJsonObject> interrupted(const QString &folder);

    Phase phase() const; ///< What is being done.

    /**
     * How far the phase is: bytes of all streams while they are fetched, as the tool tells them, or else the size of
     * the growing file; while ffmpeg works, the playing time that it has done, or the size of the joined file. A
     * download that goes on begins with what is there.
     * The speed is gone when there has been no news for a while.
     */
    TransferFigures figures() const;

    /** For a person, translated: that the server does not answer, and when it is asked again. Empty when it does. */
    QString waitingText() const;

    /** Path of the finished file: the destination, numbered where that was taken meanwhile. Empty before. */
    QString filePath() const;

public Q_SLOTS:
    /**
     * Stops and keeps what has been fetched, also before start(): finished() follows with #Paused unless another
     * outcome is known already. A job that does not keep its parts is cancelled instead.
     */
    void pause();

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
