#pragma once

#include <nox/jobs/DownloadJob.h>
#include <nox/jobs/DownloadQueue.h>
#include <nox/jobs/DownloadRequest.h>
#include <nox/jobs/PageJob.h>
#include <nox/jobs/ToolSetup.h>
#include <nox/jobs/TransferFigures.h>

#include <QJsonObject>
#include <QObject>

#include <memory>

namespace Nox {

/**
 * A download of the queue: its state, progress and outcome. A download of which only the address is known reads the
 * page first.
 */
class QueuedDownload : public QObject
{
    Q_OBJECT

public:
    using State = DownloadQueue::State;

    /** @param request if it has no stream, the page is read first */
    explicit QueuedDownload(const DownloadRequest &request, QObject *parent = nullptr);

    /** A stored download. @param stored result of toJson(); if it is unfinished, the download is paused */
    explicit QueuedDownload(const QJsonObject &stored, QObject *parent = nullptr);

    /** A paused download. @param record record for the job that resumes it */
    QueuedDownload(const QJsonObject &record, const QString &url, const QString &file, QObject *parent);

    QJsonObject toJson() const; ///< A form that can be stored.

    void start(const ToolSetup &tools, const DownloadQueue::Chooser &choose); ///< Starts the download if it is waiting.
    void pause();
    void cancel();

    /** Puts a paused, failed or cancelled download back to waiting. It will resume if it has parts. */
    void retry();

    void discard(); ///< Removes the parts. Of no effect while the download runs, and after it has finished.

    /** DownloadRecord::key() of the record; empty while the streams are unknown. */
    QString key() const;

    State state() const { return m_state; }

    /** Whether it is waiting or running. */
    bool isActive() const { return m_state == DownloadQueue::Waiting || isRunning(); }

    /** Whether it may have processes. */
    bool isRunning() const
    {
        return m_state == DownloadQueue::Running || m_state == DownloadQueue::Cancelling
            || m_state == DownloadQueue::Pausing;
    }

    bool isEnded() const { return !isActive() && m_state != DownloadQueue::Paused; }
    bool canRetry() const { return !isActive() && m_state != DownloadQueue::Finished; }
    QString url() const { return m_url; }           ///< Address of the page.
    QString file() const { return m_file; }         ///< Path of the file; may be empty at first.
    QString name() const;                           ///< The file's name, or the address.
    int percent() const;                            ///< 0 to 100, or -1 if unknown.
    QString status() const;                         ///< Phase and figures, or the outcome, as text.
    QString errorString() const { return m_error; } ///< The error message; empty unless it failed.

    /** Messages of the external programs about the failure; may be empty. */
    QString errorDetails() const { return m_errorDetails; }

    /** Whether it downloads what @p request describes. */
    bool isSameAs(const DownloadRequest &request) const;

Q_SIGNALS:
    void changed();
    void figuresChanged(); ///< Only percent() and status() have changed.

    /** The download no longer runs. Only its finished file or its parts are left. */
    void ended();

private:
    void startJob();
    void onPageRead();
    void onFinished();
    void end(const Job &job);
    void end(State state);
    void setState(State state);
    QString phaseText() const;
    QString figuresText() const;

    QString m_url;
    QString m_file;
    QJsonObject m_record; // of the job; empty until the stream is known
    State m_state = DownloadQueue::Waiting;
    QString m_error;
    QString m_errorDetails;
    ToolSetup m_tools;
    DownloadQueue::Chooser m_choose;
    std::unique_ptr<PageJob> m_page;    // while the page is read
    std::unique_ptr<DownloadJob> m_job; // of the last attempt
};

} // namespace Nox
