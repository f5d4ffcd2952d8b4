#include <nox/jobs/JobPrivate.h>

#include <nox/jobs/FailureText.h>
#include <nox/jobs/ToolMessage.h>
#include <nox/log/Logger.h>

#include <QPointer>

namespace Nox {

namespace {

constexpr int stopMs = 3000; // for a process that is being stopped
constexpr int clearMs = 50;
constexpr int maximumAttempts = 40;

} // namespace

JobPrivate::JobPrivate(const ToolSetup &setup)
    : tools(setup)
{
    m_silence.setSingleShot(true);
    QObject::connect(&m_silence, &QTimer::timeout, &m_silence, [this] {
        if (isStopping())
            endStopped();
        else if (isWorking())
            onSilence();
    });
    m_ending.setSingleShot(true);
    QObject::connect(&m_ending, &QTimer::timeout, &m_ending, [this] { clearUp(); });
}

JobPrivate::~JobPrivate() = default;

void JobPrivate::start()
{
    if (state != Job::Idle || m_isEnding) {
        Logger::log(LOG_ERROR, "", "Job.cpp", "start", __LINE__, "%s: a job is started once, this call does nothing",
                    q->metaObject()->className());
        return;
    }
    const QPointer<Job> job(q);
    state = Job::Running;
    Q_EMIT job->stateChanged();
    if (!job.isNull() && isWorking()) {
        m_hasBegun = true;
        begin();
    }
}

bool JobPrivate::refuse(Job::Error outcome, const QString &message)
{
    if (!message.isEmpty())
        end(outcome, message);
    return !message.isEmpty();
}

void JobPrivate::stop(Job::Error outcome)
{
    if (m_isEnding)
        return;
    if (outcome == Job::Cancelled || state != Job::Stopping) // what is cancelled is not paused any more
        m_stopOutcome = outcome;
    if (state == Job::Stopping)
        return;
    if (!m_hasBegun) {
        endStopped();
        return;
    }
    const bool mayHaveEnded = expectsNews(); // after an error the process may send no other report
    state = Job::Stopping;
    expectNews(stopMs);
    onStop();
    if (mayHaveEnded)
        endStopped();
    Q_EMIT q->stateChanged();
}

void JobPrivate::end(Job::Error outcome, const QString &message)
{
    if (m_isEnding)
        return;
    m_isEnding = true;
    error = outcome;
    errorString = message;
    forgetNews();
    m_ending.start(0); // whatever has called may be a notification of a process that is to go
}

// A process that has just been killed may still complete the system call it is in, and with it make
// a file: then the folder is not empty when it is to go.
void JobPrivate::clearUp()
{
    if (!clear() && ++m_attempts < maximumAttempts) {
        m_ending.start(clearMs);
        return;
    }
    findCause();
    const QPointer<Job> job(q);
    state = Job::Ended;
    Q_EMIT job->stateChanged();
    if (!job.isNull())
        Q_EMIT job->finished(job);
}

void JobPrivate::findCause()
{
    if (error == Job::Cancelled || error == Job::Paused)
        errorString = FailureText::cause(error);
    if (error != Job::OtherError || !errorString.isEmpty())
        return;
    error = hasToolFailed() ? ToolMessage::error(toolOutput) : Job::OtherError;
    if (error == Job::OtherError)
        explain();
    else
        errorString = FailureText::cause(error);
}

} // namespace Nox
