#pragma once

#include <nox/jobs/JobsExport.h>
#include <nox/jobs/ToolSetup.h>

#include <QObject>
#include <QString>

#include <memory>

namespace Nox {

class JobPrivate;

/**
 * One piece of work of the external programs, with exactly one outcome: finished() comes once, from the event loop,
 * whatever happens, and error() tells then what the outcome is. All processes and all files of the job are gone by
 * then, but for a finished file and what a download keeps to be gone on with.
 *
 * What a job needs is given to its constructor; start() begins, once for each job. The owner deletes the job: it does
 * not delete itself, so that its results can be read for as long as they are needed. Deleting it is allowed at any
 * time, also inside its own signals and with a plain delete; it stops the work, removes its files, and no signal
 * follows.
 *
 * A job belongs to one thread, whose event loop must run. It is made after the application object.
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
    /** In this order; a state can be left out, but none comes twice. */
    enum State {
        Idle,     ///< Not started.
        Running,  ///< Started.
        Stopping, ///< Cancelled, while its processes end.
        Ended,    ///< The outcome is known; nothing more happens.
    };
    Q_ENUM(State)

    /** What a job has come to. New values may be added; a host treats unknown ones as OtherError. */
    enum Error {
        NoError,               ///< All went well.
        OtherError,            ///< None of the causes below, or the cause is not known.
        Cancelled,             ///< cancel() was called.
        AddressError,          ///< The address is none.
        NoNetwork,             ///< The server cannot be reached, or the connection broke.
        NotFound,              ///< There is no such page, or it has been removed.
        LoginNeeded,           ///< The page wants a login.
        NotAvailableInCountry, ///< The page is not offered in this country.
        Protected,             ///< The streams are encrypted (DRM).
        NotBegun,              ///< The broadcast has not begun.
        NothingToDownload,     ///< The page holds no stream that can be downloaded.
        NoSpace,               ///< The disk is full.
        DestinationError,      ///< The file cannot be made at its destination.
        ToolMissing,           ///< The interpreter, the download tool or ffmpeg is missing.
        ToolBroken,            ///< The download tool is damaged, or does not fit the interpreter.
        RuntimeMissing,        ///< The page needs a script runtime that is missing.
        SettingsRefused,       ///< The tool does not take the user's settings (tool.conf).
        ConversionFailed,      ///< ffmpeg failed to join or to encode.
        Paused,                ///< DownloadJob::pause() was called.
    };
    Q_ENUM(Error)

    ~Job() override;

    ToolSetup tools() const; ///< Where the job's programs are.
    State state() const;     ///< How far it is.
    bool isRunning() const;  ///< Whether it has been started and has not ended.
    Error error() const;     ///< The outcome; NoError before the end, too.

    /** The failure for a person: its cause, and what to do. Translated; empty without an error. */
    QString errorString() const;

    /**
     * What the tool or ffmpeg said of the failure, fit for display: several lines, in the language of the tool. May be
     * empty; is empty after a success and a cancellation.
     */
    QString errorDetails() const;

public Q_SLOTS:
    /** Begins. A job that has been started or cancelled before refuses, with a record in the log only. */
    void start();

    /** Stops, also before start(): finished() follows with #Cancelled unless another outcome is known already. */
    void cancel();

Q_SIGNALS:
    void stateChanged(); ///< state() and the results have changed.

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
