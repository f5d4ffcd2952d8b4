#include <nox/extract/YdExtractor.h>

#include <nox/log/LogText.h>
#include <nox/parse/YdOutputParser.h>
#include <nox/process/ChildProcess.h>
#include <nox/process/ProcessOutput.h>
#include <nox/process/ToolCommand.h>
#include <nox/util/Utilities.h>

#include <QDebug>
#include <QDir>
#include <QPointer>

#include <utility>

namespace Nox {

namespace {

// Bytes. No page comes near it, and only the first document of an output is used.
constexpr qint64 maximumOutput = 256LL * 1024 * 1024;

} // namespace

YdExtractor::YdExtractor(const QString &toolPath, const QString &pycacheDir)
    : m_tempDir(QDir::tempPath())
    , m_toolPath(toolPath)
    , m_pycacheDir(pycacheDir)
    , m_errorTail(this)
{
}

YdExtractor::~YdExtractor()
{
    // Also those of earlier requests: the host may be answering a signal of one of them.
    const QObjectList owned = children();
    for (QObject *child : owned) {
        if (auto *process = dynamic_cast<ChildProcess *>(child)) {
            process->disconnect(this);
            process->dispose();
        }
    }
}

WebMediaInfo YdExtractor::getMediaInfo(QString url)
{
    beginRequest(url);
    NOX_LOG_DEBUG("url %s ", LogText::utf8(url).constData());
    // Nobody reads the tool's error output here; it must not pile up in memory meanwhile.
    m_process->setStandardErrorFile(QProcess::nullDevice());
    initYdExtractorCommand();
    bool hasEnded = false;
    const auto wait = [this, &hasEnded] { hasEnded = m_process->waitForFinished(-1); };
    if (!ProcessOutput::read(m_process, QProcess::StandardOutput, wait))
        m_process->killGroup();
    if (!hasEnded)
        NOX_LOG_DEBUG("Yd extract process finished abnormally: %d", static_cast<int>(m_process->error()));
    ydReadOutputData();

    // Copied before the host is told: it may answer by deleting the extractor.
    WebMediaInfo result = m_mediaInfo;
    Q_EMIT finished(result);
    return result;
}

void YdExtractor::getMediaInfoBySignal(QString url)
{
    beginRequest(url);
    NOX_LOG_DEBUG("url %s ", LogText::utf8(url).constData());
    connect(m_process, &QProcess::readyReadStandardError, this, &YdExtractor::ydReadError);
    connect(m_process, processFinished, this, &YdExtractor::ydFinished);
    connect(m_process, &QProcess::errorOccurred, this, &YdExtractor::ydProcessError);
    initYdExtractorCommand();
}

void YdExtractor::cancel()
{
    NOX_LOG_ERROR("Cancel getMediaInfo...");
    if (m_process == nullptr)
        return;
    disconnect(m_process, processFinished, this, &YdExtractor::ydFinished);
    m_process->killGroup();
    m_process->discardOutput(QProcess::StandardOutput);
}

// The process of an earlier request must not report into the new one. After its end it may still report: a crash gives
// several notifications, and this may be the host's answer to the first of them.
void YdExtractor::beginRequest(const QString &url)
{
    if (m_process != nullptr) {
        m_process->disconnect(this);
        m_process->killGroup();
        m_process->discardOutput(QProcess::StandardOutput);
        m_process->discardOutput(QProcess::StandardError);
    }
    m_errorTail.clear();
    m_url = url;
    m_mediaInfo.setUrl(url);
    m_process = new ChildProcess(this);
    m_process->limitOutput(maximumOutput);
}

void YdExtractor::initYdExtractorCommand()
{
    qDebug() << "entering yd...";
    QString command = ToolCommand::head(m_toolPath, m_pycacheDir) + QLatin1String(" --dump-json ");
    // The whole text so far counts: a folder of that name brings the switch as well.
    if (ToolCommand::needsCertificateSwitch(command))
        command += ToolCommand::certificateSwitch;
    command += Utilities::escapeUrl(m_url);
    NOX_LOG_INFO("%s", LogText::utf8(command).constData());
    m_process->launch(command);
}

// A host can also call the slots by name, even before the first request.
void YdExtractor::ydReadOutputData()
{
    if (m_process == nullptr)
        return;
    QString output;
    const bool isRead = ProcessOutput::read(m_process, QProcess::StandardOutput, [this, &output] {
        output = ProcessOutput::fromLocal8Bit(m_process->readAllStandardOutput());
    });
    // What cannot be held is a page that cannot be read.
    if (isRead) {
        NOX_LOG_DEBUG("%s \r\n%s ", LogText::utf8(m_mediaInfo.getUrl()).constData(), LogText::utf8(output).constData());
        YdOutputParser::instance()->parseWebMediaInfo(std::move(output), m_mediaInfo, m_tempDir);
    }
    NOX_LOG_DEBUG("duration : %d", static_cast<int>(m_mediaInfo.getDuration()));
}

void YdExtractor::ydFinished(int exitCode, QProcess::ExitStatus exitStatus)
{
    if (m_process == nullptr)
        return;
    const ChildProcess::SignalGuard guard(m_process);
    qDebug().noquote() << QStringLiteral("ydFinished : %1 %2").arg(exitCode).arg(exitStatus);
    if (exitCode != 0) {
        qDebug().noquote() << m_process->errorString();
        m_process->discardOutput(QProcess::StandardOutput);
        Q_EMIT error(-1);
        return;
    }
    ydReadOutputData();
    Q_EMIT finished(m_mediaInfo);
}

void YdExtractor::ydProcessError(QProcess::ProcessError error)
{
    const ChildProcess::SignalGuard guard(m_process);
    NOX_LOG_ERROR("Yd extract process terminated with error: %d", static_cast<int>(error));
    reportFailure(error);
}

void YdExtractor::ydReadError()
{
    if (m_process == nullptr)
        return;
    const ChildProcess::SignalGuard guard(m_process);
    const QString text = m_errorTail.read(m_process, ProcessOutput::fromLocal8Bit);
    NOX_LOG_ERROR("Yd extract read error: %s", LogText::latin1(text).constData());
    m_mediaInfo.setErrorDetail(text);
    if (!text.startsWith(QLatin1String("WARNING")))
        reportFailure(-1);
}

void YdExtractor::reportFailure(qint32 errorCode)
{
    const QPointer<YdExtractor> self(this);
    const ChildProcess *process = m_process;
    Q_EMIT finished(m_mediaInfo);
    // The host may have answered by deleting the extractor, or by a request that replaces this one.
    if (!self.isNull() && m_process == process)
        Q_EMIT error(errorCode);
}

} // namespace Nox
