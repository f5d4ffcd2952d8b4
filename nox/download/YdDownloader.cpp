#include <nox/download/YdDownloader.h>

#include <nox/download/MergeCommand.h>
#include <nox/log/LogText.h>
#include <nox/log/ModuleLog.h>
#include <nox/parse/YdOutputParser.h>
#include <nox/parse/YdStatusLines.h>
#include <nox/process/ChildProcess.h>
#include <nox/process/ProcessOutput.h>
#include <nox/process/ToolCommand.h>
#include <nox/util/FileRename.h>
#include <nox/util/Utilities.h>

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QUuid>

#include <utility>

namespace Nox {

namespace {

constexpr int teardownWait = 50; // milliseconds
constexpr int longestRefusedList = 100;

/*
 * ffmpeg reads a name such as "file:a" or "subfile,,:a" as an address, and a name that begins with a dash as an option
 * or as standard input. Qt reads a name that begins with a colon as a resource. "./" in front makes it the name of a
 * file.
 */
QString asFileName(const QString &name)
{
    const QString begin = name.section(QLatin1Char('/'), 0, 0);
    const bool isAmbiguous = begin.startsWith(QLatin1Char('-')) || begin.contains(QLatin1Char(':'))
        || begin.startsWith(QLatin1String("subfile,"));
    return isAmbiguous ? QLatin1String("./") + name : name;
}

// Writes into the module log where the library has been and when, then an empty line.
void writeModuleLog(int line)
{
    const QByteArray now = QDateTime::currentDateTime().toString(QStringLiteral("yyyy/MM/dd hh:mm:ss")).toLocal8Bit();
    WriteLog(QStringLiteral("%s(%d) : %s %08x"), LogText::fileName(__FILE__), line, now.constData(), 0);
    WriteLog(QLatin1String(""));
}

} // namespace

/*
 * Tells, after a notification, whether the same download still runs. The host may have answered by deleting the
 * downloader, by cancelling, or by starting a new download.
 */
class YdDownloader::RunGuard
{
public:
    explicit RunGuard(YdDownloader *downloader)
        : m_downloader(downloader)
        , m_run(downloader->m_run)
    {
    }

    bool isSame() const
    {
        const YdDownloader *downloader = m_downloader.data();
        return downloader != nullptr && downloader->m_run == m_run;
    }

private:
    QPointer<YdDownloader> m_downloader;
    int m_run;
};

YdDownloader::YdDownloader(const QString &toolPath, const QString &pycacheDir)
    : m_ydProcess(new ChildProcess)
    , m_ffmpegProcess(new ChildProcess)
    , m_toolPath(toolPath)
    , m_pycacheDir(pycacheDir)
    , m_errorTail(this)
{
}

YdDownloader::~YdDownloader()
{
    // What the processes report from here on must not reach the host or start another process.
    m_ydProcess->disconnect(this);
    m_ffmpegProcess->disconnect(this);
    m_ydProcess->waitForFinished(teardownWait);
    YdDownloader::clear();
    m_ffmpegProcess->dispose();
    m_ydProcess->dispose();
}

void YdDownloader::download(QString url, MediaProfile profile, QString destFile)
{
    if (m_isRunning) {
        NOX_LOG_ERROR("Yd download is running already. url %s", LogText::utf8(url).constData());
        return;
    }
    reset();
    m_url = std::move(url);
    m_profile = std::move(profile);
    m_destFile = std::move(destFile);
    m_ownFiles = OwnFiles(QFileInfo(m_destFile).dir().absolutePath());
    NOX_LOG_DEBUG("url %s \r\nresolution %s \r\nformat %s \r\ndestfile %s", LogText::utf8(m_url).constData(),
                  LogText::utf8(MediaInfo::resolutionStringMix(m_profile.getVResolution())).constData(),
                  LogText::utf8(m_profile.getFormat()).constData(), LogText::utf8(m_destFile).constData());
    initYdDownloaderCommand();
}

void YdDownloader::cancel()
{
    NOX_LOG_INFO("Download canceling...");
    m_isRunning = false;
    ++m_run;
    disconnect(m_ydProcess, processFinished, this, &YdDownloader::ydFinished);
    m_ydProcess->killGroup();
    m_ffmpegProcess->killGroup();

    removeFile(m_item1File);
    removeFile(m_item2File);
    removeFile(m_mergedFile);
    removeFile(m_destFile);
    removePart(m_item1File);
    removePart(m_item2File);
    removePart(m_destFile);
}

void YdDownloader::clear()
{
    try {
        removeFile(m_item2File);
        removeFile(m_mergedFile);
        removePart(m_item1File);
        removePart(m_item2File);
        removePart(m_destFile);
    } catch (...) {
        NOX_LOG_ERROR("Cancel download failed.");
    }
}

bool YdDownloader::isUsingYt() const
{
    return ToolCommand::needsCertificateSwitch(m_toolPath);
}

// Each download gets new processes. An old one may not have ended yet, and a process cannot be started again from its
// own error signal.
void YdDownloader::reset()
{
    if (m_hasLeftovers)
        clear();
    m_errorTail.clear();
    for (ChildProcess *process : {m_ydProcess, m_ffmpegProcess}) {
        process->disconnect(this);
        process->dispose();
    }
    m_ydProcess = new ChildProcess;
    m_ffmpegProcess = new ChildProcess;
    m_isRunning = true;
    ++m_run;
    m_item1File.clear();
    m_item2File.clear();
    m_mergedFile.clear();
    m_refusedFiles.clear();
    m_hasLeftovers = true;
}

void YdDownloader::initYdDownloaderCommand()
{
    qDebug() << "entering yd...";
    connect(m_ydProcess, &QProcess::readyReadStandardOutput, this, &YdDownloader::ydReadOutputData);
    connect(m_ydProcess, &QProcess::readyReadStandardError, this, &YdDownloader::ydReadError);
    connect(m_ydProcess, processFinished, this, &YdDownloader::ydFinished);
    connect(m_ydProcess, &QProcess::errorOccurred, this, &YdDownloader::ydProcessError);

    const QString ydCode = m_profile.getName();
    m_itemCount = m_profile.isDash() && !m_profile.getPreferredDashAudioYdCode().isEmpty() ? 2 : 1;
    m_itemIndex = 1;
    m_progress = DownloadProgress(m_itemCount, m_profile.getSize());
    if (ydCode.isEmpty()) {
        NOX_LOG_ERROR("Yd download format is empty. url %s", LogText::utf8(m_url).constData());
        m_isRunning = false;
        fail(DownloadError::ProcessFailed);
        return;
    }

    const QString command = itemCommand(ydCode);
    NOX_LOG_INFO("%s", LogText::utf8(command).constData());
    const RunGuard run(this);
    m_ydProcess->launch(command);
    if (run.isSame())
        Q_EMIT started();
}

void YdDownloader::downloadNextItem()
{
    ++m_itemIndex;
    // There is a second item only where this code is not empty.
    const QString command = itemCommand(m_profile.getPreferredDashAudioYdCode());
    NOX_LOG_INFO("%s", LogText::utf8(command).constData());
    const RunGuard run(this);
    m_ydProcess->launch(command);
    if (!run.isSame())
        return;
    qDebug().noquote() << QStringLiteral("ydStarted : %1").arg(m_url);
    Q_EMIT started();
}

QString YdDownloader::itemCommand(const QString &ydCode)
{
    QString command = ToolCommand::head(m_toolPath, m_pycacheDir) + QStringLiteral(" -f %1 ").arg(ydCode);
    if (isUsingYt())
        command += ToolCommand::certificateSwitch;
    m_outDir = QFileInfo(m_destFile).dir().absolutePath();
    command += QStringLiteral("-o \"%1/%2%3%4\" ")
                   .arg(ToolCommand::escaped(m_outDir), QUuid::createUuid().toString(), YD_TEMP_MARK,
                        QStringLiteral(".%(ext)s"));
    return command + Utilities::escapeUrl(m_url);
}

void YdDownloader::ydReadOutputData()
{
    const ChildProcess::SignalGuard guard(m_ydProcess);
    const QString text = ProcessOutput::readText(m_ydProcess);
    NOX_LOG_DEBUG("Yd download output: %s", LogText::latin1(text).constData());
    rememberItemFile(text);

    DownloadProgress::Figures item{0, 0, 0};
    YdOutputParser::instance()->parseDownloadeInfo(text, item.total, item.finish, item.speed);
    qDebug().noquote() << QStringLiteral("ydProgress : %1B %2B %3B/s").arg(item.total).arg(item.finish).arg(item.speed);
    if (const auto figures = m_progress.update(m_itemIndex, item))
        Q_EMIT progress(figures->total, figures->finish, figures->speed);
}

// When the text holds both kinds of line, the destination line counts.
void YdDownloader::rememberItemFile(const QString &text)
{
    const auto destination = YdStatusLines::findDestination(text);
    if (destination && takeItemFile(destination->toString()))
        return;
    if (const auto file = YdStatusLines::findAlreadyDownloaded(text))
        takeItemFile(file->toString());
}

// The name may come from the page: a title can hold a line that looks like the tool's.
bool YdDownloader::takeItemFile(const QString &name)
{
    const QString file = asFileName(name);
    if (!m_ownFiles.mayModify(file)) {
        // One record for each name. The list is limited because a page can name any number of files.
        if (!m_refusedFiles.contains(file) && m_refusedFiles.size() < longestRefusedList) {
            m_refusedFiles.append(file);
            NOX_LOG_ERROR("Yd file was there before, not taken: %s", LogText::utf8(file).constData());
        }
        return false;
    }
    if (m_itemIndex == 1)
        m_item1File = file;
    else if (m_itemIndex == 2)
        m_item2File = file;
    return true;
}

// A file that is missing is the usual case and no failure.
bool YdDownloader::removeFile(const QString &file) const
{
    return !file.isEmpty() && QFile::exists(file) && m_ownFiles.mayModify(file) && QFile::remove(file);
}

// The tool adds ".part" to the name of a file while it transfers it.
void YdDownloader::removePart(const QString &file) const
{
    if (!file.isEmpty())
        removeFile(file + QLatin1String(".part"));
}

void YdDownloader::ydReadError()
{
    const ChildProcess::SignalGuard guard(m_ydProcess);
    const QString text = m_errorTail.read(m_ydProcess, ProcessOutput::fromLocal8Bit);
    NOX_LOG_ERROR("Yd process read error: %s ", LogText::latin1(text).constData());
}

void YdDownloader::ydProcessError(QProcess::ProcessError error)
{
    const ChildProcess::SignalGuard guard(m_ydProcess);
    NOX_LOG_ERROR("Yd process error: %d ", static_cast<int>(error));
    // Only a program that could not be started gives no finished(). The state of the process does not tell: when a
    // crash is reported, it differs between the versions of Qt.
    if (error == QProcess::FailedToStart)
        m_isRunning = false;
    fail(DownloadError::ProcessFailed);
}

void YdDownloader::ydFinished(int exitCode, QProcess::ExitStatus exitStatus)
{
    const ChildProcess::SignalGuard guard(m_ydProcess);
    qDebug().noquote() << QStringLiteral("ydFinished : %1 %2").arg(exitCode).arg(exitStatus);
    const QByteArray url = LogText::utf8(Utilities::escapeUrl(m_url));
    const bool isDone = exitCode == 0 && exitStatus == QProcess::NormalExit;
    if (isDone) {
        NOX_LOG_INFO("Yd download finished: %s", url.constData());
        if (m_itemIndex < m_itemCount) {
            downloadNextItem();
            return;
        }
        if (m_itemCount >= 2) {
            proceedMerge();
            return;
        }
    }

    m_isRunning = false;
    if (isDone && m_ownFiles.mayModify(m_item1File) && FileRename::withoutReplacing(m_item1File, m_destFile)) {
        m_hasLeftovers = false;
        Q_EMIT finished();
        return;
    }

    // If all names were refused, the record shows the last one instead of an empty name.
    const QByteArray from =
        LogText::latin1(m_item1File.isEmpty() ? m_refusedFiles.value(m_refusedFiles.size() - 1) : m_item1File);
    const QByteArray to = LogText::latin1(m_destFile);
    const RunGuard run(this);
    if (isDone) {
        fail(DownloadError::RenameFailed);
        NOX_LOG_ERROR("Rename failed from %s to %s!", from.constData(), to.constData());
    } else if (exitStatus == QProcess::CrashExit) {
        NOX_LOG_ERROR("Yd process crashed: %s ", url.constData());
        fail(DownloadError::Crashed);
    } else {
        NOX_LOG_ERROR("Yd process terminated abnormally: %s  \n ExitCode: %d", url.constData(), exitCode);
        fail(DownloadError::ExitedWithError);
    }
    // If the host has started a new download meanwhile, that has cleared already.
    if (run.isSame())
        clear();
}

void YdDownloader::proceedMerge()
{
    connect(m_ffmpegProcess, &QProcess::readyReadStandardOutput, this, &YdDownloader::ffmpegReadOutputData);
    connect(m_ffmpegProcess, &QProcess::readyReadStandardError, this, &YdDownloader::ffmpegReadStandardError);
    connect(m_ffmpegProcess, processFinished, this, &YdDownloader::ffmpegFinished);
    connect(m_ffmpegProcess, &QProcess::errorOccurred, this, &YdDownloader::ffmpegProcessError);

    if (m_item1File.isEmpty() || m_item2File.isEmpty()) {
        NOX_LOG_ERROR("FFMPEG not started: the tool has not named both files!");
        m_isRunning = false;
        fail(DownloadError::ExitedWithError);
        return;
    }
    if (!MergeCommand::copiesVideo(m_item1File))
        writeModuleLog(__LINE__);
    m_mergedFile = MergeCommand::freeOutputName(m_item1File);
    const QStringList arguments = MergeCommand::arguments(m_item1File, m_item2File, m_mergedFile);
    qDebug() << arguments;
    const QString command = MergeCommand::text(arguments);
    NOX_LOG_INFO("%s", LogText::utf8(command).constData());
    m_ffmpegProcess->launch(command);
}

void YdDownloader::ffmpegReadOutputData()
{
    const ChildProcess::SignalGuard guard(m_ffmpegProcess);
    const QString text = ProcessOutput::readText(m_ffmpegProcess);
    NOX_LOG_INFO("FFMPEG read output: %s", LogText::utf8(text).constData());
}

void YdDownloader::ffmpegReadStandardError()
{
    const ChildProcess::SignalGuard guard(m_ffmpegProcess);
    const QString text = m_errorTail.read(m_ffmpegProcess, ProcessOutput::fromUtf8);
    NOX_LOG_ERROR("FFMPEG read error: %s", LogText::utf8(text).constData());
}

void YdDownloader::ffmpegProcessError(QProcess::ProcessError error)
{
    const ChildProcess::SignalGuard guard(m_ffmpegProcess);
    if (error == QProcess::FailedToStart)
        m_isRunning = false;
    fail(DownloadError::MergeProcessFailed);
    NOX_LOG_ERROR("FFMPEG process error: %d", static_cast<int>(error));
}

void YdDownloader::ffmpegFinished(int exitCode, QProcess::ExitStatus exitStatus)
{
    const ChildProcess::SignalGuard guard(m_ffmpegProcess);
    NOX_LOG_INFO("FFMPEG process finished");
    m_isRunning = false;
    if (exitStatus == QProcess::CrashExit) {
        NOX_LOG_ERROR("FFMPEG crashed!");
        fail(DownloadError::Crashed);
        return;
    }
    if (exitCode != 0) {
        NOX_LOG_ERROR("FFMPEG terminated abnormally!");
        fail(DownloadError::ExitedWithError);
        return;
    }

    if (!removeFile(m_item1File))
        writeModuleLog(__LINE__);
    if (!removeFile(m_item2File))
        writeModuleLog(__LINE__);
    if (!FileRename::withoutReplacing(m_mergedFile, m_destFile)) {
        const QByteArray from = LogText::latin1(m_mergedFile);
        const QByteArray to = LogText::latin1(m_destFile);
        fail(DownloadError::RenameFailed);
        NOX_LOG_ERROR("Rename failed from %s to %s!", from.constData(), to.constData());
        return;
    }
    m_hasLeftovers = false;
    const RunGuard run(this);
    Q_EMIT progress(m_progress.expectedTotal(), m_progress.expectedTotal(), 0);
    if (run.isSame())
        Q_EMIT finished();
}

void YdDownloader::fail(DownloadError code)
{
    Q_EMIT error(static_cast<qint32>(code));
}

} // namespace Nox
