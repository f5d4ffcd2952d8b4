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
 * While the job runs, its files stand in a hidden folder beside the destination. The job removes this folder at its
 * end. It never replaces an existing file.
 *
 * A download that keeps its parts can be resumed, in this process or in a later one: see setKeepsParts(). Its partial
 * files then stay in the hidden folder after pause(), after a failure, after the job was deleted while it ran, and
 * after the process was killed. The next download of the same stream into the same folder resumes, if it keeps its
 * parts as well. After a success and after cancel() nothing is left. Parts that have not changed for 30 days are
 * removed when another download begins in the same folder.
 */
class NOX_JOBS_EXPORT DownloadJob : public Job
{
    Q_OBJECT
    Q_PROPERTY(Phase phase READ phase NOTIFY phaseChanged)
    Q_PROPERTY(Nox::TransferFigures figures READ figures NOTIFY figuresChanged)
    Q_PROPERTY(QString waitingText READ waitingText NOTIFY waitingTextChanged)
    Q_PROPERTY(QString filePath READ filePath NOTIFY stateChanged)

public:
    /** The step that is being done. */
    enum Phase {
        Waiting,    ///< The download has not begun.
        Video,      ///< Downloads the video, or the one stream with picture and sound.
        Audio,      ///< Downloads the audio.
        Joining,    ///< ffmpeg joins video and audio.
        Converting, ///< ffmpeg encodes the sound.
    };
    Q_ENUM(Phase)

    /**
     * @param url address of the page
     * @param stream a stream of the page; for a video without sound, StreamChoice::withAudio() sets the audio to join
     * @param destination path of the file to create; Destination::proposed() returns a default
     * @param tools paths of the external programs
     * @param parent owner of the job, as usual for QObject
     */
    DownloadJob(const QString &url, const MediaProfile &stream, const QString &destination,
                const ToolSetup &tools = ToolSetup(), QObject *parent = nullptr);

    /**
     * Downloads StreamChoice::best(), with its audio if needed, into a new file that is named after the page. If the
     * page could not be read, the download ends with the error of @p page.
     * @param page a job that has ended; it is not used after this call
     * @param folder for the file
     * @param parent owner of the job, as usual for QObject
     */
    DownloadJob(const PageJob &page, const QString &folder, QObject *parent = nullptr);

    /**
     * Resumes a download, or starts it again if its parts no longer exist. This job keeps its parts.
     * @param record result of record(); with a damaged one the job ends with an error
     * @param tools paths of the external programs
     * @param parent owner of the job, as usual for QObject
     */
    explicit DownloadJob(const QJsonObject &record, const ToolSetup &tools = ToolSetup(), QObject *parent = nullptr);
    ~DownloadJob() override;

    /** The duration of the page in @p seconds, for the progress of ffmpeg. To be set before start(). */
    void setDuration(qint64 seconds);

    /** Whether the download can be resumed later; false by default. To be set before start(). */
    void setKeepsParts(bool keeps);

    /** Format of the file if the stream is audio; SoundFormat::AsIs by default. To be set before start(). */
    void setSoundFormat(SoundFormat format);

    QString url() const;         ///< Address of the page.
    MediaProfile stream() const; ///< The stream, with its preferred audio code if two streams are joined.
    QString destination() const; ///< Absolute path of the file to create.
    bool keepsParts() const;     ///< Whether the download can be resumed later.

    /** After the end: whether parts were kept that a later download can resume from. */
    bool hasParts() const;

    /**
     * A description of the download that a host can store, and from which a job can resume it: a small object of texts
     * and numbers, with a version. It does not contain the progress, and stays valid if the parts are removed.
     */
    QJsonObject record() const;

    /**
     * Removes the parts of a download that will not be resumed.
     * @param record result of record(). Parts that a job is using are not removed, and neither are finished files
     */
    static void discard(const QJsonObject &record);

    /**
     * One record for each download that has parts in @p folder which no job is using, for example of a process that was
     * killed.
     */
    static QList<QJsonObject> interrupted(const QString &folder);

    Phase phase() const; ///< The current step.

    /**
     * Progress of the phase. During the download: bytes of all streams, as the tool reports them, or else the size of
     * the growing file. While ffmpeg works: the playing time that it has reached, or else the size of its output. A
     * resumed download begins with the bytes that it already has. The speed becomes unknown if no figures arrive for
     * some seconds.
     */
    TransferFigures figures() const;

    /** For the user, translated: the server does not answer, and when the next attempt is. Empty while it answers. */
    QString waitingText() const;

    /** Path of the finished file: the destination, with a number if that existed by then. Empty before the end. */
    QString filePath() const;

public Q_SLOTS:
    /**
     * Stops the download and keeps its parts; also allowed before start(). finished() follows with #Paused, unless
     * another outcome is already known. A job that does not keep its parts is cancelled.
     */
    void pause();

Q_SIGNALS:
    /** Another phase has begun. @param phase the new phase */
    void phaseChanged(Nox::DownloadJob::Phase phase);
    /** The progress has changed. @param figures result of figures() */
    void figuresChanged(const Nox::TransferFigures &figures);
    void waitingTextChanged(); ///< waitingText() has changed.

private:
    class Private;
    Private *d() const;
};

} // namespace Nox
