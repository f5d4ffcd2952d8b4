#pragma once

#include <nox/jobs/Job.h>
#include <nox/jobs/ToolSetup.h>

namespace Nox {

/** Asks the download tool for its version. Fails if the tool does not answer within 30 seconds. */
class NOX_JOBS_EXPORT ToolVersionJob : public Job
{
    Q_OBJECT
    Q_PROPERTY(QString version READ version NOTIFY stateChanged)

public:
    /**
     * @param tools paths of the external programs
     * @param parent owner of the job, as usual for QObject
     */
    explicit ToolVersionJob(const ToolSetup &tools = ToolSetup(), QObject *parent = nullptr);
    ~ToolVersionJob() override;

    /** The version that the tool prints, safe to show; empty before the end and after an error. */
    QString version() const;

private:
    class Private;
    Private *d() const;
};

} // namespace Nox
