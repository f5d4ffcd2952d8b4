#pragma once

#include "hosts/desk/model/DownloadRequest.h"

#include <nox/jobs/DownloadJob.h>
#include <nox/jobs/PageJob.h>
#include <nox/jobs/ToolSetup.h>
#include <nox/jobs/TransferFigures.h>

#include <QJsonObject>
#include <QObject>

#include <functional>
#include <memory>

namespace NoxDesk {

/**
 * One download in the list: its state, progress and outcome. A download of which only the address is known reads the
 * page first.
 */
class Download : public QObject
{
    Q_OBJECT

public:
    enum class State { Waiting, Running, Cancelling, Finished, Failed, Cancelled, Pausing, Paused };
    Q_ENUM(State)

    /** Makes the request for a page that was read; without a stream if there is nothing to download. */
    using Chooser = std::function<DownloadRequest(const Nox::PageJob &page)>;

    /** @param request if it has no stream, the page is read first */
    explicit Download(const DownloadRequest &request, QObject *parent = nullptr);

    /** A stored download. @param stored result of toJson(); if it is unfinished, the download is paused */
    explicit Download(const QJsonObject &stored, QObject *parent = nullptr);

    /** A paused download. @param record record for the job that resumes it */
    Download(const QJsonObject &record, const QString &url, const QString &file, QObject *parent);

    QJsonObject toJson() const; ///< A form that can be stored.

    void start(const Nox::ToolSetup &tools, const Chooser &choose); ///< Starts the download if it is waiting.
    void pause();
    void cancel();

    /** Puts a paused, failed or cancelled download back to waiting. It will resume if it has parts. */
    void retry();

    void discard(); ///< Removes the parts. Not allowed while the download runs.

    State state() const { return m_state; }

    /** Whether it is waiting or running. */
    bool isActive() const { return m_state == State::Waiting || isRunning(); }

    /** Whether it may have processes. */
    bool isRunning() const
    {
        return m_state == State::Running || m_state == State::Cancelling || m_state == State::Pausing;
    }

    bool isEnded() const { return !isActive() && m_state != State::Paused; }
    bool canRetry() const { return !isActive() && m_state != State::Finished; }
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

    /** The download no longer runs. Only its finished file or its parts are left. */
    void ended();

private:
    void startJob();
    void onPageRead();
    void onFinished();
    void end(const Nox::Job &job);
    void end(State state);
    void setState(State state);
    QString phaseText() const;
    QString figuresText() const;

    QString m_url;
    QString m_file;
    QJsonObject m_record; // of the job; empty until the stream is known
    State m_state = State::Waiting;
    QString m_error;
    QString m_errorDetails;
    Nox::ToolSetup m_tools;
    Chooser m_choose;
    std::unique_ptr<Nox::PageJob> m_page;    // while the page is read
    std::unique_ptr<Nox::DownloadJob> m_job; // of the last attempt
};

} // namespace NoxDesk
