#pragma once

#include <nox/jobs/JobsExport.h>
#include <nox/jobs/ToolSetup.h>

#include <QObject>
#include <QString>

#include <memory>

namespace Nox {

class JobPrivate;

/**
 * One task of the external programs, with exactly one outcome: finished() is emitted once, from the event loop,
 * whatever happens; then error() has the outcome. By then all processes of the job have ended, and all its files are
 * removed, except the finished file and the parts that a download keeps.
 *
 * The constructor takes all that a job needs; start() starts it, once. The job does not delete itself, so its owner can
 * read the results as long as needed. The owner may delete it at any time, also with a plain delete inside one of its
 * signals. This stops the work and removes the files, and no signal follows.
 *
 * A job belongs to one thread, whose event loop must run. Create it after the application object.
 */
class NOX_JOBS_EXPORT Job : public QObject
{
    Q_OBJECT
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    Q_PROPERTY(bool running READ isRunning NOTIFY stateChanged)
    Q_PROPERTY(Error error READ error NOTIFY stateChanged)
    Q_PROPERTY(QString errorString READ errorString NOTIFY stateChanged)
    Q_PROPERTY(QString errorDetails READ errorDetails NOTIFY stateChanged)

public:
    /** In this order. A state may be skipped, but none occurs twice. */
    enum State {
        Idle,     ///< Not started.
        Running,  ///< Started.
        Stopping, ///< Cancelled or paused; its processes are ending.
        Ended,    ///< The outcome is known, the work is over.
    };
    Q_ENUM(State)

    /** The outcome of a job. Later versions may add values; a host treats unknown ones as OtherError. */
    enum Error {
        NoError,               ///< Success.
        OtherError,            ///< Another cause, or an unknown one.
        Cancelled,             ///< cancel() was called.
        AddressError,          ///< The address is not valid.
        NoNetwork,             ///< The server cannot be reached, or the connection broke.
        NotFound,              ///< The page does not exist, or was removed.
        LoginNeeded,           ///< The page requires a login.
        NotAvailableInCountry, ///< The page is not available in this country.
        Protected,             ///< The streams are encrypted (DRM).
        NotBegun,              ///< The broadcast has not begun.
        NothingToDownload,     ///< The page has no stream that can be downloaded.
        NoSpace,               ///< The disk is full.
        DestinationError,      ///< The file cannot be created at its destination.
        ToolMissing,           ///< The interpreter, the download tool or ffmpeg is missing.
        ToolBroken,            ///< The download tool is damaged, or does not work with the interpreter.
        RuntimeMissing,        ///< The page needs a script runtime, and none is installed.
        SettingsRefused,       ///< The user's settings (tool.conf) are not valid.
        ConversionFailed,      ///< ffmpeg could not join or encode the streams.
        Paused,                ///< DownloadJob::pause() was called.
    };
    Q_ENUM(Error)

    ~Job() override;

    ToolSetup tools() const; ///< Paths of the external programs.
    State state() const;     ///< The current state.
    bool isRunning() const;  ///< Whether it was started and has not ended.
    Error error() const;     ///< The outcome; NoError before the end as well.

    /** The error message for the user, translated: the cause, and what to do. Empty without an error. */
    QString errorString() const;

    /**
     * The messages of the tool or ffmpeg about the failure, safe to show: several lines, in the language of the tool.
     * May be empty; always empty after a success and after cancel().
     */
    QString errorDetails() const;

public Q_SLOTS:
    /** Starts the job. If it was started or cancelled before, this only writes a record to the log. */
    void start();

    /** Stops the job; also allowed before start(). finished() follows with #Cancelled, unless the outcome is known. */
    void cancel();

Q_SIGNALS:
    void stateChanged(); ///< state() or the results have changed.

    /** The work is over. @param job this job */
    void finished(Nox::Job *job);

protected:
    /** @cond internal */
    explicit Job(std::unique_ptr<JobPrivate> d, QObject *parent);
    const std::unique_ptr<JobPrivate> d_ptr;
    friend class JobPrivate;
    /** @endcond */

private:
    Q_DISABLE_COPY(Job)
};

} // namespace Nox
