#include <nox/download/YdDownloader.h>

#include <nox/download/MergeCommand.h>
#include <nox/log/LogCall.h>
#include <nox/log/ModuleMarker.h>
#include <nox/parse/YdOutputParser.h>
#include <nox/parse/YdStatusLines.h>
#include <nox/process/ChildProcess.h>
#include <nox/process/ProcessOutput.h>
#include <nox/process/ToolCommand.h>
#include <nox/util/FileRename.h>
#include <nox/util/Utilities.h>

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
 * ffmpeg takes a name such as "file:a" or "subfile,,:a" for an address, and one with a dash in front for an option or
 * for standard input. The names of resources of Qt begin with a colon. With "./" in front such a name is that of a
 * file.
 */
QString asFileName(const QString &name)
{
    const QString begin = name.section(QLatin1Char('/'), 0, 0);
    const bool isAmbiguous =
        begin.startsWith(QLatin1Char('-')) || begin.contains(QLatin1Char(':')) || begin.contains(QLatin1Char(','));
    return isAmbiguous ? QLatin1String("./") + name : name;
}

} // namespace

/*
 * Looks, after a notification, whether the host has answered it by deleting the downloader, by
 * cancelling, or by starting anew: then nothing more may be done for the old download.
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
{
}

YdDownloader::~YdDownloader()
{
    // From here on nothing that the processes report may notify the host or start another one.
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
        NOX_LOG_ERROR("Yd download is running already. url %s", LogCall::utf8(url).constData());
        return;
    }
    reset();
    m_url = std::move(url);
    m_profile = std::move(profile);
    m_destFile = std::move(destFile);
    m_ownFiles = OwnFiles(QFileInfo(m_destFile).dir().absolutePath());
    NOX_LOG_DEBUG("url %s \r\nresolution %s \r\nformat %s \r\ndestfile %s", LogCall::utf8(m_url).constData(),
                  LogCall::utf8(MediaInfo::resolutionStringMix(m_profile.getVResolution())).constData(),
                  LogCall::utf8(m_profile.getFormat()).constData(), LogCall::utf8(m_destFile).constData());
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

/*
 * What an earlier download has left in the object must not act on the next one. The processes are
 * replaced: an old one may still be dying, and one cannot be started again from its own error signal.
 */
void YdDownloader::reset()
{
    if (m_hasLeftovers)
        clear();
    clearErrorTail();
    for (ChildProcess *process : {m_ydProcess, m_ffmpegProcess}) {
        process->disconnect(this);
        process->dispose();
    }
    m_ydProcess = new ChildProcess;
    m_ffmpegProcess = new ChildProcess;
    m_isRunning = true;
    ++m_run;
    m_itemCount = 0;
    m_itemIndex = 0;
    m_item1File.clear();
    m_item2File.clear();
    m_outDir.clear();
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
        NOX_LOG_ERROR("Yd download format is empty. url %s", LogCall::utf8(m_url).constData());
        m_isRunning = false;
        fail(DownloadError::ProcessFailed);
        return;
    }

    const QString command = itemCommand(ydCode);
    NOX_LOG_INFO("%s", LogCall::utf8(command).constData());
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
    NOX_LOG_INFO("%s", LogCall::utf8(command).constData());
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
    QString text;
    ProcessOutput::read(m_ydProcess, QProcess::StandardOutput,
                        [this, &text] { text = ProcessOutput::fromUtf8(m_ydProcess->readAll()); });
    NOX_LOG_DEBUG("Yd download output: %s", LogCall::latin1(text).constData());
    rememberItemFile(text);

    DownloadProgress::Figures item{0, 0, 0};
    YdOutputParser::instance()->parseDownloadeInfo(text, item.total, item.finish, item.speed);
    qDebug().noquote() << QStringLiteral("ydProgress : %1B %2B %3B/s").arg(item.total).arg(item.finish).arg(item.speed);
    if (const auto figures = m_progress.fold(m_itemIndex, item))
        Q_EMIT progress(figures->total, figures->finish, figures->speed);
}

// Where a read names a file in both ways, the destination line wins.
void YdDownloader::rememberItemFile(const QString &text)
{
    const auto destination = YdStatusLines::findDestination(text);
    if (destination && takeItemFile(destination->toString()))
        return;
    if (const auto file = YdStatusLines::findAlreadyDownloaded(text))
        takeItemFile(file->toString());
}

// A page can put such a line into the tool's output, as a part of a title for example.
bool YdDownloader::takeItemFile(const QString &name)
{
    const QString file = asFileName(name);
    if (!m_ownFiles.contain(file)) {
        // One record for each name. A page can name any number of files: the list of the names has an end.
        if (!m_refusedFiles.contains(file) && m_refusedFiles.size() < longestRefusedList) {
            m_refusedFiles.append(file);
            NOX_LOG_ERROR("Yd file was there before, not taken: %s", LogCall::utf8(file).constData());
        }
        return false;
    }
    if (m_itemIndex == 1)
        m_item1File = file;
    else if (m_itemIndex == 2)
        m_item2File = file;
    return true;
}

// QFile reports a missing file as a failure of its own; here it is the usual case.
bool YdDownloader::removeFile(const QString &file) const
{
    return !file.isEmpty() && QFile::exists(file) && m_ownFiles.contain(file) && QFile::remove(file);
}

// The name under which the tool holds a file while it transfers it.
void YdDownloader::removePart(const QString &file) const
{
    if (!file.isEmpty())
        removeFile(file + QLatin1String(".part"));
}

void YdDownloader::ydReadError()
{
    const ChildProcess::SignalGuard guard(m_ydProcess);
    QString text;
    ProcessOutput::read(m_ydProcess, QProcess::StandardError, [this, &text] {
        const QByteArray output = m_ydProcess->readAllStandardError();
        appendToErrorTail(output, ProcessOutput::fromLocal8Bit);
        text = ProcessOutput::fromLocal8Bit(output);
    });
    NOX_LOG_ERROR("Yd process read error: %s ", LogCall::latin1(text).constData());
}

void YdDownloader::ydProcessError(QProcess::ProcessError error)
{
    const ChildProcess::SignalGuard guard(m_ydProcess);
    NOX_LOG_ERROR("Yd process error: %d ", static_cast<int>(error));
    // Only a program that could not be started has no end, which would decide. The process's state does not
    // tell: it differs between the versions of Qt when a crash is reported.
    if (error == QProcess::FailedToStart)
        m_isRunning = false;
    fail(DownloadError::ProcessFailed);
}

void YdDownloader::ydFinished(int exitCode, QProcess::ExitStatus exitStatus)
{
    const ChildProcess::SignalGuard guard(m_ydProcess);
    qDebug().noquote() << QStringLiteral("ydFinished : %1 %2").arg(exitCode).arg(exitStatus);
    const QByteArray url = LogCall::utf8(Utilities::escapeUrl(m_url));
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
    if (isDone && m_ownFiles.contain(m_item1File) && FileRename::withoutReplacing(m_item1File, m_destFile)) {
        m_hasLeftovers = false;
        Q_EMIT finished();
        return;
    }

    // Where every name was refused, the last of them tells more than no name.
    const QByteArray from =
        LogCall::latin1(m_item1File.isEmpty() ? m_refusedFiles.value(m_refusedFiles.size() - 1) : m_item1File);
    const QByteArray to = LogCall::latin1(m_destFile);
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
    // A new download that the host has started meanwhile has done this itself.
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
        NOX_MODULE_MARKER();
    m_mergedFile = MergeCommand::freeOutputName(m_item1File);
    const QStringList arguments = MergeCommand::arguments(m_item1File, m_item2File, m_mergedFile);
    qDebug() << arguments;
    const QString command = MergeCommand::text(arguments);
    NOX_LOG_INFO("%s", LogCall::utf8(command).constData());
    m_ffmpegProcess->launch(command);
}

void YdDownloader::ffmpegReadOutputData()
{
    const ChildProcess::SignalGuard guard(m_ffmpegProcess);
    QString text;
    ProcessOutput::read(m_ffmpegProcess, QProcess::StandardOutput,
                        [this, &text] { text = ProcessOutput::fromUtf8(m_ffmpegProcess->readAll()); });
    NOX_LOG_INFO("FFMPEG read output: %s", LogCall::utf8(text).constData());
}

void YdDownloader::ffmpegReadStandardError()
{
    const ChildProcess::SignalGuard guard(m_ffmpegProcess);
    QString text;
    ProcessOutput::read(m_ffmpegProcess, QProcess::StandardError, [this, &text] {
        const QByteArray output = m_ffmpegProcess->readAllStandardError();
        appendToErrorTail(output, ProcessOutput::fromUtf8);
        text = ProcessOutput::fromUtf8(output);
    });
    NOX_LOG_ERROR("FFMPEG read error: %s", LogCall::utf8(text).constData());
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
        NOX_MODULE_MARKER();
    if (!removeFile(m_item2File))
        NOX_MODULE_MARKER();
    if (!FileRename::withoutReplacing(m_mergedFile, m_destFile)) {
        const QByteArray from = LogCall::latin1(m_mergedFile);
        const QByteArray to = LogCall::latin1(m_destFile);
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
