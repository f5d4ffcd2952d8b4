#include "hosts/common/ToolVersionJob.h"

#include "hosts/common/FailureText.h"
#include "hosts/common/TextSanitizer.h"
#include "hosts/common/ToolMessage.h"

#include <nox/front/ToolEnvironment.h>

namespace NoxHost {

namespace {

constexpr int patienceMs = 30000; // a slow disk, and no bytecode yet

} // namespace

ToolVersionJob::ToolVersionJob(const ToolSetup &tools, QObject *parent)
    : QObject(parent)
    , m_tools(tools)
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(patienceMs);
    connect(&m_patience, &QTimer::timeout, &m_process, &QProcess::kill);
    connect(&m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this, &ToolVersionJob::onEnd);
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            Q_EMIT failed(FailureText::extraction(error), {});
    });
}

ToolVersionJob::~ToolVersionJob()
{
    m_process.disconnect(this);
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

void ToolVersionJob::start()
{
    m_patience.start();
    m_process.start(GetPythonExecPath(),
                    {QStringLiteral("-X"), QStringLiteral("pycache_prefix=") + m_tools.pycacheFolder(),
                     m_tools.toolFile(), QStringLiteral("--version")},
                    QIODevice::ReadOnly);
}

void ToolVersionJob::onEnd()
{
    m_patience.stop();
    const QString version = TextSanitizer::line(QString::fromUtf8(m_process.readAllStandardOutput()));
    const QString errors = QString::fromUtf8(m_process.readAllStandardError());
    if (m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0 && !version.isEmpty())
        Q_EMIT finished(version);
    else if (ToolMessage::tellsBrokenArchive(errors))
        Q_EMIT failed(FailureText::brokenTool(), ToolMessage::excerpt(errors));
    else
        Q_EMIT failed(FailureText::noVersion(), ToolMessage::excerpt(errors));
}

} // namespace NoxHost
