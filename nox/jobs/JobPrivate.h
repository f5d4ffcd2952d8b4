#pragma once

#include <nox/jobs/Job.h>
#include <nox/jobs/ToolSetup.h>

#include <QTimer>

namespace Nox {

/**
 * The part that all jobs share: the states, the one outcome, and the report from the event loop after the clean-up. The
 * class of each job starts the work, stops it and cleans up. A function that emits a signal is always called last,
 * since the host may delete the job inside the signal.
 */
class JobPrivate
{
public:
    explicit JobPrivate(const ToolSetup &setup);
    JobPrivate(const JobPrivate &) = delete;
    JobPrivate &operator=(const JobPrivate &) = delete;
    virtual ~JobPrivate();

    void start();

    /** Stops the work. @param outcome the outcome for end(): Job::Cancelled or Job::Paused */
    void stop(Job::Error outcome);

    Job *q = nullptr;
    const ToolSetup tools;
    Job::State state = Job::Idle;
    Job::Error error = Job::NoError; // set before the outcome is reported
    QString errorString;
    QString toolOutput; // what the tool and ffmpeg have printed on standard error

protected:
    /** Starts the work, or ends at once. */
    virtual void begin() = 0;

    /** Stops the work. The job must then call endStopped(); if it does not within a few seconds, the base ends it. */
    virtual void onStop() = 0;

    /** The time given to expectNews() has passed without another call. */
    virtual void onSilence() = 0;

    /** Ends processes and removes files. Called from the event loop, again and again until it returns true (done). */
    virtual bool clear() = 0;

    /** Whether the tool failed, and not ffmpeg. Only then can toolOutput name the cause. */
    virtual bool hasToolFailed() const { return true; }

    /** Sets error and errorString after a failure for which end() got no text and toolOutput names no cause. */
    virtual void explain() = 0;

    /** Sets the outcome; later calls are ignored. Emits nothing. For OtherError without a text explain() is called. */
    void end(Job::Error outcome, const QString &message = {});

    void endStopped() { end(m_stopOutcome); } ///< The work has stopped as requested.

    /** Ends with @p outcome if there is a @p message. @return whether there is one */
    bool refuse(Job::Error outcome, const QString &message);

    /** Whether cancel() was called, even if another outcome was already known. */
    bool isCancelled() const { return state == Job::Stopping && m_stopOutcome == Job::Cancelled; }

    bool isWorking() const { return state == Job::Running && !m_isEnding; }
    bool isStopping() const { return state == Job::Stopping && !m_isEnding; }

    /** Calls onSilence() after this time. Another call restarts the time, forgetNews() stops it. */
    void expectNews(int milliseconds) { m_silence.start(milliseconds); }
    void forgetNews() { m_silence.stop(); }
    bool expectsNews() const { return m_silence.isActive(); }

private:
    void clearUp();
    void findCause();

    bool m_hasBegun = false;
    bool m_isEnding = false; // or ended
    Job::Error m_stopOutcome = Job::Cancelled;
    int m_attempts = 0;
    QTimer m_silence;
    QTimer m_ending;
};

} // namespace Nox
