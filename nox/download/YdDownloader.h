#pragma once

#include <nox/download/DownloadProgress.h>
#include <nox/download/OwnFiles.h>
#include <nox/front/DownloadError.h>
#include <nox/front/WebMediaDownloader.h>
#include <nox/process/ErrorTail.h>

#include <QProcess>
#include <QString>
#include <QStringList>

namespace Nox {

class ChildProcess;

/**
 * The downloader that runs the tool once for each item (the chosen stream, and the audio stream that is joined with
 * it) and ffmpeg to join two items into one file.
 *
 * The tool writes into the destination's folder, under a temporary name. Only a complete file gets the destination's
 * name.
 */
class YdDownloader final : public WebMediaDownloader
{
    Q_OBJECT

public:
    /** @see WebMediaDownloaderFactory::createDownloader() */
    YdDownloader(const QString &toolPath, const QString &pycacheDir);
    ~YdDownloader() override;

    void download(QString url, MediaProfile profile, QString destFile) override;
    void cancel() override;
    void clear() override;

protected Q_SLOTS:
    void ydReadOutputData();
    void ydFinished(int exitCode, QProcess::ExitStatus exitStatus);
    void ydProcessError(QProcess::ProcessError error);
    void ydReadError();
    void ffmpegReadOutputData();
    void ffmpegFinished(int exitCode, QProcess::ExitStatus exitStatus);
    void ffmpegProcessError(QProcess::ProcessError error);
    void ffmpegReadStandardError();

private:
    class RunGuard;

    bool isUsingYt() const;
    void reset();
    void initYdDownloaderCommand();
    void downloadNextItem();
    QString itemCommand(const QString &ydCode);
    void rememberItemFile(const QString &text);
    bool takeItemFile(const QString &name);
    bool removeFile(const QString &file) const;
    void removePart(const QString &file) const;
    void proceedMerge();
    void fail(DownloadError code);

    ChildProcess *m_ydProcess; // both owned, and new for every download
    ChildProcess *m_ffmpegProcess;
    bool m_isRunning = false; // a download has begun and not ended
    int m_run = 0;            // changes with every download and cancel
    QString m_url;
    MediaProfile m_profile;
    QString m_destFile;
    int m_itemCount = 0;
    int m_itemIndex = 0; // the item that runs or ran last, counted from 1
    DownloadProgress m_progress;
    QString m_item1File; // as the tool announced it
    QString m_item2File;
    QString m_outDir;
    QString m_mergedFile;
    OwnFiles m_ownFiles;
    QStringList m_refusedFiles;  // named by the tool, but not files of this download
    bool m_hasLeftovers = false; // a download has begun and not succeeded
    QString m_toolPath;
    QString m_pycacheDir;
    ErrorTail m_errorTail;
};

} // namespace Nox
