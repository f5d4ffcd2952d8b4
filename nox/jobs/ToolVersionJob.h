#pragma once

#include <nox/jobs/Job.h>
#include <nox/jobs/ToolSetup.h>

namespace Nox {

/** Asks the download tool for its version. A tool that does not answer within half a minute is given up. */
class NOX_JOBS_EXPORT ToolVersionJob : public Job
{
    Q_OBJECT
    Q_PROPERTY(QString version READ version NOTIFY stateChanged)

public:
    /**
     * @param tools where the programs are that the job runs
     * @param parent deletes the job, if nobody else does
     */
    explicit ToolVersionJob(const ToolSetup &tools = ToolSetup(), QObject *parent = nullptr);
    ~ToolVersionJob() override;

    /** The version as the tool tells it, fit for display; empty before the end and after an error. */
    QString version() const;

private:
    class Private;
    Private *d() const;
};

} // namespace Nox
