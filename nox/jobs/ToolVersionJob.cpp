#include <nox/jobs/ToolVersionJob.h>

#include <nox/jobs/FailureText.h>
#include <nox/jobs/JobPrivate.h>
#include <nox/jobs/JobProcess.h>
#include <nox/jobs/TextSanitizer.h>

#include <QProcess>

namespace Nox {

namespace {

constexpr int timeToAnswerMs = 30000; // enough for a slow disk without cached bytecode

} // namespace

class ToolVersionJob::Private : public JobPrivate
{
public:
    using JobPrivate::JobPrivate;

    QString version;

protected:
    void begin() override;
    void onStop() override { m_process->kill(); }
    void onSilence() override { end(Job::OtherError); }
    bool clear() override;
    void explain() override { errorString = FailureText::noVersion(); }

private:
    std::unique_ptr<JobProcess> m_process;
    QString m_firstLine;
};

void ToolVersionJob::Private::begin()
{
    if (refuse(Job::ToolMissing, tools.errorString()))
        return;
    m_process = std::make_unique<JobProcess>();
    QObject::connect(m_process.get(), &JobProcess::lineRead, q, [this](const QByteArray &line) {
        if (m_firstLine.isEmpty())
            m_firstLine = TextSanitizer::line(QString::fromUtf8(line));
    });
    QObject::connect(m_process.get(), &JobProcess::ended, q, [this](bool isDone) {
        if (isStopping())
            endStopped();
        else
            end(isDone && !m_firstLine.isEmpty() ? Job::NoError : Job::OtherError);
    });
    QObject::connect(m_process.get(), &JobProcess::failedToStart, q, [this] {
        if (isStopping())
            endStopped();
        else
            end(Job::ToolMissing, FailureText::extraction(QProcess::FailedToStart));
    });
    expectNews(timeToAnswerMs);
    m_process->startTool(tools, {QStringLiteral("--version")});
}

bool ToolVersionJob::Private::clear()
{
    if (m_process != nullptr)
        toolOutput = m_process->errorOutput();
    m_process.reset();
    if (error == Job::NoError)
        version = m_firstLine;
    return true;
}

ToolVersionJob::ToolVersionJob(const ToolSetup &tools, QObject *parent)
    : Job(std::make_unique<Private>(tools), parent)
{
}

ToolVersionJob::~ToolVersionJob() = default;

ToolVersionJob::Private *ToolVersionJob::d() const
{
    return static_cast<Private *>(d_ptr.get());
}

QString ToolVersionJob::version() const
{
    return state() == Ended ? d()->version : QString();
}

} // namespace Nox
