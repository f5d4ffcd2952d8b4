#include <nox/jobs/ToolVersionJob.h>

#include <nox/front/ToolEnvironment.h>
#include <nox/jobs/FailureText.h>
#include <nox/jobs/JobPrivate.h>
#include <nox/jobs/TextSanitizer.h>

#include <QProcess>

namespace Nox {

namespace {

constexpr int answerMs = 30000; // a slow disk, and no bytecode yet

} // namespace

class ToolVersionJob::Private : public JobPrivate
{
public:
    using JobPrivate::JobPrivate;
    ~Private() override { Private::clear(); }

    QString version;

protected:
    void begin() override;
    void onStop() override { m_process->kill(); }
    void onSilence() override { end(Job::OtherError); }
    bool clear() override;
    void explain() override { errorString = FailureText::noVersion(); }

private:
    void onFinished(int exitCode, QProcess::ExitStatus status);

    std::unique_ptr<QProcess> m_process;
};

void ToolVersionJob::Private::begin()
{
    if (const QString message = tools.errorString(); !message.isEmpty()) {
        end(Job::ToolMissing, message);
        return;
    }
    m_process = std::make_unique<QProcess>();
    QObject::connect(m_process.get(), qOverload<int, QProcess::ExitStatus>(&QProcess::finished), q,
                     [this](int exitCode, QProcess::ExitStatus status) { onFinished(exitCode, status); });
    QObject::connect(m_process.get(), &QProcess::errorOccurred, q, [this](QProcess::ProcessError cause) {
        if (cause != QProcess::FailedToStart)
            return;
        if (isStopping())
            endStopped();
        else
            end(Job::ToolMissing, FailureText::extraction(cause));
    });
    expectNews(answerMs);
    m_process->start(GetPythonExecPath(),
                     {QStringLiteral("-X"), QStringLiteral("pycache_prefix=") + tools.pycacheFolder(), tools.toolFile(),
                      QStringLiteral("--version")},
                     QIODevice::ReadOnly);
}

void ToolVersionJob::Private::onFinished(int exitCode, QProcess::ExitStatus status)
{
    if (isStopping()) {
        endStopped();
        return;
    }
    version = TextSanitizer::line(QString::fromUtf8(m_process->readAllStandardOutput()));
    toolOutput = QString::fromUtf8(m_process->readAllStandardError());
    if (status == QProcess::NormalExit && exitCode == 0 && !version.isEmpty()) {
        end(Job::NoError);
    } else {
        version.clear();
        end(Job::OtherError);
    }
}

bool ToolVersionJob::Private::clear()
{
    if (m_process != nullptr) {
        m_process->disconnect();
        m_process->kill();
        m_process->waitForFinished();
        m_process.reset();
    }
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
