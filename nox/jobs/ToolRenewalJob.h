#pragma once

#include <nox/jobs/Job.h>

namespace Nox {

/**
 * Downloads a newer download tool for the user, with the command nox-renew-tool. ToolSetup uses it from then on. The
 * download may take minutes, and the job sets no time limit. A job that fails or is cancelled changes nothing. The
 * destructor of a running job waits up to 2 seconds, in which the command removes its temporary files.
 */
class NOX_JOBS_EXPORT ToolRenewalJob : public Job
{
    Q_OBJECT
    Q_PROPERTY(QString message READ message NOTIFY stateChanged)

public:
    /** @param parent owner of the job, as usual for QObject */
    explicit ToolRenewalJob(QObject *parent = nullptr);
    ~ToolRenewalJob() override;

    /** What the command prints about the new tool: its version and file. Empty before the end and after an error. */
    QString message() const;

private:
    class Private;
    Private *d() const;
};

} // namespace Nox
