#pragma once

#include <nox/front/WebMediaInfoExtractor.h>
#include <nox/model/WebMediaInfo.h>
#include <nox/process/ErrorTail.h>

#include <QProcess>
#include <QString>

namespace Nox {

class ChildProcess;

/**
 * The extractor that runs the downloader tool in its JSON-dump mode and parses what it prints.
 *
 * Each request makes a process object of its own, which stays with the extractor as its child. The record is kept
 * between requests: the profiles of a second page stand before those of the first one.
 */
class YdExtractor final : public WebMediaInfoExtractor
{
    Q_OBJECT

public:
    /** @see WebMediaDownloaderFactory::createExtractor() */
    YdExtractor(const QString &toolPath, const QString &pycacheDir);
    ~YdExtractor() override;

    WebMediaInfo getMediaInfo(QString url) override;
    void getMediaInfoBySignal(QString url) override;
    void cancel() override;

protected Q_SLOTS:
    void ydReadOutputData();
    void ydFinished(int exitCode, QProcess::ExitStatus exitStatus);
    void ydProcessError(QProcess::ProcessError error);
    void ydReadError();

private:
    void beginRequest(const QString &url);
    void initYdExtractorCommand();
    void reportFailure(qint32 errorCode);

    ChildProcess *m_process = nullptr; // the newest request's; a child of this object
    QString m_url;
    QString m_tempDir;
    QString m_toolPath;
    QString m_pycacheDir;
    WebMediaInfo m_mediaInfo;
    ErrorTail m_errorTail;
};

} // namespace Nox
