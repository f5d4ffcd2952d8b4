#include <nox/jobs/Job.h>

#include <nox/jobs/JobPrivate.h>
#include <nox/jobs/ToolMessage.h>

#include <utility>

namespace Nox {

Job::Job(std::unique_ptr<JobPrivate> d, QObject *parent)
    : QObject(parent)
    , d_ptr(std::move(d))
{
    d_ptr->q = this;
}

Job::~Job() = default;

ToolSetup Job::tools() const
{
    return d_ptr->tools;
}

Job::State Job::state() const
{
    return d_ptr->state;
}

bool Job::isRunning() const
{
    return d_ptr->state == Running || d_ptr->state == Stopping;
}

Job::Error Job::error() const
{
    return d_ptr->state == Ended ? d_ptr->error : NoError;
}

QString Job::errorString() const
{
    return d_ptr->state == Ended ? d_ptr->errorString : QString();
}

QString Job::errorDetails() const
{
    const bool isFailure = error() != NoError && error() != Cancelled && error() != Paused;
    return isFailure ? ToolMessage::excerpt(d_ptr->toolOutput) : QString();
}

void Job::start()
{
    d_ptr->start();
}

void Job::cancel()
{
    d_ptr->stop(Cancelled);
}

} // namespace Nox
