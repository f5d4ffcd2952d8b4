#pragma once

#include <nox/jobs/Job.h>
#include <nox/jobs/ToolSetup.h>

#include <QTimer>

namespace Nox {

/**
 * What every job does the same way: its states, its one outcome, and the report from the event loop when nothing is
 * left. A job's own class begins, stops and clears up. Every function that emits a signal is called last: the job may
 * be gone behind it.
 */
class JobPrivate
{
public:
    explicit JobPrivate(const ToolSetup &setup);
    JobPrivate(const JobPrivate &) = delete;
    JobPrivate &operator=(const JobPrivate &) = delete;
    virtual ~JobPrivate();

    void start();

    /** Stops. @param outcome what end() is given then: Job::Cancelled or Job::Paused */
    void stop(Job::Error outcome);

    Job *q = nullptr;
    const ToolSetup tools;
    Job::State state = Job::Idle;
    Job::Error error = Job::NoError; // also of an outcome that is not reported yet
    QString errorString;
    QString toolOutput; // what the tool and ffmpeg have printed on standard error

protected:
    /** Starts the work, or ends at once. */
    virtual void begin() = 0;

    /** Stops the work; endStopped() must follow from what it reports. If it does not for a while, the base ends. */
    virtual void onStop() = 0;

    /** No news for the time given to expectNews(). */
    virtual void onSilence() = 0;

    /** Ends processes and removes files; called from the event loop until it returns true: nothing is left. */
    virtual bool clear() = 0;

    /** Whether it is the tool that has failed, and not ffmpeg: then toolOutput may name the cause. */
    virtual bool hasToolFailed() const { return true; }

    /** Finds error and text of a failure that ended without them; toolOutput names no cause. */
    virtual void explain() = 0;

    /** The outcome, once. Emits nothing; others that come later do not count. OtherError without a text: explain(). */
    void end(Job::Error outcome, const QString &message = {});

    void endStopped() { end(m_stopOutcome); } ///< The work has stopped, as it was told to.

    /** Ends with @p outcome if there is a @p message. @return whether there is one */
    bool refuse(Job::Error outcome, const QString &message);

    /** Whether the job has been cancelled, whatever its end is going to be. */
    bool isCancelled() const { return state == Job::Stopping && m_stopOutcome == Job::Cancelled; }

    bool isWorking() const { return state == Job::Running && !m_isEnding; }
    bool isStopping() const { return state == Job::Stopping && !m_isEnding; }

    /** onSilence() comes after that time, unless it is called again or forgetNews() is. */
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
