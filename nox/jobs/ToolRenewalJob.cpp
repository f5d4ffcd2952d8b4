#include <nox/jobs/ToolRenewalJob.h>

#include <nox/jobs/FailureText.h>
#include <nox/jobs/JobPrivate.h>
#include <nox/jobs/JobProcess.h>
#include <nox/jobs/TextSanitizer.h>

#include <QStandardPaths>

namespace Nox {

namespace {

constexpr int destructorMs = 2000; // for the command to remove its files

} // namespace

class ToolRenewalJob::Private : public JobPrivate
{
public:
    using JobPrivate::JobPrivate;

    ~Private() override
    {
        if (m_process != nullptr)
            m_process->terminateAndWait(destructorMs);
    }

    QString message;

protected:
    void begin() override;
    void onStop() override { m_process->terminate(); } // so that the command removes its temporary files
    void onSilence() override {}                       // there is no time limit
    bool clear() override;
    bool hasToolFailed() const override { return false; } // the output is that of the command
    void explain() override { errorString = FailureText::noRenewal(); }

private:
    void onEnded(bool isDone);

    std::unique_ptr<JobProcess> m_process;
    QString m_lastLine;
};

void ToolRenewalJob::Private::begin()
{
    const QString command = QStandardPaths::findExecutable(QStringLiteral("nox-renew-tool"));
    if (command.isEmpty()) {
        end(Job::ToolMissing, FailureText::noRenewalCommand());
        return;
    }
    m_process = std::make_unique<JobProcess>();
    QObject::connect(m_process.get(), &JobProcess::lineRead, q,
                     [this](const QByteArray &line) { m_lastLine = QString::fromUtf8(line); });
    QObject::connect(m_process.get(), &JobProcess::ended, q, [this](bool isDone) { onEnded(isDone); });
    QObject::connect(m_process.get(), &JobProcess::failedToStart, q, [this] { onEnded(false); });
    m_process->start(command, {});
}

void ToolRenewalJob::Private::onEnded(bool isDone)
{
    if (isStopping())
        endStopped();
    else
        end(isDone ? Job::NoError : Job::OtherError);
}

bool ToolRenewalJob::Private::clear()
{
    if (m_process != nullptr)
        toolOutput = m_process->errorOutput();
    m_process.reset();
    if (error == Job::NoError)
        message = TextSanitizer::line(m_lastLine);
    return true;
}

ToolRenewalJob::ToolRenewalJob(QObject *parent)
    : Job(std::make_unique<Private>(ToolSetup()), parent)
{
}

ToolRenewalJob::~ToolRenewalJob() = default;

ToolRenewalJob::Private *ToolRenewalJob::d() const
{
    return static_cast<Private *>(d_ptr.get());
}

QString ToolRenewalJob::message() const
{
    return state() == Ended ? d()->message : QString();
}

} // namespace Nox
