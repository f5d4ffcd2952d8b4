#pragma once

#include "tests/jobs/HostSandbox.h"
#include "tests/util/Files.h"
#include "tests/util/Rows.h"

#include <nox/NoxWebMediaJobs.h>

#include <QtTest>

#include <memory>

/** A test of jobs with stand-ins for the external programs, each function in a sandbox of its own. */
class JobTest : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init()
    {
        m_sandbox = std::make_unique<HostSandbox>();
        HostSandbox::installStandIns();
    }

    void cleanup()
    {
        m_job.reset();
        QTRY_VERIFY_WITH_TIMEOUT(m_sandbox->isQuiet(), HostSandbox::Timeout);
        m_sandbox.reset();
    }

protected:
    static bool isEnded(const Nox::Job &job) { return job.state() == Nox::Job::Ended; }

    const QString m_url = "http://x/"_s;
    std::unique_ptr<HostSandbox> m_sandbox;
    std::unique_ptr<Nox::Job> m_job;
};
